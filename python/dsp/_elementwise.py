"""Arithmetic, conversions, elementary functions, order and calculus, generators.

Functions of one signal return a new one and leave `x` alone; `out`, an array of the kind and length of x, takes the
result instead and may be x itself.
"""

from __future__ import annotations

from typing import NamedTuple, Optional, Union

import numpy as np

from ._c import lib
from ._names import Choice, Pad, choose
from ._signal import Record, Samples, Signal, changed, made, pair

__all__ = [
    "Limited", "acos", "add", "addcos", "asin", "avg_add", "besy0", "besy1", "cexp", "conj", "conj_mul", "cos", "cosh",
    "cscale", "db", "differ", "div", "dot", "edge", "exp", "exp10", "imag", "integ", "limit", "line", "log", "log10",
    "mag", "magsq", "maximum", "minimum", "mul", "neg", "offset", "orecon", "pdiffer", "phase", "pmul", "ptor", "real",
    "recip", "recon", "rev", "ritoc", "rtoc", "rtop", "scale", "shift", "sinh", "sort", "sqrt", "square", "sub",
    "swap_halves", "timesi", "unwrap", "unzpad", "zero", "zpad",
]  # fmt: skip

Out = Optional[np.ndarray]


# Arithmetic and representations


def db(x: Samples, factor: float = 20.0, *, out: Out = None) -> Signal:
    """Decibels, factor log10 |x|: 20 for amplitudes, 10 for powers; finite for 0. Take mag of complex x first."""
    return changed(lib.dspi_db, x, factor, out=out)


def real(x: Samples) -> Signal:
    """Real parts (dspi_real)."""
    return changed(lib.dspi_real, x)


def imag(x: Samples) -> Signal:
    """Imaginary parts (dspi_imag)."""
    return changed(lib.dspi_imag, x)


def rtoc(x: Samples) -> Signal:
    """Complex samples, with imaginary parts 0 where x is real (dspi_rtoc)."""
    return changed(lib.dspi_rtoc, x)


def conj(x: Samples, *, out: Out = None) -> Signal:
    """Complex conjugate (dspi_conj)."""
    return changed(lib.dspi_conj, x, out=out)


def neg(x: Samples, *, out: Out = None) -> Signal:
    """-x (dspi_neg)."""
    return changed(lib.dspi_neg, x, out=out)


def offset(x: Samples, c: float, *, out: Out = None) -> Signal:
    """x + c (dspi_offset)."""
    return changed(lib.dspi_offset, x, c, out=out)


def scale(x: Samples, k: float, *, out: Out = None) -> Signal:
    """k x (dspi_scale)."""
    return changed(lib.dspi_scale, x, k, out=out)


def cscale(x: Samples, c: complex, *, out: Out = None) -> Signal:
    """c x, complex (dspi_cscale)."""
    return changed(lib.dspi_cscale, x, c.real, c.imag, out=out)


def recip(x: Samples, *, out: Out = None) -> Signal:
    """1/x, and 1e100 for 0 (dspi_recip)."""
    return changed(lib.dspi_recip, x, out=out)


def sqrt(x: Samples, *, out: Out = None) -> Signal:
    """Square root; 0 for negative real samples (dspi_sqrt)."""
    return changed(lib.dspi_sqrt, x, out=out)


def square(x: Samples, *, out: Out = None) -> Signal:
    """x x (dspi_square)."""
    return changed(lib.dspi_square, x, out=out)


def timesi(x: Samples, *, out: Out = None) -> Signal:
    """i x, complex (dspi_timesi)."""
    return changed(lib.dspi_timesi, x, out=out)


class Limited(NamedTuple):
    """What limit returns: the samples, and whether any had to be clamped."""

    signal: Signal
    clipped: bool


def limit(x: Samples, lo: float, hi: float, *, out: Out = None) -> Limited:
    """x clamped into [lo, hi], each part of complex samples by itself, and whether any was outside (dspi_limit)."""
    clipped = np.zeros(1, np.int32)
    return Limited(changed(lib.dspi_limit, x, lo, hi, clipped, out=out), bool(clipped[0]))


def zero(x: Samples, *, out: Out = None) -> Signal:
    """Zeros in the form of x (dspi_zero)."""
    return changed(lib.dspi_zero, x, out=out)


def mag(x: Samples) -> Signal:
    """Magnitude, real (dspu_mag)."""
    return made(lib.dspu_mag, Record.of(x), ...)


def magsq(x: Samples) -> Signal:
    """Squared magnitude, real (dspu_magsq)."""
    return made(lib.dspu_magsq, Record.of(x), ...)


def phase(x: Samples) -> Signal:
    """Phase in radians, in [-pi, pi] (dspi_phase)."""
    return changed(lib.dspi_phase, x)


