"""Windowed spectra, their averages, and correlation."""

from __future__ import annotations

import copy
from typing import Any, Optional

from ._c import Error, lib, run
from ._call import made, pair, placed
from ._names import Avg, Choice, Spectrum, Window, choose
from ._signal import Array, Record, Samples, Signal, doubles, spacing

__all__ = ["Average", "corr", "spectrum", "spectrum_dft"]


def spectrum(
    x: Samples,
    window: Choice = Window.HANN,
    flags: Choice = 0,
    *,
    n: int = 0,
    fraction: float = 1.0,
    axis: int = -1,
    dx: Optional[float] = None,
) -> Signal:
    """Windowed spectrum on a power-of-two grid (dsph_fft).

    m is the least power of two that is n or more. Flag "inverse" undoes the transform.

    Parameters
    ----------
    window : int or str
        The window, "hann", "flattop", ...: see `Window`.
    flags : int or str
        Flags, for instance "two_sided, centred": see `Spectrum`.
    n : int
        Number of bins wanted, 0: the record's length.
    fraction : float
        The part of m samples that is windowed; the rest is zeros.

    Returns
    -------
    Signal
        Complex: `mag` of it shows a sine of amplitude A as A. A real record gives m/2 + 1 bins from 0 to Nyquist; a
        complex one, or flag "two_sided", m bins with frequency 0 in the middle: `axis(centred=True)`.

    Raises
    ------
    ValueError
        If there is no such window or flag.

    Examples
    --------
    >>> s = dsp.spectrum(dsp.cos(64, 8.0, dx=1 / 64), "hann")
    >>> round(float(abs(s[8])), 12), s.dx
    (1.0, 1.0)
    """
    kind, chosen = choose(Window, window), choose(Spectrum, flags)
    return made(lib.dsph_fft, placed(x, dx), ..., n, fraction, kind, chosen, axis=axis)


def spectrum_dft(
    x: Samples,
    window: Choice = Window.HANN,
    flags: Choice = 0,
    *,
    axis: int = -1,
    dx: Optional[float] = None,
) -> Signal:
    """Windowed spectrum on the record's own length, whatever it is (dsph_dft).

    Parameters
    ----------
    window : int or str
        The window, "hann", "flattop", ...: see `Window`.
    flags : int or str
        Flags, for instance "two_sided, centred": see `Spectrum`.

    Returns
    -------
    Signal
        As `spectrum`: n/2 + 1 bins of n samples, or n.

    Raises
    ------
    ValueError
        If there is no such window or flag.

    Examples
    --------
    >>> len(dsp.spectrum_dft(np.ones(1000), "flattop"))
    501
    """
    return made(lib.dsph_dft, placed(x, dx), ..., choose(Window, window), choose(Spectrum, flags), axis=axis)


def corr(ref: Samples, x: Samples, m: Optional[int] = None, *, halve: bool = False, axis: int = -1) -> Signal:
    """Correlation with the first samples of a reference (dspb_corr).

    Parameters
    ----------
    ref : array_like
        The reference.
    m : int, optional
        How many of its samples; by default all.
    halve : bool
        Halves the result.

    Returns
    -------
    Signal
        One value for every lag at which these lie inside `x`, over the least power of two >= len(x).

    Raises
    ------
    Error
        If m is below 1, or above either length.

    Examples
    --------
    >>> dsp.corr([1.0, 2.0], [0.0, 1.0, 2.0, 0.0])
    Signal([0.5 , 1.25, 0.5 ], dx=1)
    """

    def fitting(routine: Any, whole: Array, record: Array) -> None:
        most = min(whole.shape[-1], record.shape[-1])
        if not 1 <= count <= most:
            raise Error(f"corr takes 1 to {most} samples of ref, got {count}", routine.__name__)

    count = doubles(ref).shape[axis if doubles(ref).ndim > 1 else -1] if m is None else m
    return made(lib.dspb_corr, *pair(ref, x), ..., count, halve, axis=axis, needs=[fitting])


class Average:
    """A running average of spectra, or of any signals of one shape (dsph_avg).

    `copy.copy` forks an average: both go on from where it was. Averages can be pickled, too.

    Parameters
    ----------
    mode : int or str
        One of the names of `Avg`, with "power" for squared magnitudes and "limit" for exponential averaging from count
        `limit` on.
    weight : float
        Share of the latest; negative: derived from the count.
    limit : float
        The count from which the derived weight stays.
    period : int
        For "periodic": the latest at counts 1, 1 + period, 1 + 2 period, ...

    Raises
    ------
    ValueError
        If there is no such mode.

    Examples
    --------
    >>> average = dsp.Average("mean")
    >>> average([1.0, 2.0]), average([3.0, 4.0])
    (Signal([1., 2.], dx=1), Signal([2., 3.], dx=1))
    >>> average.count
    2
    """

    def __init__(
        self, mode: Choice = Avg.MEAN | Avg.POWER, *, weight: float = -1.0, limit: float = 0.0, period: int = 0
    ) -> None:
        self.mode, self.weight, self.limit, self.period = choose(Avg, mode), weight, limit, period
        self.reset()

    def reset(self) -> None:
        """Starts anew."""
        self.count = 0
        self._shape: tuple[int, ...] = (0,)
        self._average, self._work = Record(), Record()

    def __copy__(self) -> Average:
        return copy.deepcopy(self)

    def __call__(self, x: Samples) -> Signal:
        """Folds a signal in.

        Parameters
        ----------
        x : array_like
            The latest, of the shape of those before it.

        Returns
        -------
        Signal
            The average so far, a copy.

        Raises
        ------
        Error
            If the shape differs.
        """
        array = doubles(x)
        if self.count and array.shape != self._shape:
            raise Error(f"the average has shape {self._shape}, got {array.shape}; reset() begins another", "dsph_avg")
        latest = Record.lent(array.reshape(-1), spacing(x))
        count = self.count + 1
        run(lib.dsph_avg, latest, self._average, self._work, self.mode, count, self.period, self.weight, self.limit)
        self.count, self._shape = count, array.shape
        return self.result()

    def result(self) -> Signal:
        """The average so far, a copy."""
        return Record.copied(self._average).signal().reshape(self._shape)
