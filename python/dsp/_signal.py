"""Signals: arrays that know the spacing of their samples, and the records that lend them to the library."""

from __future__ import annotations

import ctypes
from typing import Any, Callable, Optional, Union

import numpy as np
import numpy.typing as npt

from ._c import INT32, Vec, lib

__all__ = ["Record", "Signal", "append", "cmp", "free_internal", "subvec", "version"]

Samples = Union["Signal", npt.ArrayLike]
FLOAT, COMPLEX = np.dtype(np.float64), np.dtype(np.complex128)


def doubles(samples: Samples) -> np.ndarray:
    """Samples as the library takes them, float64 or complex128 in one piece: their own memory where that is so."""
    array = np.asarray(samples)
    if array.ndim != 1:
        raise ValueError(f"a signal has one dimension, not {array.ndim}")
    if (array.dtype == FLOAT or array.dtype == COMPLEX) and array.flags.c_contiguous and array.flags.aligned:
        return array
    if array.dtype.kind not in "biufc":
        raise TypeError(f"{array.dtype} are no samples")
    return np.require(array, COMPLEX if array.dtype.kind == "c" else FLOAT, ["C", "A"])


class Signal(np.ndarray):
    """One-dimensional float64 or complex128 samples, `dx` apart: an ndarray in every other respect.

    `Signal(samples, dx)` looks at the memory of `samples` where it can and copies where it must; without `dx` it keeps
    that of a signal, and takes 1 for others. Slices keep `dx`, times their step.
    """

    dx: float

    def __new__(cls, samples: Samples, dx: Optional[float] = None) -> "Signal":
        signal = doubles(samples).view(cls)
        signal.dx = float(getattr(samples, "dx", 1.0) if dx is None else dx)
        return signal

    def __array_finalize__(self, parent: Any) -> None:
        self.dx = getattr(parent, "dx", 1.0)

    def __array_wrap__(self, array: np.ndarray, *context: Any) -> Any:
        return array[()] if array.ndim == 0 else super().__array_wrap__(array, *context)

    def __getitem__(self, index: Any) -> Any:
        part = super().__getitem__(index)
        if isinstance(index, slice) and index.step is not None:
            part.dx = self.dx * abs(index.step)
        return part

    def __repr__(self) -> str:
        return f"{super().__repr__()[:-1]}, dx={self.dx:g})"

    def __reduce__(self) -> Any:
        plain: Any = super().__reduce__()
        return plain[0], plain[1], (plain[2], self.dx)

    def __setstate__(self, state: Any) -> None:
        super().__setstate__(state[0])
        self.dx = state[1]

    def axis(self, centred: bool = False) -> np.ndarray:
        """Where the samples stand: 0, dx, 2 dx, ...; `centred` for spectra whose frequency 0 is in the middle."""
        return (np.arange(len(self)) - (len(self) // 2 if centred else 0)) * self.dx


class Record:
    """A dsp_vec: an empty one for results, or one that borrows an array's memory. Releases what the library owns."""

    def __init__(self, dx: float = 1.0) -> None:
        self.vec = Vec(dx)
        self._as_parameter_ = ctypes.byref(self.vec)
        self.samples: Optional[np.ndarray] = None  # whose memory is borrowed

    @classmethod
    def of(cls, samples: Samples, dx: Optional[float] = None) -> "Record":
        """Lends `samples` to the library, converted where they are not doubles in one piece."""
        record = cls(getattr(samples, "dx", 1.0) if dx is None else dx)
        array = record.samples = doubles(samples)
        record.vec.data = array.__array_interface__["data"][0]
        record.vec.length = INT32.from_param(len(array))
        record.vec.is_complex = array.dtype == COMPLEX
        return record

    @classmethod
    def copy(cls, samples: Samples, dx: Optional[float] = None) -> "Record":
        record = cls()
        lib.dsp_copy(record, cls.of(samples, dx))
        return record

    @classmethod
    def sized(cls, length: int, dx: float = 1.0, is_complex: bool = False) -> "Record":
        """What a generator fills: it takes length, spacing and representation from its output."""
        record = cls(dx=dx)
        record.vec.length, record.vec.is_complex = INT32.from_param(length), is_complex
        return record

    def __del__(self, destroy: Any = lib.dsp_destroy) -> None:
        destroy(self)

    @property
    def __array_interface__(self) -> dict:
        kind = COMPLEX if self.vec.is_complex else FLOAT
        return {"version": 3, "shape": (self.vec.length,), "typestr": kind.str, "data": (self.vec.data, False)}

    def signal(self) -> Signal:
        """The samples, in the memory where they are, which lives as long as they are looked at; copied where a few would
        keep much of it."""
        if self.vec.length <= 0 or not self.vec.data:
            return Signal(np.empty(0, COMPLEX if self.vec.is_complex else FLOAT), self.vec.dx)
        samples = np.asarray(self)
        if self.vec.capacity * FLOAT.itemsize > 4 * samples.nbytes + 4096:
            samples = samples.copy()
        signal = samples.view(Signal)
        signal.dx = self.vec.dx
        return signal

    def first(self) -> Any:
        """The first sample, one of Python's numbers."""
        parts = (ctypes.c_double * 2).from_address(self.vec.data)
        return complex(*parts) if self.vec.is_complex else parts[0]


def made(routine: Callable, *args: Any) -> Signal:
    """What a routine writes into the record that stands as `...` among its arguments."""
    record = Record()
    routine(*(record if a is ... else a for a in args))
    return record.signal()


def pair(x: Samples, y: Samples) -> tuple[Record, Record]:
    """Two operands; of a signal and an array, the array takes the signal's spacing."""
    ours, theirs = getattr(x, "dx", None), getattr(y, "dx", None)
    return Record.of(x, theirs if ours is None else ours), Record.of(y, ours if theirs is None else theirs)


def changed(
    routine: Callable, samples: Samples, *args: Any, dx: Optional[float] = None, out: Optional[np.ndarray] = None
) -> Signal:
    """What a routine that works in place makes of a copy of `samples`, or of `out` with the samples put there."""
    if out is None:
        record = Record.copy(samples, dx)
        routine(record, *args)
        return record.signal()
    source, target = Signal(samples, dx), out if isinstance(out, Signal) else Signal(out)
    if target.ctypes.data != out.ctypes.data or not out.flags.carray:
        raise ValueError("out is no writable array of float64 or complex128 in one piece")
    if target.dtype != source.dtype or target.shape != source.shape:
        raise ValueError("out is not of the samples' length and kind, real or complex")
    np.copyto(target, source)
    target.dx = source.dx
    record = Record.of(target)
    routine(record, *args)
    result = record.signal()
    if target.dtype != result.dtype or target.shape != result.shape:
        raise ValueError("the result does not fit out")
    np.copyto(target, result)
    target.dx = result.dx
    return target


def append(x: Samples, y: Samples) -> Signal:
    """y behind x, whose dx is kept; complex when either is (dsp_append)."""
    record = Record.copy(x)
    lib.dsp_append(record, Record.of(y))
    return record.signal()


def subvec(x: Samples, start: int, count: int) -> Signal:
    """The `count` samples of x from `start` on, both clamped to what is there (dspu_subvec)."""
    return made(lib.dspu_subvec, Record.of(x), ..., start, count)


def cmp(x: Samples, y: Samples, tolerance: float = 0.0) -> int:
    """0 when dx and all samples agree within `tolerance`, else the sign of the first difference (dsp_cmp)."""
    result = np.zeros(1, np.int32)
    lib.dsp_cmp(*pair(x, y), tolerance, result)
    return int(result[0])


def free_internal() -> None:
    """Releases the tables, windows and filter spectra that are kept for the next call (dsp_free_internal)."""
    lib.dsp_free_internal()


def version() -> tuple[int, int]:
    """Release of the library that is loaded, (2, 5) or later (dsp_version)."""
    return divmod(lib.dsp_version(), 100)