def rtop(x: Samples, *, out: Out = None) -> Signal:
    """To polar: complex samples (magnitude, phase) (dspi_rtop)."""
    return changed(lib.dspi_rtop, x, out=out)


def ptor(x: Samples, *, out: Out = None) -> Signal:
    """From polar (dspi_ptor)."""
    return changed(lib.dspi_ptor, x, out=out)


# Two signals into one, with the mean of their dx; an array without takes the other's


def add(x: Samples, y: Samples) -> Signal:
    """x + y, the shorter one extended with zeros (dspb_add)."""
    return made(lib.dspb_add, *pair(x, y), ...)


def sub(x: Samples, y: Samples) -> Signal:
    """x - y, the shorter one extended with zeros (dspb_sub)."""
    return made(lib.dspb_sub, *pair(x, y), ...)


def mul(x: Samples, y: Samples) -> Signal:
    """x y (dspb_mul)."""
    return made(lib.dspb_mul, *pair(x, y), ...)


def conj_mul(x: Samples, y: Samples) -> Signal:
    """x times the conjugate of y (dspb_conj_mul)."""
    return made(lib.dspb_conj_mul, *pair(x, y), ...)


def div(x: Samples, y: Samples) -> Signal:
    """x/y; 0/0 is 0, and x/0 1e100 (dspb_div)."""
    return made(lib.dspb_div, *pair(x, y), ...)


def avg_add(x: Samples, average: Samples, weight: float) -> Signal:
    """average + weight (x - average): the next exponential average (dspb_avg_add)."""
    return made(lib.dspb_avg_add, *pair(x, average), ..., weight)


def maximum(x: Samples, y: Samples) -> Signal:
    """The larger sample of each pair, by magnitude when complex (dspb_max)."""
    return made(lib.dspb_max, *pair(x, y), ...)


def minimum(x: Samples, y: Samples) -> Signal:
    """The smaller sample of each pair, by magnitude when complex (dspb_min)."""
    return made(lib.dspb_min, *pair(x, y), ...)


def pmul(x: Samples, y: Samples) -> Signal:
    """Product of polynomials, the full convolution of x and y (dspb_pmul)."""
    return made(lib.dspb_pmul, *pair(x, y), ...)


def ritoc(re: Samples, im: Samples) -> Signal:
    """re + i im, of two real signals (dspb_ritoc)."""
    return made(lib.dspb_ritoc, *pair(re, im), ...)


def dot(x: Samples, y: Samples) -> Union[float, complex]:
    """Sum of x y, without conjugation (dspbs_dot)."""
    return made(lib.dspbs_dot, *pair(x, y), ...).item()


# Elementary functions; outside its domain each has a fixed value


def asin(x: Samples, *, out: Out = None) -> Signal:
    """Inverse sine of real x; 0 where |x| > 1 (dspi_asin)."""
    return changed(lib.dspi_asin, x, out=out)


def acos(x: Samples, *, out: Out = None) -> Signal:
    """Inverse cosine of real x; 0 where |x| > 1 (dspi_acos)."""
    return changed(lib.dspi_acos, x, out=out)


def sinh(x: Samples, *, out: Out = None) -> Signal:
    """Hyperbolic sine of real x; at most 1e100 (dspi_sinh)."""
    return changed(lib.dspi_sinh, x, out=out)


def cosh(x: Samples, *, out: Out = None) -> Signal:
    """Hyperbolic cosine of real x; at most 1e100 (dspi_cosh)."""
    return changed(lib.dspi_cosh, x, out=out)


def besy0(x: Samples, *, out: Out = None) -> Signal:
    """Bessel function Y0 of real x; 0 where x <= 0 (dspi_besy0)."""
    return changed(lib.dspi_besy0, x, out=out)


def besy1(x: Samples, *, out: Out = None) -> Signal:
    """Bessel function Y1 of real x; 0 where x <= 0 (dspi_besy1)."""
    return changed(lib.dspi_besy1, x, out=out)


def exp(x: Samples, *, out: Out = None) -> Signal:
    """e^x, at most 1e100 (dspi_exp)."""
    return changed(lib.dspi_exp, x, out=out)


def exp10(x: Samples, *, out: Out = None) -> Signal:
    """10^x, at most 1e100 (dspi_exp10)."""
    return changed(lib.dspi_exp10, x, out=out)


def log(x: Samples, *, out: Out = None) -> Signal:
    """Natural logarithm, -708.4 for what has none (dspi_log)."""
    return changed(lib.dspi_log, x, out=out)


def log10(x: Samples, *, out: Out = None) -> Signal:
    """Common logarithm, -307.7 for what has none (dspi_log10)."""
    return changed(lib.dspi_log10, x, out=out)


