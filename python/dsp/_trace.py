"""What a display shows: plain arrays, ranges [start, stop) of which `stop` None is the end."""

from __future__ import annotations

from typing import Optional, Tuple

import numpy as np

from ._c import lib
from ._names import Choice, Format, choose
from ._signal import Samples, Signal

__all__ = [
    "expand_linear", "expand_log", "find_max", "find_min", "format_buffer", "get_fpscr", "scale_to_fp", "scale_to_int",
    "set_fpscr", "set_runfast", "smooth", "unwrap_phase",
]  # fmt: skip


def _array(x: Samples, kind: type) -> np.ndarray:
    data = np.asarray(x)
    if not np.can_cast(data.dtype, kind, "same_kind"):
        raise TypeError(f"{data.dtype} where {kind.__name__} points are needed")
    return np.require(data, kind, ["C", "A", "W"])


def _range(x: np.ndarray, start: int, stop: Optional[int]) -> Tuple[int, int]:
    stop = len(x) if stop is None else stop
    if x.ndim != 1 or not 0 <= start <= stop <= len(x):
        raise IndexError(f"[{start}, {stop}) is no range of a trace of shape {x.shape}")
    return start, stop


def scale_to_int(x: Samples, lo: float, hi: float, out_lo: int, out_hi: int) -> np.ndarray:
    """[lo, hi] to [out_lo, out_hi] by a line: int32, truncated and saturated; NaN gives 0 (vfpdb_ScaleToInt)."""
    data = _array(x, float)
    out = np.empty(data.shape, np.int32)
    lib.vfpdb_ScaleToInt(data, data.size, lo, hi, out, out_lo, out_hi)
    return out


def scale_to_fp(x: Samples, lo: float, hi: float, out_lo: float, out_hi: float) -> np.ndarray:
    """[lo, hi] to [out_lo, out_hi] by a line (vfpdb_ScaleToFP)."""
    data = _array(x, float)
    out = np.empty(data.shape)
    lib.vfpdb_ScaleToFP(data, data.size, lo, hi, out, out_lo, out_hi)
    return out


def find_max(
    x: Samples, start: int = 0, stop: Optional[int] = None, *, skip: Optional[Tuple[int, int]] = None
) -> int:
    """Index of the largest value in the range, outside the band `skip` (vfpd_FindMax, vfpd_FindMax2)."""
    data = _array(x, float)
    start, stop = _range(data, start, stop)
    return lib.vfpd_FindMax(data, start, stop) if skip is None else lib.vfpd_FindMax2(data, start, stop, *skip)


def find_min(
    x: Samples, start: int = 0, stop: Optional[int] = None, *, skip: Optional[Tuple[int, int]] = (0, 0)
) -> int:
    """Index of the smallest value in the range, outside the band `skip`; with skip None the first point is never looked
    at (vfpd_FindMin2, vfpd_FindMin)."""
    data = _array(x, float)
    start, stop = _range(data, start, stop)
    return lib.vfpd_FindMin(data, start, stop) if skip is None else lib.vfpd_FindMin2(data, start, stop, *skip)


def expand_linear(n: int, first: float, last: float) -> np.ndarray:
    """n points from first to last, evenly spaced (vfpd_ExpandLinear)."""
    out = np.empty(n)
    lib.vfpd_ExpandLinear(out, n, first, last)
    return out


def expand_log(n: int, first: float, last: float) -> np.ndarray:
    """n points from first to last in even ratios, both above 0 (vfpd_ExpandLog)."""
    if not (first > 0 and last > 0):
        raise ValueError("a logarithmic axis lies above 0")
    out = np.empty(n)
    lib.vfpd_ExpandLog(out, n, first, last)
    return out


def smooth(x: Samples, width: int, *, phase: bool = False) -> Signal:
    """Centred moving average over `width` points (odd, at least 3), fewer towards the ends; a phase in radians is
    unwrapped within the window; of complex points magnitude and phase (vfpd_Smooth, vfpd_SmoothCpx)."""
    signal = Signal(x)
    is_complex = signal.dtype.kind == "c"
    if is_complex and phase:
        raise TypeError("a phase is real")
    data = _array(signal, complex if is_complex else float)
    out, n = np.empty_like(data), len(data)
    if is_complex:
        lib.vfpd_SmoothCpx(data, out, n, 0, n, width)
    else:
        lib.vfpd_Smooth(data, out, n, 0, n, width, phase)
    return Signal(out, signal.dx)


def format_buffer(x: Samples, format: Choice) -> np.ndarray:
    """Complex points as "level" or "return_loss" (dB), "magnitude", "phase" (degrees) or "swr" (vfpd_FormatBuffer)."""
    data = _array(x, complex)
    out = np.empty(data.shape)
    lib.vfpd_FormatBuffer(Format(choose(Format, format)), data, out, 0, data.size)
    return out


def unwrap_phase(x: Samples) -> np.ndarray:
    """Phase of complex points in radians, without its jumps (vfpd_UnwrapPhase)."""
    data = _array(x, complex)
    out = np.empty(data.shape)
    lib.vfpd_UnwrapPhase(data, 0, data.size, out)
    return out


def get_fpscr() -> int:
    """The floating-point unit's modes, of this thread, as the header has them."""
    return lib.get_fpscr()


def set_fpscr(value: int) -> int:
    """Sets them and returns what they were. NumPy and Python compute in them, too."""
    return lib.set_fpscr(value)


def set_runfast(on: bool) -> int:
    """Flush to zero and default NaN, on or off; returns the modes then."""
    return lib.set_runfast(on)
