"""Arithmetic, sample by sample. The result is a new signal, or in `out`; `x` stays as it is."""

from __future__ import annotations

from typing import Any, NamedTuple

import numpy as np

from ._c import lib
from ._call import changed, moved
from ._signal import Out, Samples, Signal, doubles

__all__ = [
    "Limited", "cscale", "limit", "neg", "offset", "recip", "scale", "sqrt", "square", "timesi", "zero",
]  # fmt: skip


def neg(x: Samples, *, out: Out = None) -> Signal:
    """Negative (dspi_neg).

    Returns
    -------
    Signal
        -x.

    Examples
    --------
    >>> dsp.neg([1.0, -2.0])
    Signal([-1.,  2.], dx=1)
    """
    return changed(lib.dspi_neg, x, out=out, each=True)


def offset(x: Samples, c: float, *, out: Out = None) -> Signal:
    """Adds a real constant (dspi_offset).

    Parameters
    ----------
    c : float
        What is added.

    Returns
    -------
    Signal
        x + c; of complex samples only the real part moves.

    Examples
    --------
    >>> dsp.offset([1.0, 2.0], 0.5)
    Signal([1.5, 2.5], dx=1)
    """
    return changed(lib.dspi_offset, x, c, out=out, each=True)


def scale(x: Samples, k: float, *, out: Out = None) -> Signal:
    """Multiplies by a real constant (dspi_scale).

    Parameters
    ----------
    k : float
        The factor.

    Returns
    -------
    Signal
        k x.

    Examples
    --------
    >>> dsp.scale([1.0, 2.0], 10)
    Signal([10., 20.], dx=1)
    """
    return changed(lib.dspi_scale, x, k, out=out, each=True)


def cscale(x: Samples, c: complex, *, out: Out = None) -> Signal:
    """Multiplies by a complex constant (dspi_cscale).

    Parameters
    ----------
    c : complex
        The factor.

    Returns
    -------
    Signal
        c x, complex.

    Raises
    ------
    ValueError
        If `out` does not fit; it is complex, so `x` must be, too.

    Examples
    --------
    >>> dsp.cscale([1.0, 2.0], 1j)
    Signal([0.+1.j, 0.+2.j], dx=1)
    """
    factor = complex(c)
    return changed(lib.dspi_cscale, x, factor.real, factor.imag, out=out, each=True)


def recip(x: Samples, *, out: Out = None) -> Signal:
    """Reciprocal (dspi_recip).

    Returns
    -------
    Signal
        1/x, and 1e100 for 0.

    Examples
    --------
    >>> dsp.recip([4.0, 0.0])
    Signal([2.5e-001, 1.0e+100], dx=1)
    """
    return changed(lib.dspi_recip, x, out=out, each=True)


def sqrt(x: Samples, *, out: Out = None) -> Signal:
    """Square root (dspi_sqrt).

    Returns
    -------
    Signal
        The root; 0 for negative real samples, the principal root of complex ones.

    Examples
    --------
    >>> dsp.sqrt([4.0, -4.0])
    Signal([2., 0.], dx=1)
    """
    return changed(lib.dspi_sqrt, x, out=out, each=True)


def square(x: Samples, *, out: Out = None) -> Signal:
    """Square (dspi_square).

    Returns
    -------
    Signal
        x x.

    Examples
    --------
    >>> dsp.square([3.0, -4.0])
    Signal([ 9., 16.], dx=1)
    """
    return changed(lib.dspi_square, x, out=out, each=True)


def timesi(x: Samples, *, out: Out = None) -> Signal:
    """Multiplies by the imaginary unit (dspi_timesi).

    Returns
    -------
    Signal
        i x, complex.

    Raises
    ------
    ValueError
        If `out` does not fit; it is complex, so `x` must be, too.

    Examples
    --------
    >>> dsp.timesi([1.0, 2.0])
    Signal([0.+1.j, 0.+2.j], dx=1)
    """
    return changed(lib.dspi_timesi, x, out=out, each=True)


def zero(x: Samples, *, out: Out = None) -> Signal:
    """Zeros in the form of a signal (dspi_zero).

    Returns
    -------
    Signal
        As many zeros as `x` has samples, of its kind and spacing.

    Examples
    --------
    >>> dsp.zero([1.0, 2.0])
    Signal([0., 0.], dx=1)
    """
    return changed(lib.dspi_zero, x, out=out, each=True)


class Limited(NamedTuple):
    """What `limit` returns: the samples, and whether any of a row had to be clamped."""

    signal: Signal
    clipped: Any


def limit(x: Samples, lo: float, hi: float, *, axis: int = -1, out: Out = None) -> Limited:
    """Clamps into an interval, each part of complex samples by itself (dspi_limit).

    Parameters
    ----------
    lo : float
        The least value.
    hi : float
        The greatest value.

    Returns
    -------
    Limited
        The samples, and whether any was outside: of a signal a bool, of more dimensions one for each row.

    Examples
    --------
    >>> dsp.limit([0.5, 3.0], -1, 1)
    Limited(signal=Signal([0.5, 1. ], dx=1), clipped=True)
    """
    array, clipped = doubles(x), np.zeros(1, np.int32)
    result = changed(lib.dspi_limit, x, lo, hi, clipped, out=out, each=True)
    if array.ndim == 1:
        return Limited(result, bool(clipped[0]))
    parts = moved(array if array.dtype.kind == "f" else np.stack([array.real, array.imag]), axis)
    outside = ((parts < min(lo, hi)) | (parts > max(lo, hi))).any(-1)
    return Limited(result, outside if array.dtype.kind == "f" else outside.any(0))
