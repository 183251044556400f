"""Windows. Halves are swapped after weighting, which brings the record's middle to sample 0, unless the flags say
"no_swap": `window(numpy.ones(n), "hann", "raw, no_swap")` are the bare samples.
"""

from __future__ import annotations

from typing import Optional

import numpy as np

from ._c import Error, lib, run
from ._call import changed
from ._names import Choice, Window, Wnd, choose
from ._signal import Out, Record, Samples, Signal, doubles

__all__ = [
    "window", "window_cos", "window_enbw", "window_fir", "window_gauss", "window_kaiser", "window_scale",
    "window_sinc", "window_tukey",
]  # fmt: skip


def _flags(flags: Choice, active: bool = False) -> int:
    value = choose(Wnd, flags)
    if value & Wnd.SCALE_MASK == Wnd.SCALE_MASK:
        raise ValueError("of the scales amplitude, power and raw a window has one")
    if value & Wnd.ACTIVE and not active:
        raise ValueError("say how many samples are active by `active`, not by a flag")
    return value


def _fitting(window: Choice, flags: Choice, active: Optional[float], routine: str) -> tuple[int, int]:
    """Type and flags, where the catalogue has such a window."""
    kind, value = choose(Window, window), _flags(flags, active is not None)
    summed = kind != Window.TRIANGULAR and kind <= Window.P601
    if value & Wnd.SYMMETRIC and (summed or kind == Window.TRIANGULAR):
        raise Error("Kaiser, Gauss, sinc lobe and Tukey windows alone are symmetric; the others have a period", routine)
    if active is not None and not summed:
        raise Error("windows that are sums of cosines alone have an active part, types 0 and 2 to 13", routine)
    if active is not None and not active > 0:
        raise Error(f"the active part of a window has more than 0 samples, got {active}", routine)
    return kind, value


def window(
    x: Samples,
    window: Choice,
    flags: Choice = Wnd.AMPLITUDE,
    *,
    active: Optional[float] = None,
    axis: int = -1,
    out: Out = None,
) -> Signal:
    """Multiplies a signal by a window of the catalogue (dspi_window, dspi_window2).

    Parameters
    ----------
    window : int or str
        The window, "hann", "flattop", ...: see `Window`.
    flags : int or str
        The scale, "amplitude" (mean 1), "power" (mean square 1) or "raw" (peak 1), and flags such as "no_swap": see
        `Wnd`.
    active : float, optional
        How many samples in the middle the window spans; it is 0 outside.

    Returns
    -------
    Signal
        x times the window.

    Raises
    ------
    Error
        If there is no such combination.
    ValueError
        If there is no such window or flag.

    Examples
    --------
    >>> dsp.window(np.ones(4), "hann", "raw, no_swap")
    Signal([0. , 0.5, 1. , 0.5], dx=1)
    """
    kind, chosen = _fitting(window, flags, active, "dspi_window")
    if active is None:
        return changed(lib.dspi_window, x, kind, chosen, axis=axis, out=out)
    return changed(lib.dspi_window2, x, kind, chosen | Wnd.ACTIVE, active, axis=axis, out=out)


def window_gauss(
    x: Samples,
    sigma: float,
    flags: Choice = Wnd.AMPLITUDE,
    *,
    axis: int = -1,
    out: Out = None,
) -> Signal:
    """Multiplies by a Gauss window (dspi_window_gauss).

    Parameters
    ----------
    sigma : float
        Standard deviation over the length.
    flags : int or str
        The scale, "amplitude" (mean 1), "power" (mean square 1) or "raw" (peak 1), and flags such as "no_swap": see
        `Wnd`.

    Returns
    -------
    Signal
        x times exp(-(d/(sigma n))^2/2), d samples from the centre.

    Raises
    ------
    ValueError
        If there is no such flag.

    Examples
    --------
    >>> dsp.window_gauss(np.ones(4), 0.25, "raw, no_swap").round(4)
    array([0.1353, 0.6065, 1.    , 0.6065])
    """
    return changed(lib.dspi_window_gauss, x, sigma, _flags(flags), axis=axis, out=out)


def window_kaiser(
    x: Samples,
    beta: float,
    flags: Choice = Wnd.AMPLITUDE,
    *,
    axis: int = -1,
    out: Out = None,
) -> Signal:
    """Multiplies by a Kaiser window (dspi_window_kaiser).

    Parameters
    ----------
    beta : float
        Its parameter: 0 is uniform, 10 has side lobes near -100 dB.
    flags : int or str
        The scale, "amplitude" (mean 1), "power" (mean square 1) or "raw" (peak 1), and flags such as "no_swap": see
        `Wnd`.

    Returns
    -------
    Signal
        x times the window.

    Raises
    ------
    ValueError
        If there is no such flag.

    Examples
    --------
    >>> dsp.window_kaiser(np.ones(4), 5.0, "raw, no_swap").round(4)
    array([0.0367, 0.5529, 1.    , 0.5529])
    """
    return changed(lib.dspi_window_kaiser, x, beta, _flags(flags), axis=axis, out=out)


