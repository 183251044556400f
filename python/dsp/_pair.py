"""Two signals into one. Shapes are broadcast. The spacing is the mean of both; an array beside a signal takes the
spacing of the signal.
"""

from __future__ import annotations

import numpy as np

from ._c import lib
from ._call import broadcast, made, number, pair, same_length
from ._signal import Number, Samples, Signal

__all__ = ["add", "avg_add", "conj_mul", "div", "dot", "maximum", "minimum", "mul", "pmul", "sub"]


def add(x: Samples, y: Samples, *, axis: int = -1) -> Signal:
    """Sum of two signals, the shorter one extended with zeros (dspb_add).

    Returns
    -------
    Signal
        x + y. A single number is taken for every sample.

    Examples
    --------
    >>> dsp.add([1.0, 2.0, 3.0], [10.0])
    Signal([11.,  2.,  3.], dx=1)
    >>> dsp.add([1.0, 2.0, 3.0], 10.0)
    Signal([11., 12., 13.], dx=1)
    """
    return made(lib.dspb_add, *extended(x, y), ..., axis=axis)


def sub(x: Samples, y: Samples, *, axis: int = -1) -> Signal:
    """Difference of two signals, the shorter one extended with zeros (dspb_sub).

    Returns
    -------
    Signal
        x - y. A single number is taken for every sample.

    Examples
    --------
    >>> dsp.sub([1.0, 2.0, 3.0], [10.0])
    Signal([-9.,  2.,  3.], dx=1)
    >>> dsp.sub([1.0, 2.0, 3.0], 10.0)
    Signal([-9., -8., -7.], dx=1)
    """
    return made(lib.dspb_sub, *extended(x, y), ..., axis=axis)


def mul(x: Samples, y: Samples) -> Signal:
    """Product (dspb_mul).

    Returns
    -------
    Signal
        x y.

    Examples
    --------
    >>> dsp.mul([1.0, 2.0], [3.0, 1j])
    Signal([3.+0.j, 0.+2.j], dx=1)
    """
    return made(lib.dspb_mul, *broadcast(x, y), ..., each=True)


def conj_mul(x: Samples, y: Samples) -> Signal:
    """Product with the conjugate (dspb_conj_mul).

    Returns
    -------
    Signal
        x times the conjugate of y.

    Examples
    --------
    >>> dsp.conj_mul([1j], [1j])
    Signal([1.+0.j], dx=1)
    """
    return made(lib.dspb_conj_mul, *broadcast(x, y), ..., each=True)


def div(x: Samples, y: Samples) -> Signal:
    """Quotient (dspb_div).

    Returns
    -------
    Signal
        x/y; 0/0 is 0, and x/0 is 1e100.

    Examples
    --------
    >>> dsp.div([1.0, 1.0, 0.0], [4.0, 0.0, 0.0])
    Signal([2.5e-001, 1.0e+100, 0.0e+000], dx=1)
    """
    return made(lib.dspb_div, *broadcast(x, y), ..., each=True)


def avg_add(x: Samples, average: Samples, weight: float) -> Signal:
    """The next exponential average (dspb_avg_add).

    Parameters
    ----------
    x : array_like
        What is new.
    average : array_like
        The average so far.
    weight : float
        Share of `x`.

    Returns
    -------
    Signal
        average + weight (x - average).

    Examples
    --------
    >>> dsp.avg_add([4.0], [2.0], 0.25)
    Signal([2.5], dx=1)
    """
    return made(lib.dspb_avg_add, *broadcast(x, average), ..., weight, each=True)


def maximum(x: Samples, y: Samples) -> Signal:
    """The larger sample of each pair (dspb_max).

    Returns
    -------
    Signal
        Samples of `x` or `y`, compared by magnitude when one is complex.

    Examples
    --------
    >>> dsp.maximum([1.0, 5.0], 3.0)
    Signal([3., 5.], dx=1)
    """
    return made(lib.dspb_max, *broadcast(x, y), ..., each=True)


def minimum(x: Samples, y: Samples) -> Signal:
    """The smaller sample of each pair (dspb_min).

    Returns
    -------
    Signal
        Samples of `x` or `y`, compared by magnitude when one is complex.

    Examples
    --------
    >>> dsp.minimum([1.0, 5.0], 3.0)
    Signal([1., 3.], dx=1)
    """
    return made(lib.dspb_min, *broadcast(x, y), ..., each=True)


def pmul(x: Samples, y: Samples, *, axis: int = -1) -> Signal:
    """Product of polynomials, the full convolution (dspb_pmul).

    Returns
    -------
    Signal
        len(x) + len(y) - 1 coefficients.

    Examples
    --------
    >>> dsp.pmul([1.0, 1.0], [1.0, 2.0])
    Signal([1., 3., 2.], dx=1)
    """
    return made(lib.dspb_pmul, *pair(x, y), ..., axis=axis)


def dot(x: Samples, y: Samples, *, axis: int = -1) -> Number:
    """Sum of the products, without conjugation (dspbs_dot).

    Returns
    -------
    float, or an array of one for each row
        The sum.

    Examples
    --------
    >>> dsp.dot([1.0, 2.0], [3.0, 4.0])
    11.0
    """
    return number(lib.dspbs_dot, *pair(x, y), ..., axis=axis, needs=[same_length])


def extended(x: Samples, y: Samples) -> tuple[Samples, Samples]:
    """As `pair`, a single number repeated for every sample of the other operand."""
    single = any(getattr(side, "ndim", None) == 0 or np.isscalar(side) for side in (x, y))
    return broadcast(x, y) if single else pair(x, y)
