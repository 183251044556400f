"""Signals: arrays that know the spacing of their samples, and the records that lend them to the library."""

from __future__ import annotations

import ctypes
from typing import TYPE_CHECKING, Any, Optional, Union, overload

import numpy as np
import numpy.typing as npt

from ._c import INT32, Vec, lib, run

__all__ = ["Record", "Signal"]

if TYPE_CHECKING:
    Array = np.ndarray[Any, np.dtype[Any]]
else:
    Array = np.ndarray  # NumPy 1.20 and 1.21 know no type parameters at run time

Samples = Union["Signal", npt.ArrayLike]
Number = Any  # float or complex; an array with one for each row where the samples have more than one dimension
Out = Optional[Array]
FLOAT, COMPLEX = np.dtype(np.float64), np.dtype(np.complex128)


def numbers(samples: Any, kind: str = "biufc") -> Array:
    """An array of numbers of these kinds; refuses text, objects and masked samples."""
    if isinstance(samples, np.ma.MaskedArray) and np.any(samples.mask):
        raise ValueError("masked samples have no value: fill them, for instance x.filled(0.0)")
    array = np.asarray(samples)
    if array.dtype.kind not in kind:
        raise TypeError(f"samples are {'' if 'c' in kind else 'real '}numbers, not {array.dtype}")
    return array


def doubles(samples: Samples) -> Array:
    """Samples as the library takes them, float64 or complex128 in one piece: their own memory where that is so."""
    array = samples if type(samples) is np.ndarray else numbers(samples)
    if array.ndim == 0:
        raise ValueError("a signal has one dimension or more: put a single sample into a list")
    if (array.dtype == FLOAT or array.dtype == COMPLEX) and array.flags.c_contiguous and array.flags.aligned:
        return array
    return np.require(numbers(array), COMPLEX if array.dtype.kind == "c" else FLOAT, ["C", "A"])


def spacing(samples: Any, dx: Optional[float] = None) -> float:
    """`dx` if given, else the spacing of a signal, else 1."""
    value = getattr(samples, "dx", 1.0) if dx is None else dx
    if not isinstance(value, float) and (isinstance(value, (str, bytes)) or np.ndim(value)):
        raise TypeError(f"dx takes a number, got {value!r}")
    return float(value)


