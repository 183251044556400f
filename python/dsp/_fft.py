"""Fourier transforms and what rests on them. Forward transforms are divided by their length, so that a bin is the
amplitude of its frequency; dx becomes 1/(dx n), and `y.axis()` the frequencies.
"""

from __future__ import annotations

from typing import Optional

from ._c import lib
from ._signal import Samples, Signal, changed

__all__ = [
    "analytic", "bitrev", "dct", "dft", "fft", "hilbert", "idct", "idft", "ifft", "irdft", "irfft", "rdft", "rfft",
]  # fmt: skip


def fft(x: Samples, *, dx: Optional[float] = None) -> Signal:
    """Transform of a power-of-two length: n complex bins (dspi_fft)."""
    return changed(lib.dspi_fft, x, False, dx=dx)


def ifft(x: Samples, *, dx: Optional[float] = None) -> Signal:
    """Undoes fft, complex (dspi_fft)."""
    return changed(lib.dspi_fft, x, True, dx=dx)


def rfft(x: Samples, *, dx: Optional[float] = None) -> Signal:
    """Half spectrum, n/2 + 1 bins, of a real signal of a power-of-two length (dspi_rfft)."""
    return changed(lib.dspi_rfft, x, dx=dx)


def irfft(x: Samples, *, dx: Optional[float] = None) -> Signal:
    """Undoes rfft (dspi_irfft)."""
    return changed(lib.dspi_irfft, x, dx=dx)


def dft(x: Samples, *, dx: Optional[float] = None) -> Signal:
    """Transform of any length: n complex bins (dspi_dft)."""
    return changed(lib.dspi_dft, x, False, dx=dx)


def idft(x: Samples, *, dx: Optional[float] = None) -> Signal:
    """Undoes dft, complex (dspi_dft)."""
    return changed(lib.dspi_dft, x, True, dx=dx)


def rdft(x: Samples, *, dx: Optional[float] = None) -> Signal:
    """Half spectrum, n/2 + 1 bins, of a real signal of any length n (dspi_rdft)."""
    return changed(lib.dspi_rdft, x, dx=dx)


def irdft(x: Samples, odd: bool = False, *, dx: Optional[float] = None) -> Signal:
    """Undoes rdft; `odd` where n was odd, which a half spectrum does not tell (dspi_irdft)."""
    return changed(lib.dspi_irdft, x, odd, dx=dx)


def dct(x: Samples, *, normalised: bool = False, dx: Optional[float] = None) -> Signal:
    """Cosine transform (type II) of a real signal of any length; dx becomes 1/(2 n dx) (dspi_dct)."""
    return changed(lib.dspi_dct, x, normalised << 1, dx=dx)


def idct(x: Samples, *, normalised: bool = False, dx: Optional[float] = None) -> Signal:
    """Undoes dct (dspi_dct)."""
    return changed(lib.dspi_dct, x, 1 | normalised << 1, dx=dx)


def hilbert(x: Samples) -> Signal:
    """Hilbert transform: every frequency a quarter period later; any length, real for real x (dspi_hilbert)."""
    return changed(lib.dspi_hilbert, x)


def analytic(x: Samples) -> Signal:
    """x plus i times its Hilbert transform: mag is the envelope, phase the phase (dspi_analytic)."""
    return changed(lib.dspi_analytic, x)


def bitrev(x: Samples, *, scale: bool = False) -> Signal:
    """Samples in the order of their indices' bits reversed; over n with `scale` (dspi_bitrev, dspi_bitrev_scale)."""
    return changed(lib.dspi_bitrev_scale if scale else lib.dspi_bitrev, x)