def addcos(
    x: Samples, freq: float, amp: float = 1.0, phase: float = 0.0, *, both: bool = False, dx: Optional[float] = None,
    out: Out = None,
) -> Signal:  # fmt: skip
    """x + amp cos(phase + 2 pi freq t), freq per unit of dx; `both` adds i sin to complex x as well (dspi_addcos)."""
    return changed(lib.dspi_addcos, x, both, freq, amp, phase, dx=dx, out=out)


# Order, length and calculus


def rev(x: Samples, *, out: Out = None) -> Signal:
    """Back to front (dspi_rev)."""
    return changed(lib.dspi_rev, x, out=out)


def shift(x: Samples, k: int) -> Signal:
    """Without the first k samples (dspi_shift)."""
    return changed(lib.dspi_shift, x, k)


def sort(x: Samples, *, out: Out = None) -> Signal:
    """Sorted, complex samples by magnitude; NaN last (dspi_sort)."""
    return changed(lib.dspi_sort, x, out=out)


def swap_halves(x: Samples, *, undo: bool = False, out: Out = None) -> Signal:
    """First sample to place n/2; `undo` for the way back, which differs for odd n (dspi_swap_halves, ..._halves2)."""
    return changed(lib.dspi_swap_halves2 if undo else lib.dspi_swap_halves, x, out=out)


def zpad(x: Samples, length: int, mode: Choice = Pad.UNSCALED) -> Signal:
    """x with zeros up to `length`, e.g. mode "centre, unscaled"; never shorter (dspi_zpad2)."""
    return changed(lib.dspi_zpad2, x, length, choose(Pad, mode))


def unzpad(x: Samples, length: int, mode: Choice = Pad.UNSCALED) -> Signal:
    """Undoes zpad: the `length` samples that it would have placed so (dspi_unzpad)."""
    return changed(lib.dspi_unzpad, x, length, choose(Pad, mode))


def recon(x: Samples) -> Signal:
    """The spectrum of a real signal completed from its one side: n to 2 (n - 1) bins (dspi_recon)."""
    return changed(lib.dspi_recon, x)


def orecon(x: Samples, odd: bool = True) -> Signal:
    """As recon, of a signal of odd length: n to 2 n - 1 bins (dspi_orecon)."""
    return changed(lib.dspi_orecon, x, odd)


def differ(x: Samples, *, dx: Optional[float] = None, out: Out = None) -> Signal:
    """Differences over dx, from a sample 0 before the first (dspi_differ)."""
    return changed(lib.dspi_differ, x, dx=dx, out=out)


def integ(x: Samples, *, dx: Optional[float] = None, out: Out = None) -> Signal:
    """Running sums times dx (dspi_integ)."""
    return changed(lib.dspi_integ, x, dx=dx, out=out)


def pdiffer(x: Samples) -> Signal:
    """Derivative of the polynomial x[0] + x[1] t + x[2] t^2 + ..., its coefficients (dspi_pdiffer)."""
    return changed(lib.dspi_pdiffer, x)


def unwrap(x: Samples, window: int = 1, *, out: Out = None) -> Signal:
    """A phase in radians without its jumps: each sample within pi of the mean of the `window` before it; 0 wraps into
    [-pi, pi] (dspi_unwrap_wnd)."""
    return changed(lib.dspi_unwrap_wnd, x, window, out=out)


def edge(
    x: Samples, level: float = 0.0, *, rising: bool = True, falling: bool = False, dx: Optional[float] = None
) -> Signal:
    """Where real x crosses `level`, in units of dx from the first sample, interpolated (dspi_edge)."""
    return changed(lib.dspi_edge, x, rising | falling << 1, level, dx=dx)


# Generators: `length` samples, `dx` apart


def line(length: int, slope: float = 1.0, offset: float = 0.0, *, dx: float = 1.0) -> Signal:
    """offset + slope dx k (dspc_line)."""
    record = Record.sized(length, dx)
    lib.dspc_line(record, slope, offset)
    return record.signal()


def cos(length: int, freq: float, phase: float = 0.0, *, dx: float = 1.0) -> Signal:
    """cos(phase + 2 pi freq dx k), freq per unit of dx: hertz where dx is in seconds (dspc_cos)."""
    record = Record.sized(length, dx)
    lib.dspc_cos(record, freq, phase)
    return record.signal()


def cexp(length: int, freq: float, phase: float = 0.0, *, dx: float = 1.0) -> Signal:
    """The complex exponential of the same angle (dspc_cexp)."""
    record = Record.sized(length, dx, True)
    lib.dspc_cexp(record, freq, phase)
    return record.signal()