def window_tukey(
    x: Samples,
    alpha: float,
    flags: Choice = Wnd.AMPLITUDE,
    *,
    axis: int = -1,
    out: Out = None,
) -> Signal:
    """Multiplies by a window that is flat but for tapers (dspi_window_tukey).

    Parameters
    ----------
    alpha : float
        The share of the tapers: 0 is uniform, 1 the Hann window.
    flags : int or str
        The scale, "amplitude" (mean 1), "power" (mean square 1) or "raw" (peak 1), and flags such as "no_swap": see
        `Wnd`.

    Returns
    -------
    Signal
        x times the window.

    Raises
    ------
    ValueError
        If there is no such flag.

    Examples
    --------
    >>> dsp.window_tukey(np.ones(8), 0.5, "raw, no_swap")
    Signal([0. , 0.5, 1. , 1. , 1. , 1. , 1. , 0.5], dx=1)
    """
    return changed(lib.dspi_window_tukey, x, alpha, _flags(flags), axis=axis, out=out)


def window_sinc(
    x: Samples,
    lobe: float = np.pi,
    peak: float = 1.0,
    flags: Choice = Wnd.AMPLITUDE,
    *,
    axis: int = -1,
    out: Out = None,
) -> Signal:
    """Multiplies by sin(t)/t (dspi_window_sinc).

    Parameters
    ----------
    lobe : float
        t at the ends; pi: the main lobe alone.
    peak : float
        The window at its centre.
    flags : int or str
        The scale, "amplitude" (mean 1), "power" (mean square 1) or "raw" (peak 1), and flags such as "no_swap": see
        `Wnd`.

    Returns
    -------
    Signal
        x times sin(t)/t, t = 2 lobe d/n, d samples from the centre.

    Raises
    ------
    ValueError
        If there is no such flag.

    Examples
    --------
    >>> dsp.window_sinc(np.ones(4), flags="raw, no_swap").round(4)
    array([0.    , 0.6366, 1.    , 0.6366])
    """
    return changed(lib.dspi_window_sinc, x, lobe, peak, _flags(flags), axis=axis, out=out)


def window_cos(x: Samples, coefficients: Samples, *, axis: int = -1, out: Out = None) -> Signal:
    """Multiplies by a sum of cosines, not scaled and not swapped (dspi_window_cos).

    Parameters
    ----------
    coefficients : array_like
        c[0], c[1], ...

    Returns
    -------
    Signal
        x times c[0] + c[1] cos(2 pi d/n) + c[2] cos(4 pi d/n) + ..., d samples from the centre.

    Raises
    ------
    Error
        If the coefficients are complex.

    Examples
    --------
    >>> dsp.window_cos(np.ones(4), [0.5, 0.5])
    Signal([0. , 0.5, 1. , 0.5], dx=1)
    """
    weights = doubles(coefficients)
    if weights.dtype.kind == "c":
        raise Error("window_cos takes real coefficients, got complex ones", "dspi_window_cos")
    return changed(lib.dspi_window_cos, x, Record.lent(weights), axis=axis, out=out)


def window_fir(taps: Samples, window: Choice, *, axis: int = -1, out: Out = None) -> Signal:
    """Multiplies filter taps by a window that is 0 at none of them (dspi_window_fir).

    Parameters
    ----------
    taps : array_like
        Taps of a filter.
    window : int or str
        The window, "hann", "flattop", ...: see `Window`.

    Returns
    -------
    Signal
        The taps times the window.

    Raises
    ------
    ValueError
        If there is no such window.

    Examples
    --------
    >>> dsp.window_fir(np.ones(3), "hann").round(4)
    array([0.25, 1.  , 0.25])
    """
    return changed(lib.dspi_window_fir, taps, choose(Window, window), axis=axis, out=out)


def window_scale(
    window: Choice,
    length: int,
    scale: Choice = Wnd.AMPLITUDE,
    *,
    active: Optional[float] = None,
) -> float:
    """The factor that undoes a raw window in a spectrum (dsp_window_scale, dsp_window2_scale).

    Parameters
    ----------
    window : int or str
        The window, "hann", "flattop", ...: see `Window`.
    length : int
        Number of samples.
    scale : int or str
        "amplitude" or "power".
    active : float, optional
        How many samples in the middle the window spans.

    Returns
    -------
    float
        1/mean of the window, or with "power" 1/root mean square.

    Raises
    ------
    Error
        If there is no such combination.
    ValueError
        If there is no such window or flag.

    Examples
    --------
    >>> dsp.window_scale("hann", 64)
    2.0
    """
    result = np.zeros(1)
    kind, chosen = _fitting(window, scale, active, "dsp_window_scale")
    if active is None:
        run(lib.dsp_window_scale, result, kind, chosen, length)
    else:
        run(lib.dsp_window2_scale, result, kind, chosen | Wnd.ACTIVE, length, active)
    return float(result[0])


def window_enbw(window: Choice, length: int, *, active: Optional[float] = None) -> float:
    """Equivalent noise bandwidth in bins (dsp_window_enbw, dsp_window2_enbw).

    Parameters
    ----------
    window : int or str
        The window, "hann", "flattop", ...: see `Window`.
    length : int
        Number of samples.
    active : float, optional
        How many samples in the middle the window spans.

    Returns
    -------
    float
        n sum(w^2)/sum(w)^2.

    Raises
    ------
    Error
        If there is no such combination.
    ValueError
        If there is no such window or flag.

    Examples
    --------
    >>> dsp.window_enbw("hann", 64)
    1.4999999999999998
    """
    result = np.zeros(1)
    kind, _ = _fitting(window, Wnd.AMPLITUDE, active, "dsp_window_enbw")
    if active is None:
        run(lib.dsp_window_enbw, result, kind, length)
    else:
        run(lib.dsp_window2_enbw, result, kind, length, active)
    return float(result[0])
