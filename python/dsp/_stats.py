"""Statistics, peaks and fits: of a signal, to Python's numbers."""

from __future__ import annotations

from typing import Any, Callable, NamedTuple, Optional, Union

from ._c import lib
from ._names import Choice, Peak, choose
from ._signal import Record, Samples, Signal, made

__all__ = [
    "Found", "Line", "Regression", "excess", "gmean", "hist", "hmean", "lin_regres", "lin_regres2", "magsq_sum", "max",
    "mean", "median", "min", "peak", "peval", "pop_stddev", "pop_var", "rms", "samp_stddev", "samp_var", "skew", "sum",
]  # fmt: skip

Number = Union[float, complex]


def _number(routine: Callable, x: Samples) -> Any:
    result = Record()
    routine(Record.of(x), result)
    return result.first()


def sum(x: Samples) -> Number:
    """Sum, right to about 2 units in the last place of the largest partial sum (dsps_sum)."""
    return _number(lib.dsps_sum, x)


def mean(x: Samples) -> Number:
    """Arithmetic mean (dsps_mean)."""
    return _number(lib.dsps_mean, x)


def gmean(x: Samples) -> Number:
    """Geometric mean (dsps_gmean)."""
    return _number(lib.dsps_gmean, x)


def hmean(x: Samples) -> Number:
    """Harmonic mean (dsps_hmean)."""
    return _number(lib.dsps_hmean, x)


def median(x: Samples) -> Number:
    """Median, of complex samples in the order of magnitudes (dsps_median)."""
    return _number(lib.dsps_median, x)


def max(x: Samples) -> Number:
    """The greatest sample, by magnitude when complex (dsps_max)."""
    return _number(lib.dsps_max, x)


def min(x: Samples) -> Number:
    """The least sample, by magnitude when complex (dsps_min)."""
    return _number(lib.dsps_min, x)


def magsq_sum(x: Samples) -> float:
    """Energy, the sum of |x|^2 (dsps_magsq_sum)."""
    return _number(lib.dsps_magsq_sum, x)


def rms(x: Samples) -> float:
    """Root of the mean of |x|^2 (dsps_rms)."""
    return _number(lib.dsps_rms, x)


def pop_var(x: Samples) -> float:
    """Variance of the samples as they are, over n (dsps_pop_var)."""
    return _number(lib.dsps_pop_var, x)


def samp_var(x: Samples) -> float:
    """Variance of what they are drawn from, over n - 1 (dsps_samp_var)."""
    return _number(lib.dsps_samp_var, x)


def pop_stddev(x: Samples) -> float:
    """Root of pop_var (dsps_pop_stddev)."""
    return _number(lib.dsps_pop_stddev, x)


def samp_stddev(x: Samples) -> float:
    """Root of samp_var (dsps_samp_stddev)."""
    return _number(lib.dsps_samp_stddev, x)


def skew(x: Samples) -> float:
    """Skewness of real x (dsps_skew)."""
    return _number(lib.dsps_skew, x)


def excess(x: Samples) -> float:
    """Excess kurtosis of real x (dsps_excess)."""
    return _number(lib.dsps_excess, x)


def hist(x: Samples, start: float, bin_width: float, bins: int) -> Signal:
    """Counts of samples, or of magnitudes, in `bins` bins from `start` on; dx is bin_width (dsps_hist)."""
    return made(lib.dsps_hist, Record.of(x), ..., start, bin_width, bins)


class Found(NamedTuple):
    """What peak finds: the value, the position in samples, and the place in units of dx."""

    value: float
    position: float
    place: float


def peak(x: Samples, how: Choice = Peak.PARABOLIC, *, index: Optional[int] = None, dx: Optional[float] = None) -> Found:
    """The greatest sample, or with "min" the least, or the one at `index`, refined between samples by "parabolic",
    "gauss", "gauss_corr" or "no_interp". The value of complex x is its squared magnitude (dsps_peak)."""
    flags = choose(Peak, how) | (0 if index is None else Peak.AT_INDEX)
    signal = Signal(x, dx)
    value, position = made(lib.dsps_peak, Record.of(signal), ..., flags, index or 0).tolist()
    return Found(value, position, position * signal.dx)


def peval(c: Samples, x: float) -> float:
    """c[0] + c[1] x + c[2] x^2 + ..., c real (dsps_peval)."""
    return made(lib.dsps_peval, Record.of(c), ..., x).item()


class Line(NamedTuple):
    """A straight line."""

    slope: float
    intercept: float


class Regression(NamedTuple):
    """A straight-line fit of y on x and, after them, of x on y, and the statistics of both."""

    slope: float
    intercept: float
    residual_var: float
    slope_var: float
    intercept_var: float
    cov: float
    corr: float
    x_slope: float
    x_intercept: float
    x_residual_var: float
    x_slope_var: float
    x_intercept_var: float
    x_cov: float
    x_corr: float
    mean_x: float
    mean_y: float
    var_x: float
    var_y: float
    cov_xy: float
    r: float


def lin_regres(x: Samples, *, dx: Optional[float] = None) -> Line:
    """Straight line through real samples over their places, or through complex points (re, im) (dsps_lin_regres)."""
    return Line(*made(lib.dsps_lin_regres, Record.of(x, dx), ...).tolist())


def lin_regres2(x: Samples, *, dx: Optional[float] = None) -> Regression:
    """The same fit with its statistics (dsps_lin_regres2)."""
    return Regression(*made(lib.dsps_lin_regres2, Record.of(x, dx), ...).tolist())
