"""Sample-rate conversion of streams, by any ratio of input to output rate from 1 up."""

from __future__ import annotations

import math
from typing import Any, Optional, Union

import numpy as np

from ._c import Error, INT32, RsmpCoef, RsmpState, lib, run

from ._names import listed
from ._signal import Array, Record, Samples, Signal, _Result, doubles
from ._stream import Stream

__all__ = ["FractionalResampler", "Resampler", "rsmp", "rsmp_cos", "rsmp_pcos"]

KERNELS = {0: 8194, 1: 13314, 2: 2050, 3: 10242, 4: 13314}


class _Coefficients:
    """What a ratio needs."""

    def __init__(self, ratio: float, mode: bool) -> None:
        self.c = RsmpCoef()
        self.arguments = ratio, mode
        lib.dsph_rsmp_coef_init(self.c)
        run(lib.dsph_rsmp_coef_alloc, self.c, 0)
        run(lib.dsph_rsmp_coef_setup, self.c, 0, ratio, mode, 0)

    def __del__(self, destroy: Any = lib.dsph_rsmp_coef_destroy) -> None:
        if hasattr(self, "c"):
            destroy(self.c)

    def __reduce__(self) -> Any:
        return _Coefficients, self.arguments


class _State:
    """What a row of a stream carries from block to block."""

    def __init__(self, coefficients: _Coefficients) -> None:
        self.c, self.scratch = RsmpState(), Record()
        self.is_complex: Optional[bool] = None
        lib.dsph_rsmp_state_init(self.c)
        self.coefficients = coefficients

    def __del__(self, destroy: Any = lib.dsph_rsmp_state_destroy) -> None:
        if hasattr(self, "c"):
            destroy(self.c)

    def begin(self, is_complex: bool) -> None:
        run(lib.dsph_rsmp_state_alloc, self.coefficients.c, self.c, is_complex)
        run(lib.dsph_rsmp_state_reset, self.coefficients.c, self.c)
        self.is_complex = is_complex

    def _signals(self) -> list[Any]:
        stages = [side[k] for side in (self.c.stage_hist, self.c.stage_phase) for k in range(self.c.stages)]
        return stages + [self.c.pre_hist, self.c.rsmp_state, self.c.post_hist, self.c.post_phase]

    def __getstate__(self) -> Any:
        held = [] if self.is_complex is None else [Record.copied(vec) for vec in self._signals()]
        return self.coefficients, self.is_complex, self.c.delay1, self.c.delay2, held

    def __setstate__(self, state: Any) -> None:
        coefficients, is_complex, delay1, delay2, held = state
        _State.__init__(self, coefficients)
        if is_complex is not None:
            self.begin(is_complex)
            self.c.delay1, self.c.delay2 = delay1, delay2
            for vec, record in zip(self._signals(), held):
                run(lib.dsp_copy, vec, record)


class Resampler(Stream):
    """Converts a stream to a lower sample rate, with the lowpasses that it takes (dsph_rsmp).

    Outputs that reach into the silence before the stream are dropped. A stream is real or complex by its first block.

    Parameters
    ----------
    ratio : float
        Input rate over output rate, 1 or more.
    mode : bool
        Sends a ratio of 1 through the fractional stage, too.

    Raises
    ------
    Error
        If the ratio is below 1 or not finite.

    Examples
    --------
    >>> cd = dsp.Resampler(48.0 / 44.1)
    >>> [len(cd(np.ones(480))) for _ in range(4)]
    [390, 441, 441, 441]
    """

    def __init__(self, ratio: float, *, mode: bool = False) -> None:
        if not (ratio >= 1 and math.isfinite(ratio)):
            raise Error(f"a resampler takes a finite ratio of 1 or more, got {ratio}", "dsph_rsmp_coef_setup")
        self._coefficients = _Coefficients(ratio, mode)
        super().__init__()

    def _begin(self) -> Any:
        return _State(self._coefficients)

    def _block(self, x: Record, state: Any) -> Signal:
        if state.is_complex is None:
            state.begin(bool(x.vec.is_complex))
        if x.vec.is_complex and not state.is_complex:
            raise Error("a real stream takes real blocks, got a complex one; reset() begins another", "dsph_rsmp")
        if state.is_complex and not x.vec.is_complex:
            run(lib.dspi_rtoc, x)
        return self._filtered(lib.dsph_rsmp, x, state.scratch, self._coefficients.c, state.c)


