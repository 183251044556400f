"""Signals put together and cut, compared, and the library as a whole."""

from __future__ import annotations

from typing import Any

import numpy as np

from ._c import lib, run
from ._call import by_rows, made, moved, pair, row_of, same_length
from ._signal import Number, Record, Samples, Signal, doubles, spacing

__all__ = ["append", "cmp", "free_internal", "subvec", "version"]


def append(x: Samples, y: Samples, *, axis: int = -1) -> Signal:
    """One signal behind another (dsp_append).

    Parameters
    ----------
    y : array_like
        What comes behind.

    Returns
    -------
    Signal
        y behind x, whose dx is kept; complex when either is.

    Examples
    --------
    >>> dsp.append([1.0, 2.0], [3.0])
    Signal([1., 2., 3.], dx=1)
    """
    first, second = moved(doubles(x), axis), moved(doubles(y), axis)
    lead = np.broadcast_shapes(first.shape[:-1], second.shape[:-1])

    def one(index: Any) -> Signal:
        record = Record.copy(row_of(first, lead, index), spacing(x))
        run(lib.dsp_append, record, Record.lent(row_of(second, lead, index)))
        return record.signal()

    return by_rows(one, lead, axis) if lead else one(())


def subvec(x: Samples, start: int, count: int, *, axis: int = -1) -> Signal:
    """A piece of a signal (dspu_subvec).

    Parameters
    ----------
    start : int
        The first sample.
    count : int
        How many.

    Returns
    -------
    Signal
        `count` samples from `start` on, both clamped to what is there.

    Examples
    --------
    >>> dsp.subvec([1.0, 2.0, 3.0], 1, 5)
    Signal([2., 3.], dx=1)
    """
    return made(lib.dspu_subvec, x, ..., start, count, axis=axis)


def cmp(x: Samples, y: Samples, tolerance: float = 0.0, *, axis: int = -1) -> Number:
    """Compares two signals (dsp_cmp).

    Parameters
    ----------
    tolerance : float
        By how much samples may differ.

    Returns
    -------
    int, or an array of one for each row
        0 when dx and all samples agree within the tolerance, else the sign of the first difference.

    Examples
    --------
    >>> dsp.cmp([1.0, 2.0], [1.0, 2.5])
    -1
    >>> dsp.cmp([1.0, 2.0], [1.0, 2.5], tolerance=1.0)
    0
    """
    left, right = pair(x, y)
    first, second = moved(doubles(left), axis), moved(doubles(right), axis)
    same_length(lib.dsp_cmp, first, second)
    lead = np.broadcast_shapes(first.shape[:-1], second.shape[:-1])
    result = np.zeros(lead + (1,), np.int32)
    for index in np.ndindex(*lead):
        one = Record.lent(row_of(first, lead, index), spacing(left))
        run(lib.dsp_cmp, one, Record.lent(row_of(second, lead, index), spacing(right)), tolerance, result[index])
    return result[..., 0] if lead else int(result[0])


def free_internal() -> None:
    """Releases the tables, windows and filter spectra that are kept for the next call (dsp_free_internal).

    Examples
    --------
    >>> dsp.free_internal()
    """
    lib.dsp_free_internal()


def version() -> tuple[int, int]:
    """Release of the library that is loaded (dsp_version).

    Returns
    -------
    tuple of int
        (2, 5) or later.

    Examples
    --------
    >>> dsp.version() >= (2, 5)
    True
    """
    major, minor = divmod(lib.dsp_version(), 100)
    return major, minor
