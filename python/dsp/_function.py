"""Elementary functions, sample by sample. Outside its domain each has a fixed value, so that none gives NaN or infinity
for finite samples.
"""

from __future__ import annotations

from typing import Optional

from ._c import lib
from ._call import changed, real_only
from ._names import Addcos
from ._signal import Out, Samples, Signal

__all__ = [
    "acos", "addcos", "asin", "besy0", "besy1", "cosh", "exp", "exp10", "log", "log10", "sinh",
]  # fmt: skip


def asin(x: Samples, *, out: Out = None) -> Signal:
    """Inverse sine (dspi_asin).

    Parameters
    ----------
    x : array_like
        Real samples.

    Returns
    -------
    Signal
        Radians; 0 where |x| > 1.

    Examples
    --------
    >>> dsp.asin([0.0, 1.0, 2.0])
    Signal([0.        , 1.57079633, 0.        ], dx=1)
    """
    return changed(lib.dspi_asin, x, out=out, each=True, needs=[real_only])


def acos(x: Samples, *, out: Out = None) -> Signal:
    """Inverse cosine (dspi_acos).

    Parameters
    ----------
    x : array_like
        Real samples.

    Returns
    -------
    Signal
        Radians; 0 where |x| > 1.

    Examples
    --------
    >>> dsp.acos([1.0, 0.0, 2.0])
    Signal([0.        , 1.57079633, 0.        ], dx=1)
    """
    return changed(lib.dspi_acos, x, out=out, each=True, needs=[real_only])


def sinh(x: Samples, *, out: Out = None) -> Signal:
    """Hyperbolic sine (dspi_sinh).

    Parameters
    ----------
    x : array_like
        Real samples.

    Returns
    -------
    Signal
        The sine, at most 1e100 in magnitude.

    Examples
    --------
    >>> dsp.sinh([0.0, 1.0, 1000.0])
    Signal([0.00000000e+000, 1.17520119e+000, 1.00000000e+100], dx=1)
    """
    return changed(lib.dspi_sinh, x, out=out, each=True, needs=[real_only])


def cosh(x: Samples, *, out: Out = None) -> Signal:
    """Hyperbolic cosine (dspi_cosh).

    Parameters
    ----------
    x : array_like
        Real samples.

    Returns
    -------
    Signal
        The cosine, at most 1e100.

    Examples
    --------
    >>> dsp.cosh([0.0, 1.0, 1000.0])
    Signal([1.00000000e+000, 1.54308063e+000, 1.00000000e+100], dx=1)
    """
    return changed(lib.dspi_cosh, x, out=out, each=True, needs=[real_only])


def besy0(x: Samples, *, out: Out = None) -> Signal:
    """Bessel function of the second kind, order 0 (dspi_besy0).

    Parameters
    ----------
    x : array_like
        Real samples.

    Returns
    -------
    Signal
        Y0(x); 0 where x <= 0.

    Examples
    --------
    >>> dsp.besy0([1.0, -1.0])
    Signal([0.08825696, 0.        ], dx=1)
    """
    return changed(lib.dspi_besy0, x, out=out, each=True, needs=[real_only])


def besy1(x: Samples, *, out: Out = None) -> Signal:
    """Bessel function of the second kind, order 1 (dspi_besy1).

    Parameters
    ----------
    x : array_like
        Real samples.

    Returns
    -------
    Signal
        Y1(x); 0 where x <= 0.

    Examples
    --------
    >>> dsp.besy1([1.0, -1.0])
    Signal([-0.78121282,  0.        ], dx=1)
    """
    return changed(lib.dspi_besy1, x, out=out, each=True, needs=[real_only])


def exp(x: Samples, *, out: Out = None) -> Signal:
    """Exponential (dspi_exp).

    Returns
    -------
    Signal
        e to the power x, at most 1e100 in magnitude.

    Examples
    --------
    >>> dsp.exp([0.0, 1.0, 1000.0])
    Signal([1.00000000e+000, 2.71828183e+000, 1.00000000e+100], dx=1)
    """
    return changed(lib.dspi_exp, x, out=out, each=True)


def exp10(x: Samples, *, axis: int = -1, out: Out = None) -> Signal:
    """Power of ten (dspi_exp10).

    Returns
    -------
    Signal
        10 to the power x, at most 1e100 in magnitude. A real sample below -1e100 ends the conversion of its row.

    Examples
    --------
    >>> dsp.exp10([0.0, 2.0, 1000.0])
    Signal([1.e+000, 1.e+002, 1.e+100], dx=1)
    """
    return changed(lib.dspi_exp10, x, axis=axis, out=out)


def log(x: Samples, *, out: Out = None) -> Signal:
    """Natural logarithm (dspi_log).

    Returns
    -------
    Signal
        The logarithm; -708.4 for real samples that have none.

    Examples
    --------
    >>> dsp.log([1.0, 0.0])
    Signal([   0.        , -708.39641853], dx=1)
    """
    return changed(lib.dspi_log, x, out=out, each=True)


def log10(x: Samples, *, out: Out = None) -> Signal:
    """Common logarithm (dspi_log10).

    Returns
    -------
    Signal
        The logarithm; -307.7 for real samples that have none.

    Examples
    --------
    >>> dsp.log10([100.0, 0.0])
    Signal([   2.        , -307.65265557], dx=1)
    """
    return changed(lib.dspi_log10, x, out=out, each=True)


def addcos(
    x: Samples,
    freq: float,
    amp: float = 1.0,
    phase: float = 0.0,
    *,
    both: bool = False,
    axis: int = -1,
    dx: Optional[float] = None,
    out: Out = None,
) -> Signal:
    """Adds a tone (dspi_addcos).

    Parameters
    ----------
    freq : float
        Frequency in cycles per unit of dx: hertz where that is in seconds.
    amp : float
        Amplitude.
    phase : float
        Phase of the first sample in radians.
    both : bool
        Adds i sin to complex samples as well, so a complex exponential.

    Returns
    -------
    Signal
        x + amp cos(phase + 2 pi freq t), t the place of the sample.

    Examples
    --------
    >>> dsp.addcos([1.0, 1.0, 1.0], freq=0.5)
    Signal([2., 0., 2.], dx=1)
    """
    return changed(lib.dspi_addcos, x, both * Addcos.EXPONENTIAL, freq, amp, phase, axis=axis, dx=dx, out=out)
