"""Real and complex, magnitude and phase, decibels: one signal in another form."""

from __future__ import annotations

from ._c import lib
from ._call import broadcast, changed, made, real_only, same_length
from ._signal import Out, Samples, Signal

__all__ = ["conj", "db", "imag", "mag", "magsq", "phase", "ptor", "real", "ritoc", "rtoc", "rtop"]


def db(x: Samples, factor: float = 20.0, *, out: Out = None) -> Signal:
    """Decibels (dspi_db).

    Take `mag` of complex samples first: of those themselves, the logarithm is complex.

    Parameters
    ----------
    factor : float
        20 for amplitudes, 10 for powers.

    Returns
    -------
    Signal
        factor log10 x; finite also for 0, where it is -307.65 times the factor.

    Examples
    --------
    >>> dsp.db([1.0, 10.0, 100.0])
    Signal([ 0., 20., 40.], dx=1)
    >>> dsp.db(dsp.mag([3 + 4j]))
    Signal([13.97940009], dx=1)
    """
    return changed(lib.dspi_db, x, factor, out=out, each=True)


def real(x: Samples) -> Signal:
    """Real parts (dspi_real).

    Returns
    -------
    Signal
        Real samples.

    Examples
    --------
    >>> dsp.real([1 + 2j, 3 - 4j])
    Signal([1., 3.], dx=1)
    """
    return changed(lib.dspi_real, x, each=True)


def imag(x: Samples) -> Signal:
    """Imaginary parts (dspi_imag).

    Returns
    -------
    Signal
        Real samples; zeros for real `x`.

    Examples
    --------
    >>> dsp.imag([1 + 2j, 3 - 4j])
    Signal([ 2., -4.], dx=1)
    """
    return changed(lib.dspi_imag, x, each=True)


def rtoc(x: Samples) -> Signal:
    """Complex form (dspi_rtoc).

    Returns
    -------
    Signal
        Complex samples, with imaginary parts 0 where `x` is real.

    Examples
    --------
    >>> dsp.rtoc([1.0, 2.0])
    Signal([1.+0.j, 2.+0.j], dx=1)
    """
    return changed(lib.dspi_rtoc, x, each=True)


def conj(x: Samples, *, out: Out = None) -> Signal:
    """Complex conjugate (dspi_conj).

    Returns
    -------
    Signal
        The conjugate; real samples stay.

    Examples
    --------
    >>> dsp.conj([1 + 2j])
    Signal([1.-2.j], dx=1)
    """
    return changed(lib.dspi_conj, x, out=out, each=True)


def mag(x: Samples) -> Signal:
    """Magnitude (dspu_mag).

    Returns
    -------
    Signal
        Real samples.

    Examples
    --------
    >>> dsp.mag([3 + 4j, -2])
    Signal([5., 2.], dx=1)
    """
    return made(lib.dspu_mag, x, ..., each=True)


def magsq(x: Samples) -> Signal:
    """Squared magnitude (dspu_magsq).

    Returns
    -------
    Signal
        Real samples, 1e100 where a part is beyond 1e100.

    Examples
    --------
    >>> dsp.magsq([3 + 4j, -2])
    Signal([25.,  4.], dx=1)
    """
    return made(lib.dspu_magsq, x, ..., each=True)


def phase(x: Samples) -> Signal:
    """Phase (dspi_phase).

    Returns
    -------
    Signal
        Radians in [-pi, pi].

    Examples
    --------
    >>> dsp.phase([1j, -1.0])
    Signal([1.57079633, 3.14159265], dx=1)
    """
    return changed(lib.dspi_phase, x, each=True)


def rtop(x: Samples, *, out: Out = None) -> Signal:
    """To polar form (dspi_rtop).

    Returns
    -------
    Signal
        Complex samples, magnitude + i phase.

    Raises
    ------
    ValueError
        If `out` does not fit; it is complex, so `x` must be, too.

    Examples
    --------
    >>> dsp.rtop([2j])
    Signal([2.+1.57079633j], dx=1)
    """
    return changed(lib.dspi_rtop, x, out=out, each=True)


def ptor(x: Samples, *, out: Out = None) -> Signal:
    """From polar form (dspi_ptor).

    Returns
    -------
    Signal
        Complex samples, of those that `rtop` gives.

    Examples
    --------
    >>> dsp.ptor([2 + 0j])
    Signal([2.+0.j], dx=1)
    """
    return changed(lib.dspi_ptor, x, out=out, each=True)


def ritoc(re: Samples, im: Samples) -> Signal:
    """Complex samples of their parts (dspb_ritoc).

    Parameters
    ----------
    re : array_like
        Real parts.
    im : array_like
        Imaginary parts.

    Returns
    -------
    Signal
        re + i im.

    Raises
    ------
    Error
        If a part is complex, or the shapes do not go together.

    Examples
    --------
    >>> dsp.ritoc([1.0, 2.0], [3.0, 4.0])
    Signal([1.+3.j, 2.+4.j], dx=1)
    """
    return made(lib.dspb_ritoc, *broadcast(re, im), ..., each=True, needs=[real_only, same_length])
