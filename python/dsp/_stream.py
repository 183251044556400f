"""The base of streams: a state for each row of the blocks, carried from one block to the next."""

from __future__ import annotations

import copy
from typing import Any, Optional

from ._c import Error, run
from ._call import by_rows, moved, row_of
from ._signal import Record, Samples, Signal, _Result, doubles, spacing


class Stream:
    """An object that is called block by block.

    Blocks of several dimensions are as many streams, one for each row along `axis`; the other axes stay the same until
    `reset`. `copy.copy` forks a stream: both go on from where it was. Streams can be pickled, too.
    """

    def __init__(self) -> None:
        self.reset()

    def reset(self) -> None:
        """Begins anew: silence before the next block."""
        self._lead: Optional[tuple[int, ...]] = None
        self._states: dict[Any, Any] = {}

    def __copy__(self) -> Any:
        return copy.deepcopy(self)

    def __call__(self, x: Samples, *, axis: int = -1) -> Signal:
        """Processes a block.

        Parameters
        ----------
        x : array_like
            The block, real or complex.
        axis : int
            The axis along which the samples lie.

        Returns
        -------
        Signal
            The samples that the block completes.

        Raises
        ------
        Error
            If the block does not continue the stream, because its other axes differ from those of the first.
        """
        block, dx = moved(doubles(x), axis), spacing(x)
        lead = block.shape[:-1]
        if self._lead not in (None, lead):
            raise Error(f"the stream's blocks have rows of shape {self._lead}, got {lead}; reset() begins another")

        def one(index: Any) -> Signal:
            if index not in self._states:
                self._states[index] = self._begin()
            return self._block(Record.lent(row_of(block, lead, index), dx), self._states[index])

        result = one(()) if lead == () else by_rows(one, lead, axis)
        self._lead = lead
        return result

    def _begin(self) -> Any:
        """The state before the first block."""
        return Record()

    def _block(self, x: Record, state: Any) -> Signal:
        """What a row of a block gives, and leaves in its state."""
        raise NotImplementedError

    @staticmethod
    def _filtered(routine: Any, x: Record, *args: Any) -> Signal:
        result = _Result()
        run(routine, x, result, *args)
        return result.look()
