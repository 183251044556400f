"""Windowed spectra, their averages, and correlation."""

from __future__ import annotations

from typing import Optional

from ._c import lib
from ._names import Avg, Choice, Spectrum, Window, choose
from ._signal import Record, Samples, Signal, made, pair

__all__ = ["Average", "corr", "spectrum", "spectrum_dft"]


def spectrum(
    x: Samples, window: Choice = Window.HANN, flags: Choice = 0, *, n: int = 0, fraction: float = 1.0,
    dx: Optional[float] = None,
) -> Signal:  # fmt: skip
    """Windowed spectrum on a power-of-two grid, complex; `mag` of it shows a sine of amplitude A as A.

    A real record gives m/2 + 1 bins from 0 to Nyquist, m the least power of two >= n (0: its length); a complex one, or
    flag "two_sided", m bins with frequency 0 in the middle: `axis(centred=True)`. `fraction` of m is windowed, the rest
    is zeros. Flag "inverse" undoes it (dsph_fft).
    """
    return made(lib.dsph_fft, Record.of(x, dx), ..., n, fraction, choose(Window, window), choose(Spectrum, flags))


def spectrum_dft(
    x: Samples, window: Choice = Window.HANN, flags: Choice = 0, *, dx: Optional[float] = None
) -> Signal:
    """As spectrum, on the record's own length n, whatever it is: n/2 + 1 or n bins (dsph_dft)."""
    return made(lib.dsph_dft, Record.of(x, dx), ..., choose(Window, window), choose(Spectrum, flags))


def corr(ref: Samples, x: Samples, m: Optional[int] = None, *, halve: bool = False) -> Signal:
    """Correlation of x with the first m samples of ref (None: all), at every lag where these lie inside x, over the
    least power of two >= len(x) (dspb_corr)."""
    records = pair(ref, x)
    return made(lib.dspb_corr, *records, ..., records[0].vec.length if m is None else m, halve)


class Average:
    """A running average of spectra, or of any signals of one length (dsph_avg).

        average = dsp.Average("mean, power")
        for block in blocks:
            level = dsp.db(average(dsp.spectrum(block, "hann")), 10)

    `mode` is one of the names of Avg, with "power" for squared magnitudes and "limit" for exponential averaging from
    count `limit` on. `weight` is the share of the latest; negative: derived from the count.
    """

    def __init__(
        self, mode: Choice = Avg.MEAN | Avg.POWER, *, weight: float = -1.0, limit: float = 0.0, period: int = 0
    ) -> None:
        self.mode, self.weight, self.limit, self.period = choose(Avg, mode), weight, limit, period
        self.reset()

    def reset(self) -> None:
        """Starts anew."""
        self.count = 0
        self._average, self._work = Record(), Record()

    def __call__(self, x: Samples) -> Signal:
        """Folds x in and returns the average so far, a copy."""
        lib.dsph_avg(
            Record.of(x), self._average, self._work, self.mode, self.count + 1, self.period, self.weight, self.limit
        )
        self.count += 1
        return self.result()

    def result(self) -> Signal:
        """The average so far, a copy."""
        return Record.copy(self._average.signal()).signal()
