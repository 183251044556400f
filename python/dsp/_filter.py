"""FIR design, and filters for streams: objects that are called block by block. A record in blocks of any lengths is the
record filtered whole. Frequencies are in cycles per sample.
"""

from __future__ import annotations

from typing import Any

from ._c import Error, lib, run

from ._names import Choice, Fir, Fir2, choose
from ._signal import Record, Samples, Signal
from ._stream import Stream

__all__ = ["Decimator", "FirFilter", "HalfBandFilter", "SymmetricFir", "fir", "fir2"]


def fir(kind: Choice, length: int, f: float = 0.0, p: float = 0.0) -> Signal:
    """Taps of a filter (dspc_fir).

    Parameters
    ----------
    kind : int or str
        "lowpass", "highpass", "bandpass", "bandstop", "differentiator", "hilbert", ...: see `Fir`.
    length : int
        Number of taps.
    f : float
        Edge or centre in cycles per sample, 0.5 the Nyquist frequency.
    p : float
        Bandwidth of a bandpass or bandstop, delay of a delayed lowpass.

    Returns
    -------
    Signal
        The taps; multiply a window for smoother edges, see `window_fir`.

    Raises
    ------
    Error
        If a highpass or bandstop has an even length.
    ValueError
        If there is no such kind.

    Examples
    --------
    >>> dsp.fir("lowpass", 5, 0.25).round(4)
    array([0.    , 0.3183, 0.5   , 0.3183, 0.    ])
    """
    record, chosen = Record.sized(length), choose(Fir, kind)
    if chosen in (Fir.BANDSTOP, Fir.HIGHPASS) and length % 2 == 0:
        raise Error(f"a {Fir(chosen).name.lower()} takes an odd number of taps, got {length}", "dspc_fir")
    run(lib.dspc_fir, record, chosen, f, p)
    return record.signal()


def fir2(kind: Choice) -> Signal:
    """One of the fixed halves of a symmetric filter, for `SymmetricFir` (dspc_fir2).

    Parameters
    ----------
    kind : int or str
        "taps12", "taps20" or "taps5".

    Returns
    -------
    Signal
        The first half of the taps, with the centre.

    Raises
    ------
    ValueError
        If there is no such set.

    Examples
    --------
    >>> len(dsp.fir2("taps20"))
    20
    """
    record = Record()
    run(lib.dspc_fir2, record, choose(Fir2, kind))
    return record.signal()


class FirFilter(Stream):
    """Filters a stream by taps; a block gives as many samples as it has (dspd_fir).

    Parameters
    ----------
    taps : array_like
        The taps, real or complex, of one dimension.

    Examples
    --------
    >>> mean = dsp.FirFilter([0.5, 0.5])
    >>> mean([1.0, 3.0]), mean([5.0])
    (Signal([0.5, 2. ], dx=1), Signal([4.], dx=1))
    >>> other = copy.copy(mean)  # a stream forks
    >>> mean([5.0]), other([7.0])
    (Signal([5.], dx=1), Signal([6.], dx=1))
    """

    def __init__(self, taps: Samples) -> None:
        self._taps = Record.copy(taps)
        super().__init__()

    def _block(self, x: Record, state: Any) -> Signal:
        return self._filtered(lib.dspd_fir, x, self._taps, state)


class SymmetricFir(Stream):
    """Filters a stream by the first half of symmetric taps (dspd_sfir).

    Parameters
    ----------
    half : array_like
        The first half of the taps.
    odd : bool
        The last sample of `half` is the centre, which is not repeated.
    anti : bool
        The mirrored taps are negated.

    Examples
    --------
    >>> dsp.SymmetricFir([1.0, 2.0])([1.0, 0.0, 0.0, 0.0])
    Signal([1., 2., 1., 0.], dx=1)
    """

    def __init__(self, half: Samples, *, odd: bool = True, anti: bool = False) -> None:
        self._half, self._odd, self._anti = Record.copy(half), odd, anti
        super().__init__()

    def _block(self, x: Record, state: Any) -> Signal:
        return self._filtered(lib.dspd_sfir, x, self._half, self._odd, self._anti, state)


class HalfBandFilter(Stream):
    """The fixed recursive half-band lowpass: flat up to 0.18 of the sample rate, closed from 0.3 (dspd_hwfilt).

    Examples
    --------
    >>> float(dsp.HalfBandFilter()(np.ones(100))[-1].round(6))
    1.0
    """

    def _block(self, x: Record, state: Any) -> Signal:
        return self._filtered(lib.dspd_hwfilt, x, None, state)


class Decimator(Stream):
    """Keeps every sample whose number in the stream is a multiple of `factor`; filter first (dspd_deci).

    Parameters
    ----------
    factor : int
        Input samples for one output sample.

    Examples
    --------
    >>> every = dsp.Decimator(2)
    >>> every([0.0, 1.0, 2.0]), every([3.0, 4.0])
    (Signal([0., 2.], dx=2), Signal([4.], dx=2))
    """

    def __init__(self, factor: int) -> None:
        self.factor = factor
        super().__init__()

    def _block(self, x: Record, state: Any) -> Signal:
        return self._filtered(lib.dspd_deci, x, self.factor, state)
