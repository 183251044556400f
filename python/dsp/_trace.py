"""Display of traces, of any number of dimensions. Ranges are [start, stop); `stop` None is the end of the trace."""

from __future__ import annotations

from typing import Any, Callable, Optional, Tuple

import numpy as np

from ._c import Error, lib
from ._call import by_rows, moved
from ._names import Choice, Format, choose
from ._signal import Array, Number, Samples, Signal, numbers

__all__ = [
    "expand_linear", "expand_log", "find_max", "find_min", "format_buffer", "get_fpscr", "scale_to_fp",
    "scale_to_int", "set_fpscr", "set_runfast", "smooth", "unwrap_phase",
]  # fmt: skip


def _array(x: Samples, kind: type) -> Array:
    data = numbers(x, "biuf" if kind is float else "biufc")
    return np.require(data, kind, ["C", "A", "W"])


def _range(n: int, start: int, stop: Optional[int]) -> Tuple[int, int]:
    stop = n if stop is None else stop
    if not 0 <= start <= stop <= n:
        raise IndexError(f"[{start}, {stop}) is no range of a trace of {n} points")
    return start, stop


def _found(
    find: Callable[..., int], x: Samples, start: int, stop: Optional[int], skip: Tuple[int, ...], axis: int
) -> Number:
    """An index, or one for each row."""
    data = _array(x, float)
    if data.ndim == 0:
        raise ValueError("a trace has one dimension or more")
    rows = moved(data, axis)
    first, last = _range(rows.shape[-1], start, stop)
    if skip and skip[0] <= first < skip[1] >= last:
        raise Error(f"the band [{skip[0]}, {skip[1]}) leaves nothing of the range [{first}, {last})")
    if data.ndim == 1:
        return find(data, first, last, *skip)
    lead = rows.shape[:-1]
    return np.reshape([find(_array(rows[k], float), first, last, *skip) for k in np.ndindex(*lead)], lead).astype(int)


def scale_to_int(x: Samples, lo: float, hi: float, out_lo: int, out_hi: int) -> Array:
    """Maps a range to integers by a line (vfpdb_ScaleToInt).

    Parameters
    ----------
    x : array_like
        Real points.
    lo : float
        Lower end of the range that is mapped.
    hi : float
        Upper end.
    out_lo : float
        What the lower end becomes.
    out_hi : float
        What the upper end becomes.

    Returns
    -------
    ndarray
        int32, truncated and saturated; NaN gives 0.

    Examples
    --------
    >>> dsp.scale_to_int([0.0, 0.25, 1.0], 0, 1, 0, 480)
    array([  0, 120, 480], dtype=int32)
    """
    data = _array(x, float)
    out = np.empty(data.shape, np.int32)
    lib.vfpdb_ScaleToInt(data, data.size, lo, hi, out, out_lo, out_hi)
    return out


def scale_to_fp(x: Samples, lo: float, hi: float, out_lo: float, out_hi: float) -> Array:
    """Maps a range to another by a line (vfpdb_ScaleToFP).

    Parameters
    ----------
    x : array_like
        Real points.
    lo : float
        Lower end of the range that is mapped.
    hi : float
        Upper end.
    out_lo : float
        What the lower end becomes.
    out_hi : float
        What the upper end becomes.

    Returns
    -------
    ndarray
        The points.

    Examples
    --------
    >>> dsp.scale_to_fp([0.0, 0.25, 1.0], 0, 1, 10, 20)
    array([10. , 12.5, 20. ])
    """
    data = _array(x, float)
    out = np.empty(data.shape)
    lib.vfpdb_ScaleToFP(data, data.size, lo, hi, out, out_lo, out_hi)
    return out


def find_max(
    x: Samples,
    start: int = 0,
    stop: Optional[int] = None,
    *,
    skip: Optional[Tuple[int, int]] = None,
    axis: int = -1,
) -> Number:
    """Index of the largest value (vfpd_FindMax, vfpd_FindMax2).

    Parameters
    ----------
    x : array_like
        Real points.
    start : int
        First point of the range.
    stop : int, optional
        The point behind its last one.
    skip : pair of int, optional
        A band [from, to) that is left out.

    Returns
    -------
    int, or an array of one for each row
        The index, of the first among equal ones.

    Raises
    ------
    Error
        If `skip` leaves nothing.
    IndexError
        If the range does not lie in the trace.

    Examples
    --------
    >>> dsp.find_max([1.0, 5.0, 3.0])
    1
    >>> dsp.find_max([1.0, 5.0, 3.0], skip=(1, 2))
    2
    """
    return _found(lib.vfpd_FindMax if skip is None else lib.vfpd_FindMax2, x, start, stop, skip or (), axis)


def find_min(
    x: Samples,
    start: int = 0,
    stop: Optional[int] = None,
    *,
    skip: Optional[Tuple[int, int]] = (0, 0),
    axis: int = -1,
) -> Number:
    """Index of the smallest value (vfpd_FindMin2, vfpd_FindMin).

    Parameters
    ----------
    x : array_like
        Real points.
    start : int
        First point of the range.
    stop : int, optional
        The point behind its last one.
    skip : pair of int, optional
        A band [from, to) that is left out; with None the first point is never looked at.

    Returns
    -------
    int, or an array of one for each row
        The index, of the first among equal ones.

    Raises
    ------
    Error
        If `skip` leaves nothing.
    IndexError
        If the range does not lie in the trace.

    Examples
    --------
    >>> dsp.find_min([4.0, 5.0, 3.0])
    2
    """
    return _found(lib.vfpd_FindMin if skip is None else lib.vfpd_FindMin2, x, start, stop, skip or (), axis)


