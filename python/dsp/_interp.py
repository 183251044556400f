"""Interpolation: a tabulated real function at other abscissae."""

from __future__ import annotations

from typing import Any, NamedTuple, Optional, Sequence, Union

import numpy as np

from ._c import Error, lib
from ._call import NULL, Need, changed, made, pair, real_only, rising, same_length
from ._names import Choice, Interp, Spline, choose
from ._signal import Array, Samples, Signal, doubles, spacing

__all__ = ["End", "cspline", "cspline_2d", "inter", "interp", "zinter"]


def _nodes(least: int, derivatives: bool) -> Sequence[Need]:
    """What nodes x and y, perhaps with second derivatives behind them, have to be."""

    def matching(routine: Any, x: Array, *others: Array) -> None:
        same_length(routine, x, *others[: 2 if derivatives else 1])

    def enough(routine: Any, x: Array, *others: Array) -> None:
        if x.shape[-1] < least:
            raise Error(f"a spline takes {least} nodes or more, got {x.shape[-1]}", routine.__name__)

    return real_only, matching, enough, rising


def _at(
    routine: Any, x: Samples, y: Samples, xq: Samples, mode: Sequence[int], d2: Optional[Samples], axis: int
) -> Signal:
    """Evaluates at queries in rising order, as the library wants them, and puts them back into theirs."""
    least = 4 if d2 is None and (not mode or mode[0] & 7 == Interp.SPLINE) else 0
    needs = _nodes(least, d2 is not None)
    second = NULL if d2 is None else d2
    queries = doubles(xq)
    if queries.ndim > 1 or not np.any(queries[1:] < queries[:-1]):
        return made(routine, x, y, second, xq, ..., *mode, axis=axis, needs=needs)
    order = np.argsort(queries, kind="stable")
    ahead = Signal(queries[order], spacing(xq))
    ordered = made(routine, x, y, second, ahead, ..., *mode, axis=axis, needs=needs)
    result = np.empty_like(ordered)
    np.moveaxis(result, axis, -1)[..., order] = np.moveaxis(ordered, axis, -1)
    return result


def interp(
    x: Samples,
    y: Samples,
    xq: Samples,
    mode: Choice = Interp.LINEAR,
    *,
    d2: Optional[Samples] = None,
    axis: int = -1,
) -> Signal:
    """A tabulated function at other abscissae (dsp_interp).

    Parameters
    ----------
    x : array_like
        Abscissae of the nodes, which rise.
    y : array_like
        Ordinates of the nodes.
    xq : array_like
        Where the function is wanted; in rows of several dimensions these rise, too.
    mode : int or str
        One of "hold", "linear", "quadratic" and "spline", and "clamp" to hold the ends outside.
    d2 : array_like, optional
        Second derivatives at the nodes, from `cspline_2d`; by default those of not-a-knot ends.

    Returns
    -------
    Signal
        One ordinate for each of `xq`.

    Raises
    ------
    Error
        If samples are complex, lengths differ, or nodes do not rise; for a spline also of fewer than four nodes.

    Examples
    --------
    >>> dsp.interp([0.0, 1.0, 2.0], [0.0, 10.0, 0.0], [0.5, 1.5, 3.0])
    Signal([  5.,   5., -10.], dx=1)
    >>> dsp.interp([0.0, 1.0], [5.0, 6.0], [-1.0, 9.0], "linear, clamp")
    Signal([5., 6.], dx=1)
    """
    return _at(lib.dsp_interp, x, y, xq, [choose(Interp, mode)], d2, axis)


def cspline(x: Samples, y: Samples, xq: Samples, *, d2: Optional[Samples] = None, axis: int = -1) -> Signal:
    """A cubic spline at other abscissae (dsp_cspline).

    Parameters
    ----------
    x : array_like
        Abscissae of the nodes, which rise.
    y : array_like
        Ordinates of the nodes.
    xq : array_like
        Where the function is wanted; in rows of several dimensions these rise, too.
    d2 : array_like, optional
        Second derivatives at the nodes, from `cspline_2d`; by default those of not-a-knot ends.

    Returns
    -------
    Signal
        One ordinate for each of `xq`.

    Raises
    ------
    Error
        If samples are complex, lengths differ, or nodes do not rise; for a spline also of fewer than four nodes.

    Examples
    --------
    >>> dsp.cspline([0.0, 1.0, 2.0, 3.0], [0.0, 1.0, 8.0, 27.0], [1.5])
    Signal([3.375], dx=1)
    """
    return _at(lib.dsp_cspline, x, y, xq, [], d2, axis)


class End(NamedTuple):
    """A condition at an end of a spline, and the value of its derivative where it takes one."""

    condition: Choice
    value: float = 0.0


def cspline_2d(
    x: Samples,
    y: Samples,
    left: Union[Choice, End] = "not_a_knot",
    right: Union[Choice, End] = "not_a_knot",
    *,
    axis: int = -1,
) -> Signal:
    """Second derivatives at the nodes of the cubic spline through them (dspb_cspline_2d).

    Parameters
    ----------
    x : array_like
        Abscissae of the nodes, which rise.
    y : array_like
        Ordinates of the nodes.
    left : int, str or End
        The first end: "not_a_knot", "natural", End("clamped", slope) or End("second_derivative", value).
    right : int, str or End
        The last end.

    Returns
    -------
    Signal
        One for each node.

    Raises
    ------
    Error
        If samples are complex, lengths differ, or nodes do not rise; for a spline also of fewer than four nodes.

    Examples
    --------
    >>> dsp.cspline_2d([0.0, 1.0, 2.0, 3.0], [0.0, 1.0, 4.0, 9.0])
    Signal([2., 2., 2., 2.], dx=1)
    >>> dsp.cspline_2d([0.0, 1.0, 2.0, 3.0], [0.0, 1.0, 4.0, 9.0], dsp.End("clamped", 0.0), "natural").round(3)
    array([2.077, 1.846, 2.538, 0.   ])
    """
    ends = [end if isinstance(end, End) else End(end) for end in (left, right)]
    conditions = [choose(Spline, end.condition) for end in ends]
    values = [end.value for end in ends]
    return made(lib.dspb_cspline_2d, x, y, ..., *values, *conditions, axis=axis, needs=_nodes(4, False))


def inter(x: Samples, y: Samples, *, axis: int = -1) -> Signal:
    """Samples of two signals in turn (dspb_inter).

    Returns
    -------
    Signal
        x[0], y[0], x[1], y[1], ..., dx halved.

    Examples
    --------
    >>> dsp.inter([1.0, 2.0], [3.0, 4.0])
    Signal([1., 3., 2., 4.], dx=0.5)
    """
    return made(lib.dspb_inter, *pair(x, y), ..., axis=axis, needs=[same_length])


def zinter(x: Samples, *, axis: int = -1) -> Signal:
    """A zero after every sample (dspi_zinter).

    Returns
    -------
    Signal
        2 n samples, dx halved: before a lowpass, the first step of interpolation by two.

    Examples
    --------
    >>> dsp.zinter([1.0, 2.0])
    Signal([1., 0., 2., 0.], dx=0.5)
    """
    return changed(lib.dspi_zinter, x, axis=axis)
