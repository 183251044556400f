"""Differences, sums, phases without jumps, crossings."""

from __future__ import annotations

from typing import Any, Optional

from ._c import Error, lib
from ._call import changed, real_only
from ._names import Edge
from ._signal import Out, Samples, Signal

__all__ = ["differ", "edge", "integ", "pdiffer", "unwrap"]


def differ(x: Samples, *, axis: int = -1, dx: Optional[float] = None, out: Out = None) -> Signal:
    """Differences over dx, from a sample 0 before the first (dspi_differ).

    Returns
    -------
    Signal
        (x[i] - x[i - 1])/dx.

    Examples
    --------
    >>> dsp.differ([1.0, 3.0, 6.0], dx=0.5)
    Signal([2., 4., 6.], dx=0.5)
    """
    return changed(lib.dspi_differ, x, axis=axis, out=out, dx=dx)


def integ(x: Samples, *, axis: int = -1, dx: Optional[float] = None, out: Out = None) -> Signal:
    """Running sums times dx (dspi_integ).

    Returns
    -------
    Signal
        dx (x[0] + ... + x[i]).

    Examples
    --------
    >>> dsp.integ([2.0, 4.0, 6.0], dx=0.5)
    Signal([1., 3., 6.], dx=0.5)
    """
    return changed(lib.dspi_integ, x, axis=axis, out=out, dx=dx)


def pdiffer(x: Samples, *, axis: int = -1) -> Signal:
    """Derivative of a polynomial (dspi_pdiffer).

    Parameters
    ----------
    x : array_like
        Coefficients in ascending powers.

    Returns
    -------
    Signal
        The derivative's coefficients, one less.

    Examples
    --------
    >>> dsp.pdiffer([1.0, 2.0, 3.0])
    Signal([2., 6.], dx=1)
    """
    return changed(lib.dspi_pdiffer, x, axis=axis)


def _window(routine: Any, window: int) -> None:
    if window < 0:
        raise Error(f"unwrap takes a window of 0 or more samples, got {window}", routine.__name__)


def unwrap(x: Samples, window: int = 1, *, axis: int = -1, out: Out = None) -> Signal:
    """Takes the jumps out of a phase (dspi_unwrap_wnd).

    Parameters
    ----------
    x : array_like
        Phases in radians.
    window : int
        How many samples that mean takes in; 0 wraps each sample into [-pi, pi].

    Returns
    -------
    Signal
        Radians, each within pi of the mean of those before it.

    Raises
    ------
    Error
        If `x` is complex, or the window negative.

    Examples
    --------
    >>> dsp.unwrap([3.0, -3.0])
    Signal([3.        , 3.28318531], dx=1)
    """
    _window(lib.dspi_unwrap_wnd, window)
    return changed(lib.dspi_unwrap_wnd, x, window, axis=axis, out=out, needs=[real_only])


def edge(
    x: Samples,
    level: float = 0.0,
    *,
    rising: bool = True,
    falling: bool = False,
    axis: int = -1,
    dx: Optional[float] = None,
) -> Signal:
    """Where a signal crosses a level (dspi_edge).

    Parameters
    ----------
    level : float
        The level.
    rising : bool
        Finds crossings upwards.
    falling : bool
        Finds crossings downwards.

    Returns
    -------
    Signal
        Places in units of dx from the first sample, interpolated.

    Raises
    ------
    ValueError
        If rows do not have the same number of crossings.

    Examples
    --------
    >>> dsp.edge([0.0, 1.0, 0.0], 0.5, falling=True, dx=0.1)
    Signal([0.05, 0.15], dx=1)
    """
    return changed(
        lib.dspi_edge, x, rising * Edge.RISING | falling * Edge.FALLING, level, axis=axis, dx=dx, needs=[real_only]
    )
