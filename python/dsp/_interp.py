"""Interpolation: a tabulated function at other abscissae, real throughout. Nodes and queries rise."""

from __future__ import annotations

from typing import NamedTuple, Optional, Union

from ._c import lib
from ._names import Choice, Interp, Spline, choose
from ._signal import Record, Samples, Signal, changed, made, pair

__all__ = ["End", "cspline", "cspline_2d", "inter", "interp", "zinter"]


def _optional(samples: Optional[Samples]) -> Optional[Record]:
    return None if samples is None else Record.of(samples)


def interp(
    x: Samples, y: Samples, xq: Samples, mode: Choice = Interp.LINEAR, *, d2: Optional[Samples] = None
) -> Signal:
    """The function through the nodes (x, y) at xq; mode "hold", "linear", "quadratic" or "spline", and "clamp" to
    hold the ends outside: "linear, clamp". d2 are a spline's second derivatives (dsp_interp)."""
    return made(lib.dsp_interp, Record.of(x), Record.of(y), _optional(d2), Record.of(xq), ..., choose(Interp, mode))


def cspline(x: Samples, y: Samples, xq: Samples, *, d2: Optional[Samples] = None) -> Signal:
    """The cubic spline through (x, y) at xq, with not-a-knot ends or second derivatives d2 (dsp_cspline)."""
    return made(lib.dsp_cspline, Record.of(x), Record.of(y), _optional(d2), Record.of(xq), ...)


class End(NamedTuple):
    """A condition at an end of a spline, and the value of its derivative where it takes one."""

    condition: Choice
    value: float = 0.0


def cspline_2d(
    x: Samples, y: Samples, left: Union[Choice, End] = "not_a_knot", right: Union[Choice, End] = "not_a_knot"
) -> Signal:
    """Second derivatives at the nodes of the spline through them; ends as "natural" or End("clamped", slope)
    (dspb_cspline_2d)."""
    ends = [end if isinstance(end, End) else End(end) for end in (left, right)]
    conditions = [choose(Spline, end.condition) for end in ends]
    return made(lib.dspb_cspline_2d, Record.of(x), Record.of(y), ..., ends[0].value, ends[1].value, *conditions)


def inter(x: Samples, y: Samples) -> Signal:
    """x and y sample by sample in turn, dx halved (dspb_inter)."""
    return made(lib.dspb_inter, *pair(x, y), ...)


def zinter(x: Samples) -> Signal:
    """A zero after every sample, dx halved (dspi_zinter)."""
    return changed(lib.dspi_zinter, x)
