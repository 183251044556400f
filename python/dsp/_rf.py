"""One-port calibration, complex matrices, circles and arcs."""

from __future__ import annotations

from typing import Any, NamedTuple, Sequence

import numpy as np
import numpy.typing as npt

from ._c import Error, lib, run
from ._call import axis_last, indices
from ._signal import Array, doubles, numbers

__all__ = ["Circle", "OnePort", "arc_interp", "circle_fit", "invert", "matrix_mult"]


def _copy(x: npt.ArrayLike) -> Array:
    return np.array(numbers(x), np.complex128, order="C", ndmin=1)


class OnePort:
    """The error terms of a reflectometer, from three standards (Compute1PortTerms).

    Parameters
    ----------
    measured : sequence of array_like
        What was measured of the three standards, arrays over frequency.
    actual : sequence of array_like
        What the standards are, in the same order.

    Attributes
    ----------
    directivity, source_match, reflection_tracking : ndarray
        The error terms.

    Raises
    ------
    Error
        If there are not three standards.

    Examples
    --------
    >>> calibration = dsp.OnePort([[-0.7], [0.9], [0.1]], [[-1.0], [1.0], [0.0]])
    >>> calibration.directivity, calibration.correct([0.5])
    (array([0.1+0.j]), array([0.5+0.j]))
    """

    def __init__(self, measured: Sequence[npt.ArrayLike], actual: Sequence[npt.ArrayLike]) -> None:
        if len(measured) != 3 or len(actual) != 3:
            raise Error(f"a calibration takes three standards, got {len(measured)} and {len(actual)}")
        standards = [_copy(a) for a in np.broadcast_arrays(*map(numbers, (*measured, *actual)))]
        lib.Compute1PortTerms(*standards, 0, standards[0].size)
        self.directivity, self.source_match, self.reflection_tracking = standards[:3]

    def correct(self, measured: npt.ArrayLike) -> Array:
        """Reflection coefficients as they are.

        Parameters
        ----------
        measured : array_like
            Reflection coefficients as they were measured.

        Returns
        -------
        ndarray
            The corrected ones.
        """
        through = numbers(measured) - self.directivity
        result: Array = through / (self.reflection_tracking + self.source_match * through)
        return result

    def distort(self, actual: npt.ArrayLike) -> Array:
        """What the reflectometer shows.

        Parameters
        ----------
        actual : array_like
            Reflection coefficients as they are.

        Returns
        -------
        ndarray
            What would be measured.
        """
        a = numbers(actual)
        result: Array = self.directivity + self.reflection_tracking * a / (1 - self.source_match * a)
        return result


def matrix_mult(a: npt.ArrayLike, b: npt.ArrayLike) -> Array:
    """Product of complex matrices (MatrixMult).

    Parameters
    ----------
    a : array_like
        The left matrix, or a stack of them in the last two axes.
    b : array_like
        The right one.

    Returns
    -------
    ndarray
        The product, of stacks of matrices for each pair.

    Raises
    ------
    Error
        If the shapes do not fit, or `a` has more columns than rows.

    Examples
    --------
    >>> dsp.matrix_mult([[1, 2], [3, 4]], [[1], [1j]])
    array([[1.+2.j],
           [3.+4.j]])
    """
    left, right = _copy(a), _copy(b)
    if left.ndim < 2 or right.ndim < 2 or left.shape[-1] != right.shape[-2]:
        raise Error(f"there is no product of {left.shape} and {right.shape}", "MatrixMult")
    m, k = left.shape[-2:]
    if k > m and right.shape[-1] > 0:
        raise Error(
            f"matrix_mult takes no more columns than rows on the left, got {m} x {k}",
            "MatrixMult",
        )
    lead = np.broadcast_shapes(left.shape[:-2], right.shape[:-2])
    out = np.zeros(lead + (m, right.shape[-1]), np.complex128)
    for index in indices(lead if out.size else (0,)):
        factors = (_copy(np.broadcast_to(side, lead + side.shape[-2:])[index]) for side in (left, right))
        run(lib.MatrixMult, *factors, out[index], m, k, right.shape[-1])
    return out


