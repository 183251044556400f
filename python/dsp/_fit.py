"""Histograms, peaks, polynomials and straight lines."""

from __future__ import annotations

from typing import Any, NamedTuple, Optional

import numpy as np

from ._c import Error, lib
from ._call import by_rows, columns, made, moved, number, placed, real_only, row_of
from ._names import Choice, Peak, choose
from ._signal import Array, Number, Record, Samples, Signal, _Result, doubles, spacing

__all__ = ["Found", "Line", "Regression", "hist", "lin_regres", "lin_regres2", "peak", "peval"]


def hist(x: Samples, start: float, bin_width: float, bins: int, *, axis: int = -1) -> Signal:
    """Histogram of samples, or of magnitudes when complex (dsps_hist).

    Parameters
    ----------
    start : float
        Lower border of the first bin.
    bin_width : float
        Width of a bin.
    bins : int
        Number of bins.

    Returns
    -------
    Signal
        Counts, `bin_width` apart; a sample on a border counts in the upper bin.

    Examples
    --------
    >>> dsp.hist([0.1, 0.2, 0.7], 0.0, 0.5, 2)
    Signal([2., 1.], dx=0.5)
    """
    return made(lib.dsps_hist, x, ..., start, bin_width, bins, axis=axis)


class Found(NamedTuple):
    """What `peak` finds: value, position in samples, place in units of dx, and whether the refinement was clamped.

    A Gaussian whose centre lies more than a sample from the middle of its pair is clamped to that distance: its place
    is then only a limit.
    """

    value: Any
    position: Any
    place: Any
    clamped: Any = False


def peak(
    x: Samples,
    how: Choice = Peak.PARABOLIC,
    *,
    index: Optional[int] = None,
    axis: int = -1,
    dx: Optional[float] = None,
) -> Found:
    """The greatest sample, refined between samples (dsps_peak).

    Parameters
    ----------
    how : int or str
        The refinement, "parabolic", "gauss", "gauss_corr" or "no_interp"; and "min" for the least sample.
    index : int, optional
        Refines the sample of this index.

    Returns
    -------
    Found
        Value, position, place and whether the refinement was clamped; of complex samples the value is the squared
        magnitude.

    Raises
    ------
    ValueError
        If there is no such refinement.

    Examples
    --------
    >>> dsp.peak([0.0, 3.0, 4.0, 3.0], dx=0.5)
    Found(value=4.0, position=2.0, place=1.0, clamped=False)
    >>> dsp.peak([1.0, 2.0, 9.0], "min, no_interp").position
    0.0
    """
    flags = choose(Peak, how) | (0 if index is None else Peak.AT_INDEX)
    if flags & Peak.INTERP_MASK > Peak.GAUSS_CORR:
        raise ValueError("of no_interp, parabolic, gauss and gauss_corr a peak takes one")
    array, step = moved(doubles(x), axis), spacing(x, dx)

    def one(row: Array) -> tuple[float, float, bool]:
        result = _Result()
        clamped = _clamped(Record.lent(row), result, flags, index or 0)
        value, position = result.look().tolist()
        return value, position, clamped

    if array.ndim == 1:
        value, position, clamped = one(array)
        return Found(value, position, position * step, clamped)
    lead = array.shape[:-1]
    value, position, clamped = columns(by_rows(lambda at: np.array(one(row_of(array, lead, at))), lead))
    return Found(value, position, position * step, clamped != 0)


def _clamped(x: Record, result: _Result, flags: int, index: int) -> bool:
    """Whether the routine failed, but wrote what it could."""
    try:
        lib.dsps_peak(x, result, flags, index)
    except Error as error:
        if not result.vec.data or result.vec.length != 2:
            raise MemoryError("peak: memory ran out") from error
        return True
    return False


def peval(c: Samples, x: float, *, axis: int = -1) -> Number:
    """Value of a polynomial (dsps_peval).

    Parameters
    ----------
    c : array_like
        Real coefficients in ascending powers.
    x : float
        The argument.

    Returns
    -------
    float, or an array of one for each row
        c[0] + c[1] x + c[2] x^2 + ...

    Raises
    ------
    Error
        If the coefficients are complex.

    Examples
    --------
    >>> dsp.peval([1.0, 2.0, 3.0], 10.0)
    321.0
    """
    return number(lib.dsps_peval, c, ..., x, axis=axis, needs=[real_only])


class Line(NamedTuple):
    """A straight line."""

    slope: Any
    intercept: Any


class Regression(NamedTuple):
    """A straight-line fit of y on x and, after them, of x on y, and the statistics of both."""

    slope: Any
    intercept: Any
    residual_var: Any
    slope_var: Any
    intercept_var: Any
    cov: Any
    corr: Any
    x_slope: Any
    x_intercept: Any
    x_residual_var: Any
    x_slope_var: Any
    x_intercept_var: Any
    x_cov: Any
    x_corr: Any
    mean_x: Any
    mean_y: Any
    var_x: Any
    var_y: Any
    cov_xy: Any
    r: Any


def lin_regres(x: Samples, *, axis: int = -1, dx: Optional[float] = None) -> Line:
    """Straight line through samples (dsps_lin_regres).

    Parameters
    ----------
    x : array_like
        Real samples over their places, or complex points (re, im).

    Returns
    -------
    Line
        Slope and intercept.

    Examples
    --------
    >>> dsp.lin_regres([1.0, 3.0, 5.0], dx=0.5)
    Line(slope=4.0, intercept=1.0)
    """
    return Line(*columns(made(lib.dsps_lin_regres, placed(x, dx), ..., axis=axis), axis))


def lin_regres2(x: Samples, *, axis: int = -1, dx: Optional[float] = None) -> Regression:
    """Straight line through samples, with its statistics (dsps_lin_regres2).

    Parameters
    ----------
    x : array_like
        Real samples over their places, or complex points (re, im).

    Returns
    -------
    Regression
        Slope and intercept, variances, covariances and correlations.

    Examples
    --------
    >>> fit = dsp.lin_regres2([1.0, 3.0, 5.0])
    >>> fit.slope, fit.r
    (2.0, 1.0)
    """
    return Regression(*columns(made(lib.dsps_lin_regres2, placed(x, dx), ..., axis=axis), axis))
