"""Statistics: of a signal to one of Python's numbers, of more dimensions to an array with one for each row."""

from __future__ import annotations

from ._c import lib
from ._call import number, real_only
from ._signal import Number, Samples

__all__ = [
    "excess", "gmean", "hmean", "magsq_sum", "max", "mean", "median", "min", "pop_stddev", "pop_var", "rms",
    "samp_stddev", "samp_var", "skew", "sum",
]  # fmt: skip


def sum(x: Samples, *, axis: int = -1) -> Number:
    """Sum (dsps_sum).

    Returns
    -------
    float, or an array of one for each row
        The sum; its error is about 2 units in the last place of the sum of |x|.

    Examples
    --------
    >>> dsp.sum([1.0, 2.0, 3.0])
    6.0
    """
    return number(lib.dsps_sum, x, ..., axis=axis)


def mean(x: Samples, *, axis: int = -1) -> Number:
    """Arithmetic mean (dsps_mean).

    Returns
    -------
    float, or an array of one for each row
        The mean; 0 for no sample.

    Examples
    --------
    >>> dsp.mean([1.0, 2.0, 3.0])
    2.0
    >>> dsp.mean([[1.0, 2.0], [3.0, 5.0]])
    array([1.5, 4. ])
    """
    return number(lib.dsps_mean, x, ..., axis=axis)


def gmean(x: Samples, *, axis: int = -1) -> Number:
    """Geometric mean (dsps_gmean).

    Returns
    -------
    float, or an array of one for each row
        The n-th root of the product; products leave the range of doubles easily.

    Examples
    --------
    >>> dsp.gmean([1.0, 4.0])
    2.0
    """
    return number(lib.dsps_gmean, x, ..., axis=axis)


def hmean(x: Samples, *, axis: int = -1) -> Number:
    """Harmonic mean (dsps_hmean).

    Returns
    -------
    float, or an array of one for each row
        n over the sum of reciprocals.

    Examples
    --------
    >>> dsp.hmean([1.0, 4.0, 4.0])
    2.0
    """
    return number(lib.dsps_hmean, x, ..., axis=axis)


def median(x: Samples, *, axis: int = -1) -> Number:
    """Median, of complex samples in the order of magnitudes (dsps_median).

    Returns
    -------
    float, or an array of one for each row
        The middle sample, or the mean of the middle two.

    Examples
    --------
    >>> dsp.median([3.0, 1.0, 10.0])
    3.0
    """
    return number(lib.dsps_median, x, ..., axis=axis)


def max(x: Samples, *, axis: int = -1) -> Number:
    """The greatest sample, by magnitude when complex (dsps_max).

    Returns
    -------
    float, or an array of one for each row
        The sample; NaN is never chosen.

    Examples
    --------
    >>> dsp.max([1.0, 3.0, 2.0])
    3.0
    """
    return number(lib.dsps_max, x, ..., axis=axis)


def min(x: Samples, *, axis: int = -1) -> Number:
    """The least sample, by magnitude when complex (dsps_min).

    Returns
    -------
    float, or an array of one for each row
        The sample; NaN is never chosen.

    Examples
    --------
    >>> dsp.min([1.0, 3.0, 2.0])
    1.0
    """
    return number(lib.dsps_min, x, ..., axis=axis)


def magsq_sum(x: Samples, *, axis: int = -1) -> Number:
    """Energy, the sum of |x|^2 (dsps_magsq_sum).

    Returns
    -------
    float, or an array of one for each row
        A real number.

    Examples
    --------
    >>> dsp.magsq_sum([3.0, 4j])
    25.0
    """
    return number(lib.dsps_magsq_sum, x, ..., axis=axis)


def rms(x: Samples, *, axis: int = -1) -> Number:
    """Root of the mean of |x|^2 (dsps_rms).

    Returns
    -------
    float, or an array of one for each row
        A real number.

    Examples
    --------
    >>> dsp.rms([3.0, -3.0])
    3.0
    """
    return number(lib.dsps_rms, x, ..., axis=axis)


def pop_var(x: Samples, *, axis: int = -1) -> Number:
    """Variance of the samples as they are, over n (dsps_pop_var).

    Returns
    -------
    float, or an array of one for each row
        A real number.

    Examples
    --------
    >>> dsp.pop_var([1.0, 3.0])
    1.0
    """
    return number(lib.dsps_pop_var, x, ..., axis=axis)


def samp_var(x: Samples, *, axis: int = -1) -> Number:
    """Variance of what the samples are drawn from, over n - 1 (dsps_samp_var).

    Returns
    -------
    float, or an array of one for each row
        A real number.

    Examples
    --------
    >>> dsp.samp_var([1.0, 3.0])
    2.0
    """
    return number(lib.dsps_samp_var, x, ..., axis=axis)


def pop_stddev(x: Samples, *, axis: int = -1) -> Number:
    """Standard deviation of the samples as they are (dsps_pop_stddev).

    Returns
    -------
    float, or an array of one for each row
        The root of `pop_var`.

    Examples
    --------
    >>> dsp.pop_stddev([1.0, 3.0])
    1.0
    """
    return number(lib.dsps_pop_stddev, x, ..., axis=axis)


def samp_stddev(x: Samples, *, axis: int = -1) -> Number:
    """Standard deviation of what the samples are drawn from (dsps_samp_stddev).

    Returns
    -------
    float, or an array of one for each row
        The root of `samp_var`.

    Examples
    --------
    >>> dsp.samp_stddev([1.0, 5.0, 3.0])
    2.0
    """
    return number(lib.dsps_samp_stddev, x, ..., axis=axis)


def skew(x: Samples, *, axis: int = -1) -> Number:
    """Skewness of a real signal (dsps_skew).

    Returns
    -------
    float, or an array of one for each row
        The third central moment over the 1.5th power of the second.

    Examples
    --------
    >>> dsp.skew([1.0, 2.0, 3.0])
    0.0
    """
    return number(lib.dsps_skew, x, ..., axis=axis, needs=[real_only])


def excess(x: Samples, *, axis: int = -1) -> Number:
    """Excess kurtosis of a real signal (dsps_excess).

    Returns
    -------
    float, or an array of one for each row
        The fourth central moment over the square of the second, less 3.

    Examples
    --------
    >>> dsp.excess([1.0, -1.0, 1.0, -1.0])
    -2.0
    """
    return number(lib.dsps_excess, x, ..., axis=axis, needs=[real_only])