def invert(m: npt.ArrayLike) -> Array:
    """Inverse of a square complex matrix (invert).

    Parameters
    ----------
    m : array_like
        The matrix, or a stack of them in the last two axes.

    Returns
    -------
    ndarray
        The inverse, of stacks of matrices for each.

    Raises
    ------
    Error
        If the matrix is not square.
    LinAlgError
        If it has no inverse: a pivot below 2.2e-12, so scale small ones up.

    Examples
    --------
    >>> dsp.invert([[2, 0], [0, 4j]])
    array([[0.5+0.j  , 0. +0.j  ],
           [0. +0.j  , 0. -0.25j]])
    """
    out = _copy(m)
    if out.ndim < 2 or out.shape[-1] != out.shape[-2]:
        raise Error(f"a matrix to invert is square, got {out.shape}", "invert")
    for index in indices(out.shape[:-2] if out.size else (0,)):
        try:
            lib.invert(out[index], out.shape[-1])
        except Error as error:
            raise np.linalg.LinAlgError("singular matrix: a pivot is below 2.2e-12") from error
    return out


class Circle(NamedTuple):
    """A circle, and the root mean square distance of the points that it was fitted to."""

    centre: Any
    radius: Any
    rms: Any


def circle_fit(z: npt.ArrayLike, *, axis: int = -1) -> Circle:
    """The circle nearest to points of the complex plane (vfpd_CircleFit).

    Parameters
    ----------
    z : array_like
        Three points or more.
    axis : int
        The axis along which the points lie.

    Returns
    -------
    Circle
        Centre, radius and rms, numbers or an array of one for each row: the least sum of squared distances.

    Raises
    ------
    Error
        If there is no such circle: the points are too few, not finite, or as near to a straight line.

    Examples
    --------
    >>> dsp.circle_fit([3, 2 + 1j, 1, 2 - 1j])
    Circle(centre=(2+0j), radius=1.0, rms=0.0)
    """
    points = axis_last(np.asarray(numbers(z), np.complex128), axis)
    fits = np.empty(points.shape[:-1] + (4,))
    for index in indices(points.shape[:-1]):
        row, centre = np.ascontiguousarray(points[index]), fits[index][:2].view(np.complex128)
        try:
            lib.vfpd_CircleFit(row, 0, row.size, centre, fits[index][2:3], fits[index][3:])
        except Error:
            raise Error(
                f"circle_fit: no circle is near these {row.size} points",
                "vfpd_CircleFit",
            ) from None
    centres = fits[..., 0] + 1j * fits[..., 1]
    if points.ndim == 1:
        return Circle(complex(centres), float(fits[2]), float(fits[3]))
    return Circle(centres, fits[..., 2], fits[..., 3])


def arc_interp(x: npt.ArrayLike, z: npt.ArrayLike, xi: npt.ArrayLike, *, axis: int = -1) -> Array:
    """A complex trace between its points, along arcs (CircularInterpolation).

    Parameters
    ----------
    x : array_like
        Where the trace is given; rises strictly.
    z : array_like
        The trace, as many values.
    xi : array_like
        Where it is wanted, in any order.
    axis : int
        The axis along which the values of the trace lie.

    Returns
    -------
    ndarray
        The values there.

    Raises
    ------
    Error
        If `x` does not rise, or has another length than `z`.

    Examples
    --------
    >>> dsp.arc_interp([0, 1, 2], [1, 1j, -1], [0.5]).round(3)
    array([0.707+0.707j])
    """
    nodes, at = doubles(x), np.atleast_1d(numbers(xi, "biuf")).astype(float)
    trace = axis_last(np.asarray(numbers(z), np.complex128), axis)
    if nodes.shape != trace.shape[-1:]:
        raise Error(
            f"arc_interp takes a value for each x, got {trace.shape[-1]} for {nodes.size}",
            "CircularInterpolation",
        )
    if nodes.size == 0 or np.isnan(nodes).any() or not np.all(nodes[1:] > nodes[:-1]):
        raise Error(
            "arc_interp takes x that rises from one to the next",
            "CircularInterpolation",
        )
    out = np.empty(trace.shape[:-1] + (at.size,), np.complex128)
    for index in indices(trace.shape[:-1]):
        row = np.ascontiguousarray(trace[index])
        run(
            lib.CircularInterpolation,
            nodes,
            row,
            nodes.size,
            at.reshape(-1),
            out[index],
            at.size,
        )
    shaped = out if at.ndim == 1 else out.reshape(trace.shape[:-1] + at.shape)
    return np.moveaxis(shaped, -1, axis) if trace.ndim > 1 and at.ndim == 1 else shaped
