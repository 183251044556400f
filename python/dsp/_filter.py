"""FIR design, and filters for streams: objects that are called block by block. A record in blocks of any lengths is the
record filtered whole; `reset` puts silence before the next block. Frequencies are in cycles per sample.
"""

from __future__ import annotations

from typing import Any

from ._c import lib
from ._names import Choice, Fir, Fir2, choose
from ._signal import Record, Samples, Signal, made

__all__ = ["Decimator", "FirFilter", "HalfBandFilter", "SymmetricFir", "fir", "fir2"]


def fir(kind: Choice, length: int, f: float = 0.0, p: float = 0.0) -> Signal:
    """`length` taps, e.g. fir("lowpass", 101, 0.1): f the edge or centre, p the bandwidth or delay (dspc_fir)."""
    record = Record.sized(length)
    lib.dspc_fir(record, choose(Fir, kind), f, p)
    return record.signal()


def fir2(kind: Choice) -> Signal:
    """One of the fixed halves, "taps12", "taps20" or "taps5", for SymmetricFir (dspc_fir2)."""
    record = Record()
    lib.dspc_fir2(record, choose(Fir2, kind))
    return record.signal()


class _Stream:
    """What streams share: the state that one block leaves for the next."""

    def __init__(self) -> None:
        self.reset()

    def reset(self) -> None:
        """Silence before the next block."""
        self._state = Record()

    def _block(self, routine: Any, x: Samples, *args: Any) -> Signal:
        return made(routine, Record.of(x), ..., *args, self._state)


class FirFilter(_Stream):
    """Filters blocks by taps, real or complex; len(x) samples each (dspd_fir).

        lowpass = dsp.FirFilter(dsp.window_fir(dsp.fir("lowpass", 101, 0.1), "hann"))
        for block in blocks:
            y = lowpass(block)
    """

    def __init__(self, taps: Samples) -> None:
        self._taps = Record.copy(taps)
        super().__init__()

    def __call__(self, x: Samples) -> Signal:
        return self._block(lib.dspd_fir, x, self._taps)


class SymmetricFir(_Stream):
    """FirFilter by the first half of its taps; `odd`: the last of them is the centre; `anti`: the mirrored ones are
    negated (dspd_sfir)."""

    def __init__(self, half: Samples, *, odd: bool = True, anti: bool = False) -> None:
        self._half, self._odd, self._anti = Record.copy(half), odd, anti
        super().__init__()

    def __call__(self, x: Samples) -> Signal:
        return self._block(lib.dspd_sfir, x, self._half, self._odd, self._anti)


class HalfBandFilter(_Stream):
    """The fixed recursive half-band lowpass: flat up to 0.18, closed from 0.3 (dspd_hwfilt)."""

    def __call__(self, x: Samples) -> Signal:
        return self._block(lib.dspd_hwfilt, x, None)


class Decimator(_Stream):
    """Keeps every `factor`-th sample of the stream; filter first (dspd_deci)."""

    def __init__(self, factor: int) -> None:
        self.factor = factor
        super().__init__()

    def __call__(self, x: Samples) -> Signal:
        return self._block(lib.dspd_deci, x, self.factor)
