"""Windows. Halves are swapped after weighing, which brings the record's middle to sample 0, unless the flags say
"no_swap": `window(numpy.ones(n), "hann", "raw, no_swap")` are the bare samples.
"""

from __future__ import annotations

from typing import Optional

import numpy as np

from ._c import lib
from ._names import Choice, Window, Wnd, choose
from ._signal import Record, Samples, Signal, changed

__all__ = [
    "window", "window_cos", "window_enbw", "window_fir", "window_gauss", "window_kaiser", "window_scale", "window_sinc",
    "window_tukey",
]  # fmt: skip

Out = Optional[np.ndarray]


def window(
    x: Samples, window: Choice, flags: Choice = Wnd.AMPLITUDE, *, active: Optional[float] = None, out: Out = None
) -> Signal:
    """x times a window of the catalogue, over its inner `active` samples if given (dspi_window, dspi_window2)."""
    kind, flags = choose(Window, window), choose(Wnd, flags)
    if active is None:
        return changed(lib.dspi_window, x, kind, flags, out=out)
    return changed(lib.dspi_window2, x, kind, flags | Wnd.ACTIVE, active, out=out)


def window_gauss(x: Samples, sigma: float, flags: Choice = Wnd.AMPLITUDE, *, out: Out = None) -> Signal:
    """x times exp(-(d/(sigma n))^2/2), d samples from the centre (dspi_window_gauss)."""
    return changed(lib.dspi_window_gauss, x, sigma, choose(Wnd, flags), out=out)


def window_kaiser(x: Samples, beta: float, flags: Choice = Wnd.AMPLITUDE, *, out: Out = None) -> Signal:
    """x times the Kaiser window of parameter beta (dspi_window_kaiser)."""
    return changed(lib.dspi_window_kaiser, x, beta, choose(Wnd, flags), out=out)


def window_tukey(x: Samples, alpha: float, flags: Choice = Wnd.AMPLITUDE, *, out: Out = None) -> Signal:
    """x times a window that is flat but for cosine tapers, the share `alpha` (dspi_window_tukey)."""
    return changed(lib.dspi_window_tukey, x, alpha, choose(Wnd, flags), out=out)


def window_sinc(
    x: Samples, lobe: float = np.pi, peak: float = 1.0, flags: Choice = Wnd.AMPLITUDE, *, out: Out = None
) -> Signal:
    """x times sin(t)/t, t = 2 lobe d/n, and `peak` at the centre (dspi_window_sinc)."""
    return changed(lib.dspi_window_sinc, x, lobe, peak, choose(Wnd, flags), out=out)


def window_cos(x: Samples, coefficients: Samples, *, out: Out = None) -> Signal:
    """x times c[0] + c[1] cos(2 pi d/n) + c[2] cos(4 pi d/n) + ..., not scaled, not swapped (dspi_window_cos)."""
    return changed(lib.dspi_window_cos, x, Record.of(coefficients), out=out)


def window_fir(taps: Samples, window: Choice, *, out: Out = None) -> Signal:
    """Filter taps times a window that leaves none without weight (dspi_window_fir)."""
    return changed(lib.dspi_window_fir, taps, choose(Window, window), out=out)


def window_scale(
    window: Choice, length: int, kind: Choice = Wnd.AMPLITUDE, *, active: Optional[float] = None
) -> float:
    """The factor that undoes a raw window in a spectrum: "amplitude" or "power" (dsp_window_scale)."""
    result, type, kind = np.zeros(1), choose(Window, window), choose(Wnd, kind)
    if active is None:
        lib.dsp_window_scale(result, type, kind, length)
    else:
        lib.dsp_window2_scale(result, type, kind | Wnd.ACTIVE, length, active)
    return float(result[0])


def window_enbw(window: Choice, length: int, *, active: Optional[float] = None) -> float:
    """Equivalent noise bandwidth in bins (dsp_window_enbw, dsp_window2_enbw)."""
    result, type = np.zeros(1), choose(Window, window)
    if active is None:
        lib.dsp_window_enbw(result, type, length)
    else:
        lib.dsp_window2_enbw(result, type, length, active)
    return float(result[0])