class Signal(Array):
    """Samples that are `dx` apart: an ndarray of float64 or complex128 in every other respect.

    Signals of several dimensions hold a record in each row; `dx` is the spacing along the axis that was worked on, the
    last one unless a call said otherwise. Slices keep `dx`, times their step.

    Parameters
    ----------
    samples : array_like
        The samples. Their memory is looked at where that is possible, and copied where it must be.
    dx : float, optional
        Spacing of the samples; by default that of `samples` if it is a signal, else 1.

    Raises
    ------
    TypeError
        If `samples` are not numbers.
    ValueError
        If `samples` is a single number, or masked.

    Examples
    --------
    >>> s = dsp.Signal([1.0, 2.0, 3.0, 4.0], dx=0.5)
    >>> s[::2]
    Signal([1., 3.], dx=1)
    >>> (2 * s).axis()
    array([0. , 0.5, 1. , 1.5])
    """

    dx: float

    def __new__(cls, samples: Samples, dx: Optional[float] = None) -> Signal:
        signal = doubles(samples).view(cls)
        signal.dx = spacing(samples, dx)
        return signal

    def __array_finalize__(self, parent: Any) -> None:
        self.dx = getattr(parent, "dx", 1.0)

    def __array_wrap__(self, array: Any, *context: Any) -> Any:
        return array[()] if array.ndim == 0 else super().__array_wrap__(array, *context)

    if TYPE_CHECKING:

        @overload
        def __getitem__(self, index: slice) -> Signal:
            ...

        @overload
        def __getitem__(self, index: Any) -> Any:
            ...

    def __getitem__(self, index: Any) -> Any:
        part = super().__getitem__(index)
        if isinstance(part, Signal):
            part.dx = self._spacing_of(index if isinstance(index, tuple) else (index,))
        return part

    def _spacing_of(self, index: tuple[Any, ...]) -> float:
        """Spacing of what an index takes: that of this signal, times the step of a slice along the last axis; 1 where
        the last axis is gone."""
        places = [k for k, part in enumerate(index) if part is Ellipsis]
        behind = index[places[0] + 1 :] if places else index
        taken = [part for part in behind if part is not None]
        if not taken or (not places and len(taken) < self.ndim):
            return self.dx
        if isinstance(taken[-1], slice):
            return self.dx * float(abs(taken[-1].step or 1))
        return 1.0 if isinstance(taken[-1], (int, np.integer)) else self.dx

    def __repr__(self) -> str:
        return f"{super().__repr__()[:-1]}, dx={self.dx:g})"

    def __reduce__(self) -> Any:
        plain: Any = super().__reduce__()
        return plain[0], plain[1], (plain[2], self.dx)

    def __setstate__(self, state: Any) -> None:
        super().__setstate__(state[0])
        self.dx = state[1]

    if TYPE_CHECKING:

        def reshape(self, *shape: Any, **order: Any) -> Signal:
            ...

    def axis(self, centred: bool = False) -> npt.NDArray[np.float64]:
        """Where the samples stand along the last axis: 0, dx, 2 dx, ...

        Parameters
        ----------
        centred : bool
            Position 0 is in the middle, as spectra of two sides have it.

        Returns
        -------
        ndarray
            One position for each sample of a row.

        Examples
        --------
        >>> dsp.Signal([1, 2, 3, 4], dx=0.5).axis(centred=True)
        array([-1. , -0.5,  0. ,  0.5])
        """
        n = self.shape[-1]
        places: npt.NDArray[np.float64] = (np.arange(n) - (n // 2 if centred else 0)) * self.dx
        return places


class Record:
    """A dsp_vec, the signal as C has it: an empty one for results, or one that borrows the memory of an array.

    `lib` takes records where dsp.h says `dsp_vec *`; most users never need one. A record releases what the library owns
    of it. Copies, also pickled ones, have samples of their own.

    Parameters
    ----------
    dx : float
        Spacing of the samples.

    Attributes
    ----------
    vec : ctypes.Structure
        The C structure, with its fields `dx`, `length`, `is_complex`, ...

    Examples
    --------
    >>> x = np.array([3.0, 4.0])
    >>> record = dsp.Record.of(x)
    >>> dsp.lib.dspi_square(record)
    0
    >>> record.signal()
    Signal([ 9., 16.], dx=1)
    """

    vec: Any = None
    samples: Any = None  # whose memory is borrowed

    def __init__(self, dx: float = 1.0) -> None:
        self.vec = Vec(dx)
        self._as_parameter_ = ctypes.byref(self.vec)

    @classmethod
    def lent(cls, array: Array, dx: float = 1.0) -> Record:
        """Lends a row of doubles, as `doubles` makes them, to a routine that only reads it."""
        if array.ndim != 1:
            raise ValueError(f"a record has one dimension, not {array.ndim}")
        record = cls(dx)
        record.samples = array
        record.vec.data = array.__array_interface__["data"][0]
        record.vec.length = INT32.from_param(len(array))
        record.vec.is_complex = array.dtype == COMPLEX
        return record

    @classmethod
    def of(cls, samples: Samples, dx: Optional[float] = None) -> Record:
        """Lends samples of one dimension to the library, which may change them.

        Samples that are read-only, or not doubles in one piece, are copied first, so that they stay as they are.
        """
        array = doubles(samples)
        return cls.lent(array if array.flags.writeable else array.copy(), spacing(samples, dx))

    @classmethod
    def copy(cls, samples: Samples, dx: Optional[float] = None) -> Record:
        """A record with a copy of the samples, in memory of the library's."""
        return cls.copied(cls.lent(doubles(samples), spacing(samples, dx)))

    @classmethod
    def copied(cls, other: Any) -> Record:
        """A copy of another record, or of the C structure of one."""
        vec = getattr(other, "vec", other)
        if not vec.data or vec.length <= 0:
            return cls.sized(vec.length, vec.dx, bool(vec.is_complex))
        record = cls()
        run(lib.dsp_copy, record, other)
        return record

    @classmethod
    def sized(cls, length: int, dx: float = 1.0, is_complex: bool = False) -> Record:
        """What a generator fills: it takes length, spacing and representation from its output."""
        record = cls(dx)
        record.vec.length, record.vec.is_complex = INT32.from_param(length), is_complex
        return record

    def __del__(self, destroy: Any = lib.dsp_destroy) -> None:
        if self.vec is not None:
            destroy(self)

    def __reduce__(self) -> Any:
        vec = self.vec
        samples = np.array(_Result.sharing(self).look()) if vec.data and vec.length > 0 else None
        return _restored, (samples, vec.dx, vec.length, bool(vec.is_complex))

    def __array__(self, dtype: Any = None, copy: Optional[bool] = None) -> Array:
        return np.array(self.signal(), dtype)

    def signal(self) -> Signal:
        """The samples, in the memory where they are.

        That memory then belongs to the arrays that look at it: the record still works on it, but leaves it behind when
        the library resizes or destroys the record.
        """
        if self.vec.capacity > 0:
            owner = _Result()
            owner.vec.data, owner.vec.capacity, self.vec.capacity = self.vec.data, self.vec.capacity, 0
            self.samples = owner
        return _Result.sharing(self).look()


class _Result(Record):
    """A record that no one else holds, so that arrays may look at its memory for as long as they live."""

    @classmethod
    def sharing(cls, record: Record) -> _Result:
        """What a record has now, without owning it."""
        there, result = record.vec, cls(record.vec.dx)
        result.vec.data, result.vec.length, result.vec.is_complex = there.data, there.length, there.is_complex
        result.samples = record.samples
        return result

    @property
    def __array_interface__(self) -> dict[str, Any]:
        kind = COMPLEX if self.vec.is_complex else FLOAT
        return {"version": 3, "shape": (self.vec.length,), "typestr": kind.str, "data": (self.vec.data, False)}

    def look(self) -> Signal:
        """The samples where they are; copied where a few would keep much memory."""
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


def _restored(samples: Optional[Array], dx: float, length: int, is_complex: bool) -> Record:
    return Record.sized(length, dx, is_complex) if samples is None else Record.copy(samples, dx)
