"""Sample-rate conversion of streams, by any ratio of input to output rate from 1 up."""

from __future__ import annotations

from typing import Any, Optional, Union

from ._c import INT32, RsmpCoef, RsmpState, lib
from ._filter import _Stream
from ._signal import Record, Samples, Signal, made

__all__ = ["FractionalResampler", "Resampler", "rsmp", "rsmp_cos", "rsmp_pcos"]


class Resampler:
    """Converts a stream block by block, with the lowpasses that it takes (dsph_rsmp).

        cd = dsp.Resampler(48.0 / 44.1)
        for block in blocks:
            y = cd(block)

    Outputs that reach into the silence before the stream are dropped; `mode` sends a ratio of 1 through the fractional
    stage, too. A stream is real or complex by its first block.
    """

    def __init__(self, ratio: float, *, mode: bool = False) -> None:
        self._coef, self._state = RsmpCoef(), RsmpState()
        lib.dsph_rsmp_coef_init(self._coef)
        lib.dsph_rsmp_state_init(self._state)
        lib.dsph_rsmp_coef_alloc(self._coef, 0)
        lib.dsph_rsmp_coef_setup(self._coef, 0, ratio, mode, 0)
        self.reset()

    def __del__(self, lib: Any = lib) -> None:
        lib.dsph_rsmp_state_destroy(self._state)
        lib.dsph_rsmp_coef_destroy(self._coef)

    def reset(self) -> None:
        """Begins a stream."""
        self._complex: Optional[bool] = None
        self._scratch = Record()

    def __call__(self, x: Samples) -> Signal:
        record = Record.of(x)
        if self._complex is None:
            lib.dsph_rsmp_state_alloc(self._coef, self._state, record.vec.is_complex)
            lib.dsph_rsmp_state_reset(self._coef, self._state)
            self._complex = bool(record.vec.is_complex)
        if record.vec.is_complex and not self._complex:
            raise ValueError("a complex block in a real stream")
        if self._complex and not record.vec.is_complex:
            lib.dspi_rtoc(record)
        return made(lib.dsph_rsmp, record, ..., self._scratch, self._coef, self._state)


class FractionalResampler(_Stream):
    """One output every `step` samples, through a kernel table or one of the built-in kinds 0 to 4; nothing is filtered,
    frequencies above the output's Nyquist frequency alias (dspd_rsmp)."""

    KERNELS = {0: 8194, 1: 13314, 2: 2050, 3: 10242, 4: 13314}

    def __init__(self, step: float, table: Union[int, Samples] = 4, *, interp: bool = True) -> None:
        self.step, self.interp = step, interp
        self._table = Record.copy(rsmp(self.KERNELS[table], table) if isinstance(table, int) else table)
        super().__init__()

    def __call__(self, x: Samples, most: Optional[int] = None) -> Signal:
        """The outputs that this block completes, about len(x)/step; no more than `most`, the others come first in the
        next block. A step of 0 takes a `most`."""
        source, result = Record.of(x), Record()
        if most is None:
            if not self.step > 0:
                raise ValueError(f"a step of {self.step} completes any number of outputs")
            held = self._table.signal()[:1].sum()
            most = int(min((source.vec.length + held) / self.step + 2, 2**30))
        result.vec.length = INT32.from_param(most)
        lib.dspd_rsmp(source, result, self.interp, self._table, self.step, self._state)
        return result.signal()


def rsmp(length: int, kind: int) -> Signal:
    """Kernel table of a built-in kind, 0 to 4 (dspc_rsmp)."""
    record = Record.sized(length)
    lib.dspc_rsmp(record, kind)
    return record.signal()


def rsmp_cos(length: int, c: Samples) -> Signal:
    """Kernel table by a cosine series; c[0] is the number of taps (dspc_rsmp_cos)."""
    record = Record.sized(length)
    lib.dspc_rsmp_cos(record, Record.of(c))
    return record.signal()


def rsmp_pcos(length: int, c: Samples) -> Signal:
    """Kernel table by powers of a cosine; c[0] is the number of taps (dspc_rsmp_pcos)."""
    record = Record.sized(length)
    lib.dspc_rsmp_pcos(record, Record.of(c))
    return record.signal()
