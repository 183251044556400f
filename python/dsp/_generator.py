"""Generators: lines, tones, complex exponentials."""

from __future__ import annotations

from ._c import lib, run
from ._signal import Record, Signal

__all__ = ["cexp", "cos", "line"]


def line(length: int, slope: float = 1.0, offset: float = 0.0, *, dx: float = 1.0) -> Signal:
    """A straight line (dspc_line).

    Parameters
    ----------
    length : int
        Number of samples.
    slope : float
        Slope per unit of dx.
    offset : float
        The first sample.
    dx : float
        Spacing of the samples.

    Returns
    -------
    Signal
        offset + slope dx k at sample k.

    Examples
    --------
    >>> dsp.line(4, 2.0, 1.0, dx=0.5)
    Signal([1., 2., 3., 4.], dx=0.5)
    """
    record = Record.sized(length, dx)
    run(lib.dspc_line, record, slope, offset)
    return record.signal()


def cos(length: int, freq: float, phase: float = 0.0, *, dx: float = 1.0) -> Signal:
    """A tone (dspc_cos).

    Parameters
    ----------
    length : int
        Number of samples.
    freq : float
        Frequency in cycles per unit of dx: hertz where that is in seconds.
    phase : float
        Phase of the first sample in radians.
    dx : float
        Spacing of the samples.

    Returns
    -------
    Signal
        cos(phase + 2 pi freq dx k) at sample k.

    Examples
    --------
    >>> dsp.cos(3, 250.0, dx=1e-3).round(6)
    array([ 1.,  0., -1.])
    """
    record = Record.sized(length, dx)
    run(lib.dspc_cos, record, freq, phase)
    return record.signal()


def cexp(length: int, freq: float, phase: float = 0.0, *, dx: float = 1.0) -> Signal:
    """A complex exponential (dspc_cexp).

    Parameters
    ----------
    length : int
        Number of samples.
    freq : float
        Frequency in cycles per unit of dx: hertz where that is in seconds.
    phase : float
        Phase of the first sample in radians.
    dx : float
        Spacing of the samples.

    Returns
    -------
    Signal
        exp(i (phase + 2 pi freq dx k)) at sample k.

    Examples
    --------
    >>> dsp.cexp(2, 0.5).round(6)
    Signal([ 1.+0.j, -1.+0.j], dx=1)
    """
    record = Record.sized(length, dx, True)
    run(lib.dspc_cexp, record, freq, phase)
    return record.signal()
