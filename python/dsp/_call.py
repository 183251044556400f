"""How a function calls a routine: samples along an axis of any array in, a signal or a number out; what it refuses.

A function of the package is one line where it can be: `changed` for a routine that works in place, `made` for one that
fills an output, `number` for one sample. Each takes `needs`, conditions that are asked before the call, so that a
failure of the routine itself means that memory ran out.
"""

from __future__ import annotations

import ctypes
from typing import Any, Callable, Iterable, Iterator, Optional, Sequence

import numpy as np

from ._c import Error, Vec, lib, run
from ._signal import Array, Number, Record, Samples, Signal, _Result, doubles, numbers, spacing

NULL = ctypes.POINTER(Vec)()  # for an operand that is left out
Need = Callable[..., None]  # takes the routine and its operands, samples along the last axis; raises Error


# Conditions


def spoken(routine: Any) -> str:
    """The name of a routine without its prefix, or what it is called here."""
    name = str(routine.__name__.partition("_")[2])
    return {"proots": "roots", "pztoc": "poly", "psolve": "solve", "pcsolve": "solve"}.get(name, name)


def real_only(routine: Any, *operands: Array) -> None:
    for operand in operands:
        if operand.dtype.kind == "c":
            raise Error(f"{spoken(routine)} takes real samples, got complex ones", routine.__name__)


def same_length(routine: Any, *operands: Array) -> None:
    lengths = [operand.shape[-1] for operand in operands]
    if len(set(lengths)) > 1:
        counts = " and ".join(map(str, lengths))
        raise Error(f"{spoken(routine)} takes signals of one length, got {counts} samples", routine.__name__)


def power_of_two(instead: str = "") -> Need:
    """A length that is a power of two; `instead` names the routine for the others."""

    def need(routine: Any, x: Array) -> None:
        n = x.shape[-1]
        if n < 1 or n & (n - 1):
            hint = f"; {instead} takes any length" if instead else ""
            raise Error(f"{spoken(routine)} takes a power of two of samples, got {n}{hint}", routine.__name__)

    return need


def rising(routine: Any, x: Array, *others: Array) -> None:
    if not np.all(x[..., 1:] > x[..., :-1]):
        raise Error(f"{spoken(routine)} takes nodes that rise from one to the next", routine.__name__)


# Calls


def indices(lead: tuple[int, ...]) -> Iterator[tuple[int, ...]]:
    """The index of every row, where the axes but the last have these lengths."""
    return iter(np.ndindex(*lead))


def by_rows(one: Callable[[Any], Array], lead: tuple[int, ...], axis: int = -1) -> Signal:
    """The results of `one` for each index of `lead`, stacked along `axis`. Without rows `one(None)` gives their form."""
    out: Any = None
    places: Iterable[Any] = indices(lead) if 0 not in lead else [None]
    for index in places:
        row = one(index)
        if out is None:
            out, dx = np.empty(lead + row.shape, row.dtype), spacing(row)
        elif row.shape != out.shape[len(lead) :]:
            raise ValueError("rows give results of different lengths: take them one by one")
        if index is not None:
            out[index] = row
    signal = np.moveaxis(out, -1, axis).view(Signal)
    signal.dx = dx
    return signal


def axis_last(array: Array, axis: int) -> Array:
    """The array with this axis behind the others."""
    if not hasattr(axis, "__index__"):
        raise TypeError(f"axis takes an integer, got {axis!r}")
    return np.moveaxis(array, axis, -1)


def moved(array: Array, axis: int) -> Array:
    """Samples along the last axis; the one axis of a plain signal is that."""
    return array if array.ndim == 1 else axis_last(array, axis)


def row_of(array: Array, lead: tuple[int, ...], index: Optional[tuple[int, ...]]) -> Array:
    """One row of an operand that is broadcast to `lead`; for index None a made-up row, to learn the form of a result."""
    if index is None:
        return np.arange(1, array.shape[-1] + 1).astype(array.dtype)
    return doubles(np.broadcast_to(array, lead + array.shape[-1:])[index])


def made(routine: Any, *args: Any, axis: int = -1, each: bool = False, needs: Sequence[Need] = ()) -> Signal:
    """The record that a routine fills; `...` among its arguments marks its place.

    Samples are lent where the routine takes records; those of several dimensions are taken row by row along `axis`,
    their other axes broadcast. `each`: see `changed`.
    """
    operands, dx, plain = _operands(routine, args, axis, needs)
    if plain:
        return _filled(routine, args, operands, dx).look()
    arrays = list(operands.values())
    if each:
        flat = _filled(routine, args, {k: doubles(array).reshape(-1) for k, array in operands.items()}, dx).look()
        return flat.reshape(arrays[0].shape)
    lead = np.broadcast_shapes(*(array.shape[:-1] for array in arrays))

    def one(index: Any) -> Signal:
        return _filled(routine, args, {k: row_of(array, lead, index) for k, array in operands.items()}, dx).look()

    return by_rows(one, lead, axis)


def number(routine: Any, x: Samples, *args: Any, axis: int = -1, needs: Sequence[Need] = ()) -> Number:
    """The one sample that a routine writes: a number, or an array with one for each row."""
    operands, dx, plain = _operands(routine, (x, *args), axis, needs)
    if plain:
        return _filled(routine, (x, *args), operands, dx).first()
    return np.asarray(np.moveaxis(made(routine, x, *args, axis=axis), axis, -1)[..., 0])


