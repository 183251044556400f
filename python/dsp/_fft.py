"""Fourier transforms and what rests on them. Forward transforms are divided by their length, so that a bin is the
amplitude of its frequency; dx becomes 1/(dx n), and `y.axis()` the frequencies.
"""

from __future__ import annotations

from typing import Any, Optional

from ._c import Error, lib
from ._call import changed, power_of_two, real_only
from ._names import Dct
from ._signal import Array, Samples, Signal

__all__ = [
    "analytic", "bitrev", "dct", "dft", "fft", "hilbert", "idct", "idft", "ifft", "irdft", "irfft", "rdft", "rfft",
]  # fmt: skip


def fft(x: Samples, *, axis: int = -1, dx: Optional[float] = None) -> Signal:
    """Fourier transform of a power-of-two length (dspi_fft).

    Returns
    -------
    Signal
        n complex bins.

    Raises
    ------
    Error
        If the length is not a power of two.

    Examples
    --------
    >>> dsp.fft([1.0, 1.0])
    Signal([1.+0.j, 0.+0.j], dx=0.5)
    """
    return changed(lib.dspi_fft, x, False, axis=axis, dx=dx, needs=[power_of_two("dft")])


def ifft(x: Samples, *, axis: int = -1, dx: Optional[float] = None) -> Signal:
    """Undoes `fft` (dspi_fft).

    Parameters
    ----------
    x : array_like
        A spectrum, as the forward transform gives it.

    Returns
    -------
    Signal
        n complex samples.

    Raises
    ------
    Error
        If the length is not a power of two.

    Examples
    --------
    >>> dsp.ifft([1.0, 0.0])
    Signal([1.+0.j, 1.+0.j], dx=0.5)
    """
    return changed(lib.dspi_fft, x, True, axis=axis, dx=dx, needs=[power_of_two("idft")])


def _half_spectrum(routine: Any, x: Array) -> None:
    bins = x.shape[-1]
    if bins < 1 or (bins > 1 and (bins - 1) & (bins - 2)):
        raise Error(f"irfft takes 1 bin or a power of two plus 1, got {bins}; irdft takes any number", routine.__name__)


def rfft(x: Samples, *, axis: int = -1, dx: Optional[float] = None) -> Signal:
    """Half spectrum of a real signal of a power-of-two length (dspi_rfft).

    Parameters
    ----------
    x : array_like
        Real samples.

    Returns
    -------
    Signal
        n/2 + 1 complex bins, from frequency 0 to Nyquist.

    Raises
    ------
    Error
        If `x` is complex, or its length is not a power of two.

    Examples
    --------
    >>> dsp.rfft([1.0, 0.0, 1.0, 0.0], dx=0.25)
    Signal([0.5+0.j, 0. +0.j, 0.5+0.j], dx=1)
    """
    return changed(lib.dspi_rfft, x, axis=axis, dx=dx, needs=[real_only, power_of_two("rdft")])


def irfft(x: Samples, *, axis: int = -1, dx: Optional[float] = None) -> Signal:
    """Undoes `rfft` (dspi_irfft).

    Parameters
    ----------
    x : array_like
        A spectrum, as the forward transform gives it.

    Returns
    -------
    Signal
        2 (n - 1) real samples of n bins.

    Raises
    ------
    Error
        If n - 1 is not a power of two.

    Examples
    --------
    >>> dsp.irfft([0.5, 0.0, 0.5])
    Signal([1., 0., 1., 0.], dx=0.25)
    """
    return changed(lib.dspi_irfft, x, axis=axis, dx=dx, needs=[_half_spectrum])


def dft(x: Samples, *, axis: int = -1, dx: Optional[float] = None) -> Signal:
    """Fourier transform of any length (dspi_dft).

    Returns
    -------
    Signal
        n complex bins.

    Examples
    --------
    >>> dsp.mag(dsp.dft([3.0, 0.0, 0.0])).round(12)
    array([1., 1., 1.])
    """
    return changed(lib.dspi_dft, x, False, axis=axis, dx=dx)


def idft(x: Samples, *, axis: int = -1, dx: Optional[float] = None) -> Signal:
    """Undoes `dft` (dspi_dft).

    Parameters
    ----------
    x : array_like
        A spectrum, as the forward transform gives it.

    Returns
    -------
    Signal
        n complex samples.

    Examples
    --------
    >>> dsp.mag(dsp.idft([1.0, 0.0, 0.0])).round(12)
    array([1., 1., 1.])
    """
    return changed(lib.dspi_dft, x, True, axis=axis, dx=dx)