def expand_linear(n: int, first: float, last: float) -> Array:
    """Points that are evenly spaced (vfpd_ExpandLinear).

    Parameters
    ----------
    n : int
        Number of points.
    first : float
        The first one.
    last : float
        The last one.

    Returns
    -------
    ndarray
        n points.

    Examples
    --------
    >>> dsp.expand_linear(3, 1.0, 2.0)
    array([1. , 1.5, 2. ])
    """
    out = np.empty(n)
    lib.vfpd_ExpandLinear(out, n, first, last)
    return out


def expand_log(n: int, first: float, last: float) -> Array:
    """Points in even ratios (vfpd_ExpandLog).

    Parameters
    ----------
    n : int
        Number of points.
    first : float
        The first one.
    last : float
        The last one.

    Returns
    -------
    ndarray
        n points.

    Raises
    ------
    Error
        If an end is not above 0.

    Examples
    --------
    >>> dsp.expand_log(3, 1.0, 100.0)
    array([  1.,  10., 100.])
    """
    if not (first > 0 and last > 0):
        raise Error(f"a logarithmic axis lies above 0, got {first} to {last}", "vfpd_ExpandLog")
    out = np.empty(n)
    lib.vfpd_ExpandLog(out, n, first, last)
    return out


def smooth(x: Samples, width: int, *, phase: bool = False, axis: int = -1) -> Signal:
    """Centred moving average (vfpd_Smooth, vfpd_SmoothCpx).

    Parameters
    ----------
    width : int
        How many points, odd.
    phase : bool
        The points are phases in radians: unwrapped within each window.

    Returns
    -------
    Signal
        As many points; towards the ends fewer are averaged. Of complex points magnitude and phase are averaged.

    Raises
    ------
    Error
        If the width is even or below 3.
    TypeError
        If a phase is complex.

    Examples
    --------
    >>> dsp.smooth([0.0, 0.0, 3.0, 0.0, 0.0], 3)
    Signal([0., 1., 1., 1., 0.], dx=1)
    """
    signal = Signal(x)
    is_complex = signal.dtype.kind == "c"
    if is_complex and phase:
        raise TypeError("a phase is real, got complex points")
    if width < 3 or width % 2 == 0:
        raise Error(f"smooth takes an odd width of 3 or more, got {width}", "vfpd_Smooth")
    rows = moved(signal, axis)
    n = rows.shape[-1]

    def one(index: Any) -> Signal:
        data = np.zeros(n, signal.dtype) if index is None else _array(rows[index], complex if is_complex else float)
        out = np.empty(n, signal.dtype)
        if is_complex:
            lib.vfpd_SmoothCpx(data, out, n, 0, n, width)
        else:
            lib.vfpd_Smooth(data, out, n, 0, n, width, phase)
        return Signal(out, signal.dx)

    return one(()) if signal.ndim == 1 else by_rows(one, rows.shape[:-1], axis)


def format_buffer(x: Samples, format: Choice) -> Array:
    """Reflection coefficients as a display shows them (vfpd_FormatBuffer).

    Parameters
    ----------
    format : int or str
        "level" or "return_loss" (dB), "magnitude", "phase" (degrees) or "swr".

    Returns
    -------
    ndarray
        Real points.

    Raises
    ------
    ValueError
        If there is no such format.

    Examples
    --------
    >>> dsp.format_buffer([0.5, 0.1j], "swr").round(3)
    array([3.   , 1.222])
    """
    data = _array(x, complex)
    out = np.empty(data.shape)
    lib.vfpd_FormatBuffer(choose(Format, format), data, out, 0, data.size)
    return out


def unwrap_phase(x: Samples, *, axis: int = -1) -> Array:
    """Phase of complex points without its jumps (vfpd_UnwrapPhase).

    Returns
    -------
    ndarray
        Radians.

    Examples
    --------
    >>> dsp.unwrap_phase([1, -1 + 0.1j, -1 - 0.1j]).round(3)
    array([0.   , 3.042, 3.241])
    """
    rows = moved(np.atleast_1d(_array(x, complex)), axis)

    def one(index: Any) -> Signal:
        data = np.zeros(rows.shape[-1], complex) if index is None else _array(rows[index], complex)
        out = np.empty(len(data))
        lib.vfpd_UnwrapPhase(data, 0, len(data), out)
        return Signal(out)

    return np.asarray(one(()) if rows.ndim == 1 else by_rows(one, rows.shape[:-1], axis))


def get_fpscr() -> int:
    """The modes of the floating-point unit, of this thread (get_fpscr).

    Returns
    -------
    int
        The modes as the header has them.

    Examples
    --------
    >>> modes = dsp.get_fpscr()
    """
    return int(lib.get_fpscr())


def set_fpscr(value: int) -> int:
    """Sets the modes of the floating-point unit; NumPy and Python compute in them, too (set_fpscr).

    Parameters
    ----------
    value : int
        The modes.

    Returns
    -------
    int
        The modes before.

    Examples
    --------
    >>> modes = dsp.set_fpscr(dsp.get_fpscr())
    """
    return int(lib.set_fpscr(value))


def set_runfast(on: bool) -> int:
    """Flush to zero and default NaN, on or off (set_runfast).

    Parameters
    ----------
    on : bool
        On or off.

    Returns
    -------
    int
        The modes then.

    Examples
    --------
    >>> modes = dsp.set_runfast(False)
    """
    return int(lib.set_runfast(on))
