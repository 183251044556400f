"""Zeros of polynomials, solutions, and coefficients from zeros."""

from __future__ import annotations

from typing import Any, Callable

import numpy as np

from ._c import Error, lib
from ._call import Need, changed, made, real_only, spoken
from ._signal import Array, Samples, Signal

__all__ = ["poly", "roots", "solve"]


def _finite(routine: Any, x: Array) -> None:
    if not np.all(np.isfinite(x)):
        raise Error(
            f"{spoken(routine)} takes finite numbers, got {x[~np.isfinite(x)][0]}",
            routine.__name__,
        )


def _not_zero(routine: Any, c: Array) -> None:
    if c.shape[-1] > 0 and np.any(np.all(c == 0, axis=-1)):
        raise Error(
            "every number is a zero of a polynomial whose coefficients are all 0",
            routine.__name__,
        )


def _representable(routine: Any, call: Callable[[], Signal]) -> Signal:
    try:
        return call()
    except MemoryError as error:
        raise Error(
            f"{spoken(routine)}: a zero is too large for a double, or memory ran out",
            routine.__name__,
        ) from error


def roots(c: Samples, *, axis: int = -1) -> Signal:
    """Zeros of a polynomial (dspi_proots).

    Parameters
    ----------
    c : array_like
        Coefficients in ascending powers, real or complex.
    axis : int
        The axis along which the coefficients lie.

    Returns
    -------
    Signal
        Complex zeros by ascending modulus, those of one modulus by phase from 0 to 2 pi; of a real polynomial real ones
        and exact conjugate pairs.

    Raises
    ------
    Error
        If all coefficients are 0, one is not finite, or a zero is too large for a double.

    Examples
    --------
    >>> dsp.roots([-1.0, 0.0, 0.0, 0.0, 1.0])
    Signal([ 1.+0.j,  0.+1.j,  0.-1.j, -1.+0.j], dx=1)
    """
    routine = lib.dspi_proots
    return _representable(routine, lambda: changed(routine, c, axis=axis, needs=[_finite, _not_zero]))


def poly(z: Samples, *, axis: int = -1) -> Signal:
    """The polynomial that has given zeros (dspi_pztoc).

    Parameters
    ----------
    z : array_like
        Zeros, each as often as it counts.
    axis : int
        The axis along which the zeros lie.

    Returns
    -------
    Signal
        Coefficients in ascending powers, the highest of them 1; real when zeros that are not real come in exact
        conjugate pairs.

    Raises
    ------
    Error
        If a zero is not finite.

    Examples
    --------
    >>> dsp.poly([1.0, 2.0])
    Signal([ 2., -3.,  1.], dx=1)
    """
    return changed(lib.dspi_pztoc, z, axis=axis, needs=[_finite])


def solve(c: Samples, y: complex = 0.0, *, all: bool = False, axis: int = -1) -> Signal:
    """Where a polynomial has the value y (dsps_psolve, dsps_pcsolve).

    Parameters
    ----------
    c : array_like
        Coefficients in ascending powers.
    y : float or complex
        The value.
    all : bool
        All solutions, complex ones, too; coefficients and value may then be complex.
    axis : int
        The axis along which the coefficients lie.

    Returns
    -------
    Signal
        The real solutions in ascending order, or all in the order of `roots`; each as often as it counts.

    Raises
    ------
    Error
        If every number is a solution, something is not finite, a solution is too large for a double, or real solutions
        of a complex equation are asked for.

    Examples
    --------
    >>> dsp.solve([0.0, 0.0, 1.0], 4.0)
    Signal([-2.,  2.], dx=1)
    >>> dsp.solve([0.0, 0.0, 1.0], -4.0, all=True)
    Signal([0.+2.j, 0.-2.j], dx=1)
    """
    value = complex(y)
    routine = lib.dsps_pcsolve if all else lib.dsps_psolve

    def solvable(_: Any, rows: Array) -> None:
        _finite(routine, np.append(rows, value))
        rest = rows - np.where(np.arange(rows.shape[-1]) == 0, value, 0)
        _not_zero(routine, rest if rows.shape[-1] else np.array([value]))

    if not all and value.imag != 0:
        raise Error(f"real solutions of c = {value}: ask for all=True", "dsps_psolve")
    values = (value.real, value.imag) if all else (value.real,)
    needs: list[Need] = [solvable] if all else [real_only, solvable]
    return _representable(routine, lambda: made(routine, c, ..., *values, axis=axis, needs=needs))