def rdft(x: Samples, *, axis: int = -1, dx: Optional[float] = None) -> Signal:
    """Half spectrum of a real signal of any length (dspi_rdft).

    Parameters
    ----------
    x : array_like
        Real samples.

    Returns
    -------
    Signal
        n/2 + 1 complex bins, rounded down.

    Examples
    --------
    >>> dsp.mag(dsp.rdft([3.0, 0.0, 0.0])).round(12)
    array([1., 1.])
    """
    return changed(lib.dspi_rdft, x, axis=axis, dx=dx, needs=[real_only])


def irdft(x: Samples, odd: bool = False, *, axis: int = -1, dx: Optional[float] = None) -> Signal:
    """Undoes `rdft` (dspi_irdft).

    Parameters
    ----------
    x : array_like
        A spectrum, as the forward transform gives it.
    odd : bool
        The signal had an odd length, which a half spectrum does not tell.

    Returns
    -------
    Signal
        2 (n - 1) real samples of n bins, one more with `odd`.

    Examples
    --------
    >>> dsp.irdft([1.0, 1.0], odd=True).round(12) + 0
    array([3., 0., 0.])
    """
    return changed(lib.dspi_irdft, x, odd, axis=axis, dx=dx)


def dct(x: Samples, *, normalised: bool = False, axis: int = -1, dx: Optional[float] = None) -> Signal:
    """Cosine transform of type II of a real signal of any length (dspi_dct).

    Parameters
    ----------
    x : array_like
        Real samples.
    normalised : bool
        The orthonormal form but for a factor: y[0] over the root of 2, all times 2.

    Returns
    -------
    Signal
        n coefficients; dx becomes 1/(2 n dx).

    Examples
    --------
    >>> dsp.dct([1.0, 1.0, 1.0]).round(12) + 0
    array([1., 0., 0.])
    """
    return changed(lib.dspi_dct, x, normalised * Dct.NORMALISED, axis=axis, dx=dx, needs=[real_only])


def idct(x: Samples, *, normalised: bool = False, axis: int = -1, dx: Optional[float] = None) -> Signal:
    """Undoes `dct` (dspi_dct).

    Parameters
    ----------
    x : array_like
        Coefficients, as `dct` gives them.
    normalised : bool
        The orthonormal form but for a factor: y[0] over the root of 2, all times 2.

    Returns
    -------
    Signal
        n real samples.

    Examples
    --------
    >>> dsp.idct([1.0, 0.0, 0.0]).round(12)
    array([1., 1., 1.])
    """
    return changed(lib.dspi_dct, x, Dct.INVERSE | normalised * Dct.NORMALISED, axis=axis, dx=dx, needs=[real_only])


def hilbert(x: Samples, *, axis: int = -1) -> Signal:
    """Hilbert transform: every frequency a quarter period later (dspi_hilbert).

    Returns
    -------
    Signal
        The transform, real for real `x`; constant part and Nyquist frequency are removed.

    Examples
    --------
    >>> dsp.hilbert([1.0, 0.0, -1.0, 0.0]).round(12)
    array([ 0.,  1.,  0., -1.])
    """
    return changed(lib.dspi_hilbert, x, axis=axis)


def analytic(x: Samples, *, axis: int = -1) -> Signal:
    """Analytic signal: x plus i times its Hilbert transform (dspi_analytic).

    Returns
    -------
    Signal
        Complex samples: `mag` is the envelope, `phase` the phase.

    Examples
    --------
    >>> dsp.mag(dsp.analytic([1.0, 0.0, -1.0, 0.0])).round(12)
    array([1., 1., 1., 1.])
    """
    return changed(lib.dspi_analytic, x, axis=axis)


def bitrev(x: Samples, *, scale: bool = False, axis: int = -1) -> Signal:
    """Samples in the order of their indices with the bits reversed (dspi_bitrev, dspi_bitrev_scale).

    Parameters
    ----------
    scale : bool
        Divides by the length.

    Returns
    -------
    Signal
        The samples; twice restores the order.

    Raises
    ------
    Error
        If the length is not a power of two.

    Examples
    --------
    >>> dsp.bitrev([0.0, 1.0, 2.0, 3.0])
    Signal([0., 2., 1., 3.], dx=1)
    """
    return changed(lib.dspi_bitrev_scale if scale else lib.dspi_bitrev, x, axis=axis, needs=[power_of_two()])
