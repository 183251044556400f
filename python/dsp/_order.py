"""Order and length of signals."""

from __future__ import annotations

from ._c import lib
from ._call import changed
from ._names import Choice, Pad, choose
from ._signal import Out, Samples, Signal

__all__ = ["orecon", "recon", "rev", "shift", "sort", "swap_halves", "unzpad", "zpad"]


def rev(x: Samples, *, axis: int = -1, out: Out = None) -> Signal:
    """Back to front (dspi_rev).

    Returns
    -------
    Signal
        The samples in reverse order.

    Examples
    --------
    >>> dsp.rev([1.0, 2.0, 3.0])
    Signal([3., 2., 1.], dx=1)
    """
    return changed(lib.dspi_rev, x, axis=axis, out=out)


def shift(x: Samples, k: int, *, axis: int = -1) -> Signal:
    """Drops samples at the front (dspi_shift).

    Parameters
    ----------
    k : int
        How many, between 0 and all.

    Returns
    -------
    Signal
        What is left.

    Examples
    --------
    >>> dsp.shift([1.0, 2.0, 3.0], 1)
    Signal([2., 3.], dx=1)
    """
    return changed(lib.dspi_shift, x, k, axis=axis)


def sort(x: Samples, *, axis: int = -1, out: Out = None) -> Signal:
    """Sorts (dspi_sort).

    Returns
    -------
    Signal
        Rising samples, complex ones by magnitude; NaN last.

    Examples
    --------
    >>> dsp.sort([3.0, 1.0, 2.0])
    Signal([1., 2., 3.], dx=1)
    """
    return changed(lib.dspi_sort, x, axis=axis, out=out)


def swap_halves(x: Samples, *, undo: bool = False, axis: int = -1, out: Out = None) -> Signal:
    """Exchanges the halves: the first sample goes to place n/2 (dspi_swap_halves, dspi_swap_halves2).

    Parameters
    ----------
    undo : bool
        The way back, which differs for an odd number of samples.

    Returns
    -------
    Signal
        The samples; a spectrum then has frequency 0 in the middle.

    Examples
    --------
    >>> dsp.swap_halves([0.0, 1.0, 2.0, 3.0, 4.0])
    Signal([3., 4., 0., 1., 2.], dx=1)
    """
    return changed(lib.dspi_swap_halves2 if undo else lib.dspi_swap_halves, x, axis=axis, out=out)


def _pad(mode: Choice) -> int:
    value = choose(Pad, mode)
    if value & 3 == 3:
        raise ValueError("of scaled, root_scaled and unscaled a mode has one")
    return value


def zpad(x: Samples, length: int, mode: Choice = Pad.UNSCALED, *, axis: int = -1) -> Signal:
    """Lengthens with zeros (dspi_zpad2).

    Parameters
    ----------
    length : int
        Number of samples wanted.
    mode : int or str
        One of "scaled", "root_scaled" and "unscaled", with one of "front", "centre", "back" and "split".

    Returns
    -------
    Signal
        `length` samples, or `x` where it is that long already.

    Raises
    ------
    ValueError
        If there is no such mode.

    Examples
    --------
    >>> dsp.zpad([1.0, 2.0], 4)
    Signal([1., 2., 0., 0.], dx=1)
    >>> dsp.zpad([1.0, 2.0], 4, "centre, scaled")
    Signal([0., 2., 4., 0.], dx=1)
    """
    return changed(lib.dspi_zpad2, x, length, _pad(mode), axis=axis)


def unzpad(x: Samples, length: int, mode: Choice = Pad.UNSCALED, *, axis: int = -1) -> Signal:
    """Undoes `zpad` (dspi_unzpad).

    Parameters
    ----------
    length : int
        Number of samples wanted.
    mode : int or str
        One of "scaled", "root_scaled" and "unscaled", with one of "front", "centre", "back" and "split".

    Returns
    -------
    Signal
        The `length` samples that `zpad` would have placed so.

    Raises
    ------
    ValueError
        If there is no such mode.

    Examples
    --------
    >>> dsp.unzpad([0.0, 1.0, 2.0, 0.0], 2, "centre, unscaled")
    Signal([1., 2.], dx=1)
    """
    return changed(lib.dspi_unzpad, x, length, _pad(mode), axis=axis)


def recon(x: Samples, *, axis: int = -1) -> Signal:
    """Completes the spectrum of a real signal from its one side (dspi_recon).

    Returns
    -------
    Signal
        2 (n - 1) bins of n, the new ones the conjugates of those that mirror them.

    Examples
    --------
    >>> dsp.recon([1, 2j, 3])
    Signal([1.+0.j, 0.+2.j, 3.+0.j, 0.-2.j], dx=1)
    """
    return changed(lib.dspi_recon, x, axis=axis)


def orecon(x: Samples, odd: bool = True, *, axis: int = -1) -> Signal:
    """Completes the spectrum of a real signal of odd length (dspi_orecon).

    Parameters
    ----------
    odd : bool
        False: 2 (n - 1) bins, as `recon`.

    Returns
    -------
    Signal
        2 n - 1 bins of n.

    Examples
    --------
    >>> dsp.orecon([1, 2j])
    Signal([1.+0.j, 0.+2.j, 0.-2.j], dx=1)
    """
    return changed(lib.dspi_orecon, x, odd, axis=axis)
