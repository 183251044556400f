"""One-port calibration, and complex matrices."""

from __future__ import annotations

from typing import Sequence

import numpy as np
import numpy.typing as npt

from ._c import Error, lib

__all__ = ["OnePort", "invert", "matrix_mult"]


def _copy(x: npt.ArrayLike) -> np.ndarray:
    return np.array(x, np.complex128, order="C", ndmin=1)


class OnePort:
    """The error terms of a reflectometer, from three standards: how they were measured and what they are, each an array
    over frequency (Compute1PortTerms).

        calibration = dsp.OnePort([short_g, open_g, load_g], [short_a, open_a, load_a])
        a = calibration.correct(g)
    """

    def __init__(self, measured: Sequence[npt.ArrayLike], actual: Sequence[npt.ArrayLike]) -> None:
        standards = [_copy(a) for a in np.broadcast_arrays(*measured, *actual)]
        if len(measured) != 3 or len(actual) != 3 or standards[0].ndim != 1:
            raise ValueError("a calibration takes three standards, each an array over frequency")
        lib.Compute1PortTerms(*standards, 0, len(standards[0]))
        self.directivity, self.source_match, self.reflection_tracking = standards[:3]

    def correct(self, measured: npt.ArrayLike) -> np.ndarray:
        """Reflection coefficients as they are, from those that were measured."""
        through = np.asarray(measured) - self.directivity
        return through / (self.reflection_tracking + self.source_match * through)

    def distort(self, actual: npt.ArrayLike) -> np.ndarray:
        """What the reflectometer shows for reflection coefficients."""
        a = np.asarray(actual)
        return self.directivity + self.reflection_tracking * a / (1 - self.source_match * a)


def matrix_mult(a: npt.ArrayLike, b: npt.ArrayLike) -> np.ndarray:
    """Product of complex matrices; a has no more columns than rows (MatrixMult)."""
    left, right = _copy(a), _copy(b)
    if left.ndim != 2 or right.ndim != 2 or left.shape[1] != right.shape[0]:
        raise ValueError(f"no product of {left.shape} and {right.shape}")
    out = np.empty((left.shape[0], right.shape[1]), np.complex128)
    lib.MatrixMult(left, right, out, *left.shape, right.shape[1])
    return out


def invert(m: npt.ArrayLike) -> np.ndarray:
    """Inverse of a square complex matrix; LinAlgError where it has none (invert)."""
    out = _copy(m)
    if out.ndim != 2 or out.shape[0] != out.shape[1]:
        raise ValueError(f"{out.shape} is no square")
    try:
        lib.invert(out, len(out))
    except Error as error:
        raise np.linalg.LinAlgError("singular matrix") from error
    return out