class FractionalResampler(Stream):
    """One output every `step` samples of a stream, through a kernel (dspd_rsmp).

    Nothing is filtered: frequencies above the output's Nyquist frequency alias.

    Parameters
    ----------
    step : float
        Input samples for one output, 0 or more.
    table : int or array_like
        One of the built-in kernels, 0 to 4, or a table of `rsmp`, `rsmp_cos` or `rsmp_pcos`.
    interp : bool
        Interpolates between the points of the kernel.

    Raises
    ------
    Error
        If the step is negative or not finite, or `table` is not a kernel table.

    Examples
    --------
    >>> half = dsp.FractionalResampler(2.0)
    >>> len(half(np.ones(100)))
    51
    """

    def __init__(self, step: float, table: Union[int, Samples] = 4, *, interp: bool = True) -> None:
        if not (step >= 0 and math.isfinite(step)):
            raise Error(f"a resampler takes a finite step of 0 or more, got {step}", "dspd_rsmp")
        self.step, self.interp, self._most = step, interp, None
        kernel = rsmp(KERNELS[_kind(table)], table) if isinstance(table, (int, np.integer)) else doubles(table)
        self._held = _taps(kernel)
        self._table = Record.copy(kernel)
        super().__init__()

    def __call__(self, x: Samples, most: Optional[int] = None, *, axis: int = -1) -> Signal:
        """Processes a block.

        Parameters
        ----------
        x : array_like
            The block, real or complex.
        most : int, optional
            The most outputs wanted, needed for a step of 0; the others come first in the next block. By default all,
            about len(x)/step.
        axis : int
            The axis along which the samples lie.

        Returns
        -------
        Signal
            The outputs that the block completes.

        Raises
        ------
        Error
            If a step of 0 has no `most`, or the block does not continue the stream.
        """
        if most is None and not self.step > 0:
            raise Error("a step of 0 gives any number of outputs: say how many by `most`", "dspd_rsmp")
        self._most = None if most is None else INT32.from_param(most).value
        return super().__call__(x, axis=axis)

    def _block(self, x: Record, state: Any) -> Signal:
        result = _Result()
        every = (x.vec.length + self._held) / self.step + 2 if self._most is None else self._most
        result.vec.length = int(min(every, 2**30))
        run(lib.dspd_rsmp, x, result, self.interp, self._table, self.step, state)
        return result.look()


def _kind(kind: Any) -> int:
    if kind not in KERNELS:
        raise ValueError(f"there is no kernel {kind}, but {listed(KERNELS)}")
    return int(kind)


def _taps(table: Array) -> int:
    """The number of taps of a kernel table, which is its first sample; refuses anything else."""
    if table.ndim != 1 or table.dtype.kind == "c":
        raise Error("a kernel table is real and has one dimension", "dspd_rsmp")
    if len(table) < 2:
        return 0
    if not 0.5 <= table[0] < 2**31 - 4:
        raise Error(f"a kernel table begins with its number of taps, 1 or more, got {table[0]}", "dspd_rsmp")
    taps = int(table[0] + 0.5)
    if (len(table) - 2) % taps:
        raise Error(f"a kernel of {taps} taps has a multiple of them of samples plus 2, got {len(table)}", "dspd_rsmp")
    return taps


def _even(length: int, routine: str) -> Record:
    if length % 2:
        raise Error(f"a kernel table has an even length, got {length}", routine)
    return Record.sized(length)


def rsmp(length: int, kind: Any) -> Signal:
    """Kernel table of a built-in kind (dspc_rsmp).

    Parameters
    ----------
    length : int
        Number of samples, even.
    kind : int
        0 to 4.

    Returns
    -------
    Signal
        The number of taps, and points of the kernel.

    Raises
    ------
    Error
        If the length is odd.
    ValueError
        If there is no such kind.

    Examples
    --------
    >>> dsp.rsmp(10, 2).round(3)
    array([ 8.00e+00, -0.00e+00,  1.00e-03,  3.90e-02,  2.44e-01,  4.33e-01,
            2.44e-01,  3.90e-02,  1.00e-03, -0.00e+00])
    """
    record = _even(length, "dspc_rsmp")
    run(lib.dspc_rsmp, record, _kind(kind))
    return record.signal()


def rsmp_cos(length: int, c: Samples) -> Signal:
    """Kernel table by a cosine series (dspc_rsmp_cos).

    Parameters
    ----------
    length : int
        Number of samples, even.
    c : array_like
        The number of taps, and the coefficients.

    Returns
    -------
    Signal
        The number of taps, and points of the kernel.

    Raises
    ------
    Error
        If the length is odd, or the coefficients are complex.

    Examples
    --------
    >>> dsp.rsmp_cos(10, [8.0, 0.5, 0.5]).round(3)
    array([8.   , 0.   , 0.146, 0.5  , 0.854, 1.   , 0.854, 0.5  , 0.146,
           0.   ])
    """
    record, coefficients = _even(length, "dspc_rsmp_cos"), doubles(c)
    if coefficients.dtype.kind == "c":
        raise Error("rsmp_cos takes real coefficients, got complex ones", "dspc_rsmp_cos")
    run(lib.dspc_rsmp_cos, record, Record.lent(coefficients))
    return record.signal()


def rsmp_pcos(length: int, c: Samples) -> Signal:
    """Kernel table by powers of a cosine (dspc_rsmp_pcos).

    Parameters
    ----------
    length : int
        Number of samples, even.
    c : array_like
        The number of taps, and the coefficients.

    Returns
    -------
    Signal
        The number of taps, and points of the kernel.

    Raises
    ------
    Error
        If the length is odd, or the coefficients are complex.

    Examples
    --------
    >>> dsp.rsmp_pcos(10, [8.0, 0.5, 0.5]).round(3)
    array([8.   , 0.   , 0.146, 0.5  , 0.854, 1.   , 0.854, 0.5  , 0.146,
           0.   ])
    """
    record, coefficients = _even(length, "dspc_rsmp_pcos"), doubles(c)
    if coefficients.dtype.kind == "c":
        raise Error("rsmp_pcos takes real coefficients, got complex ones", "dspc_rsmp_pcos")
    run(lib.dspc_rsmp_pcos, record, Record.lent(coefficients))
    return record.signal()
