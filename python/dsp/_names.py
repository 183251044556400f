"""The constants of dsp.h. Where a function takes one, its name in any case serves as well, several flags with
`|` or a comma between them: `"flattop"`, `"raw, no_swap"`.
"""

from __future__ import annotations

import functools
import operator
import re
from enum import Enum, IntEnum, IntFlag
from typing import Iterable, Type, Union

__all__ = [
    "Addcos", "Avg", "Dct", "Edge", "Fir", "Fir2", "Format", "Interp", "Pad", "Peak", "Spectrum", "Spline", "Window", "Wnd",
]  # fmt: skip


class Window(IntEnum):
    """Window types; several names for one value (DSP_WINDOW_...)."""

    UNIFORM = 0
    RECTANGULAR = 0
    NONE = 0
    P000 = 0
    BARTLETT = 1
    TRIANGULAR = 1
    HANN = 2
    P110 = 2
    HAMMING = 3
    P100 = 3
    BLACKMAN = 4
    BLACKMAN_HARRIS3 = 5
    P200 = 5
    BLACKMAN_HARRIS4 = 6
    P310 = 6
    LOWLEAK = 6
    GAUSSTOP = 7
    P400 = 7
    FLAT4 = 8
    P301 = 8
    FLATTOP = 9
    FLAT5 = 9
    P401 = 9
    FLAT6 = 10
    P511 = 10
    FLAT7 = 11
    P611 = 11
    P501 = 12
    P601 = 13
    KAISER70 = 14
    KAISER80 = 15
    KAISER90 = 16
    KAISER100 = 17
    KAISER110 = 18
    KAISER120 = 19
    GAUSS60 = 20
    GAUSS70 = 21
    GAUSS80 = 22
    RIEMANN = 23
    SINC_LOBE = 23


class Wnd(IntFlag):
    """Flags of the window functions (DSP_WND_...)."""

    AMPLITUDE = 0  # scaled to mean 1: a windowed spectrum shows amplitudes
    POWER = 1  # scaled to mean square 1: it shows power, noise above all
    RAW = 2  # peak 1
    SCALE_MASK = 3
    SYMMETRIC = 4  # both ends on samples; Gauss, Kaiser, sinc lobe and Tukey only
    ACTIVE = 8  # set by `active`
    SWAP_UNIFORM = 16  # the uniform window swaps halves as well
    NO_SWAP = 32  # the others do not


class Pad(IntFlag):
    """Modes of zpad and unzpad: one of the first three, one of the others (DSP_PAD_...)."""

    SCALED = 0  # samples times new length / old length
    ROOT_SCALED = 1  # times the square root of that
    UNSCALED = 2  # as they are
    FRONT = 0x000  # the samples lie at the front
    CENTRE = 0x100  # in the middle
    BACK = 0x200  # at the end
    SPLIT = 0x300  # half at the front, half at the end, as spectra want it


class Spectrum(IntFlag):
    """Flags of spectrum and spectrum_dft (DSP_SPECTRUM_...)."""

    INVERSE = 1  # from spectrum to record
    TWO_SIDED = 2  # complex transform always, no factor 2 for the missing side
    SUM = 4  # a sum: times the transform length; full record
    UNWINDOWED = 8  # the record is not windowed
    CENTRED = 16  # halves swapped around the transform; full record
    FROM_TWO_SIDED = 32  # the spectrum given is complex and centred (inverse)
    ODD = 64  # the record had odd length (spectrum_dft, inverse)
    RAW = 128  # the bare transform: no window, scale or swap; full record


class Avg(IntFlag):
    """Modes of an average, and the flags LIMIT and POWER to go with them (DSP_AVG_...)."""

    REPLACE = 0  # the latest
    MEAN = 1
    MAX_HOLD = 2
    MIN_HOLD = 3
    HARMONIC = 4
    GEOMETRIC = 5
    PERIODIC = 6  # the latest at counts 1, 1 + period, 1 + 2 period, ...
    MODE_MASK = 15
    LIMIT = 16  # exponential averaging from count `limit` on
    POWER = 32  # averages the squared magnitude


class Peak(IntFlag):
    """How peak refines and searches (DSP_PEAK_...)."""

    NO_INTERP = 0x000
    PARABOLIC = 0x100
    GAUSS = 0x200
    GAUSS_CORR = 0x300
    INTERP_MASK = 0x700
    AT_INDEX = 0x1000  # set by `index`
    MIN = 0x2000


class Dct(IntFlag):
    """Flags of dct and idct (DSP_DCT_...)."""

    INVERSE = 1
    NORMALISED = 2


class Edge(IntFlag):
    """Crossings that edge finds (DSP_EDGE_...)."""

    RISING = 1
    FALLING = 2


class Addcos(IntFlag):
    """Flag of addcos (DSP_ADDCOS_...)."""

    EXPONENTIAL = 1


class Fir(IntEnum):
    """Kernels of fir (DSP_FIR_...)."""

    BANDPASS = 0
    BANDSTOP = 1
    HIGHPASS = 2
    LOWPASS = 3
    SINH = 4
    DELAYED_LOWPASS = 5
    DIFFERENTIATOR = 6
    GAUSSIAN = 7
    HILBERT = 8
    KAISER_SPECTRUM = 9
    RAMP = 10


class Fir2(IntEnum):
    """Sets of fir2 (DSP_FIR2_...)."""

    TAPS12 = 100
    TAPS20 = 101
    TAPS5 = 102


class Interp(IntFlag):
    """Schemes of interp, and the flag CLAMP: the ends are held outside (DSP_INTERP_...)."""

    HOLD = 0
    LINEAR = 1
    QUADRATIC = 3
    SPLINE = 5
    CLAMP = 16


class Spline(IntEnum):
    """Conditions at the ends of a spline (DSP_SPLINE_...)."""

    NOT_A_KNOT = 0
    CLAMPED = 1
    SECOND_DERIVATIVE = 2
    NATURAL = 3


class Format(IntEnum):
    """Display formats of a reflection trace (DSP_FORMAT_...)."""

    LEVEL = 0  # dB
    MAGNITUDE = 1
    PHASE = 2  # degrees
    SWR = 3
    RETURN_LOSS = 4  # dB


TUKEY = 24  # a window type without a name

Choice = Union[int, str]
Names = Union[Type[IntEnum], Type[IntFlag]]


def listed(choices: Iterable[object]) -> str:
    return ", ".join(str(choice).lower() for choice in choices)


def choose(names: Names, choice: Choice) -> int:
    """The value of a constant, or of its name; of several flags, `|` or a comma between them."""
    flags, members = issubclass(names, IntFlag), names.__members__
    if not isinstance(choice, str):
        if not hasattr(choice, "__index__") or (isinstance(choice, Enum) and not isinstance(choice, names)):
            raise TypeError(f"{names.__name__} takes a name or a value of its own, got {choice!r}")
        value, values = operator.index(choice), [int(member) for member in members.values()]
        if names is Window and value == TUKEY:
            return value
        known = value & ~functools.reduce(operator.or_, values) == 0 if flags else value in values
        if not known:
            raise ValueError(f"{names.__name__} has no value {value}, but {listed(members)}")
        return value
    text = choice.upper().replace("-", "_")
    value = 0
    for name in re.findall(r"\w+", text) if flags else [text]:
        if name not in members:
            raise ValueError(f"{names.__name__} has no {name.lower()!r}, but {listed(members)}")
        value |= members[name]
    return value