def _operands(
    routine: Any, args: tuple[Any, ...], axis: int, needs: Sequence[Need]
) -> tuple[dict[int, Array], dict[int, float], bool]:
    """Samples along the last axis and their spacings, by their places among the arguments; and whether all have one
    dimension."""
    operands, dx, plain = {}, {}, True
    for k in routine.records:
        a = args[k]
        if not (a is ... or a is NULL or isinstance(a, Record)):
            array = doubles(a)
            plain = plain and array.ndim == 1
            operands[k], dx[k] = moved(array, axis), spacing(a)
    if axis != -1 and plain:
        axis_last(next(iter(operands.values())), axis)  # raises for an axis out of range
    for need in needs:
        need(routine, *operands.values())
    return operands, dx, plain


def _filled(routine: Any, args: tuple[Any, ...], rows: dict[int, Array], dx: dict[int, float]) -> _Result:
    """The record that a routine has filled from one row of each operand."""
    result = _Result()
    given = [result if a is ... else a for a in args]
    for k, row in rows.items():
        given[k] = Record.lent(row, dx[k])
    run(routine, *given)
    return result


def columns(result: Signal, axis: int = -1) -> list[Any]:
    """The few numbers that a routine writes, each a number or an array with one for each row."""
    return list(result.tolist() if result.ndim == 1 else np.moveaxis(np.asarray(result), axis, 0))


def placed(x: Samples, dx: Optional[float]) -> Samples:
    """An operand with a spacing that may be given for it."""
    return x if dx is None else Signal(x, dx)


def pair(x: Samples, y: Samples) -> tuple[Samples, Samples]:
    """Two operands; of a signal and an array, the array takes the signal's spacing."""
    ours, theirs = getattr(x, "dx", None), getattr(y, "dx", None)
    if ours is None and theirs is not None:
        return Signal(x, theirs), y
    if theirs is None and ours is not None:
        return x, Signal(y, ours)
    return x, y


def broadcast(x: Samples, y: Samples) -> tuple[Samples, Samples]:
    """As `pair`, of one shape: numbers and single samples are repeated, as NumPy does it."""
    if getattr(x, "shape", None) == getattr(y, "shape", ()) or np.shape(x) == np.shape(y):
        return pair(x, y)
    try:
        arrays = np.broadcast_arrays(numbers(x), numbers(y))
    except ValueError:
        raise Error(f"operands of shapes {np.shape(x)} and {np.shape(y)} do not go together") from None
    wide_x, wide_y = (Signal(a, s.dx) if hasattr(s, "dx") else a for a, s in zip(arrays, (x, y)))
    return pair(wide_x, wide_y)


def changed(
    routine: Any,
    samples: Samples,
    *args: Any,
    dx: Optional[float] = None,
    axis: int = -1,
    out: Optional[Array] = None,
    each: bool = False,
    needs: Sequence[Need] = (),
) -> Signal:
    """The result of a routine that works in place, on a copy of `samples` or on `out`, which receives them.

    `each` says that it changes every sample by itself, so that the rows of an array can be taken as one.
    """
    array, step = doubles(samples), spacing(samples, dx)
    for need in needs:
        need(routine, moved(array, axis))
    if out is not None:
        return _into(out, routine, array, step, args, axis, each)
    if array.ndim > 1 or axis != -1:
        rows = axis_last(array, axis)
    if array.ndim == 1 or each:
        result = _changed_row(routine, array.reshape(-1), step, args)
        return result if array.ndim == 1 else result.reshape(array.shape)
    lead = rows.shape[:-1]
    return by_rows(lambda index: _changed_row(routine, row_of(rows, lead, index), step, args), lead, axis)


def _changed_row(routine: Any, row: Array, dx: float, args: Iterable[Any]) -> Signal:
    record = _Result()
    run(lib.dsp_copy, record, Record.lent(row, dx))
    run(routine, record, *args)
    return record.look()


def _into(out: Array, routine: Any, source: Array, dx: float, args: Iterable[Any], axis: int, each: bool) -> Signal:
    if not isinstance(out, np.ndarray):
        raise TypeError(f"out takes an array, got {type(out).__name__}")
    if out.dtype != source.dtype or out.shape != source.shape:
        raise ValueError(f"out takes {source.dtype} of shape {source.shape}, got {out.dtype} of shape {out.shape}")
    if not out.flags.carray:
        raise ValueError("out takes a writable array in one piece")
    target: Signal = out if isinstance(out, Signal) else out.view(Signal)
    if source.ndim == 1 or each:
        np.copyto(target, source)
        record = Record.lent(target.reshape(-1), dx)
        run(routine, record, *args)
        result = record.signal().reshape(target.shape) if record.vec.length == target.size else record.signal()
    else:
        result = changed(routine, source, *args, dx=dx, axis=axis)
    if target.dtype != result.dtype or target.shape != result.shape:
        raise ValueError(f"out has no room for the result, {result.dtype} of shape {result.shape}")
    np.copyto(target, result)
    target.dx = result.dx
    return target
