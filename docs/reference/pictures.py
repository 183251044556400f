"""Draws a picture for each program of examples/howto, of what the program itself computed.

usage: pictures.py SOURCES FOLDER
"""
import contextlib
import io
import runpy
import sys
from pathlib import Path

import matplotlib

matplotlib.use("Agg")
import matplotlib.pyplot as plt
import numpy as np

import dsp


def decibels(power):
    return 10 * np.log10(np.maximum(power, 1e-20))


def lines(x_label, y_label, *curves):
    for x, y, style, label in curves:
        plt.plot(x, y, style, label=label)
    plt.xlabel(x_label)
    plt.ylabel(y_label)
    if any(label for *_, label in curves):
        plt.legend()


def level(p):
    level = decibels(dsp.magsq(p.spectrum))[:200]
    lines("Hz", "dB", (p.spectrum.axis()[:200], level, "-", "flat-top"))
    plt.axhline(20 * np.log10(0.25), color="gray", lw=0.8)


def density(p):
    lines("Hz", "mV per root hertz", (p.density.axis(), 1e3 * np.sqrt(p.density), "-", ""))
    plt.ylim(0, 3)


def averaging(p):
    lines("Hz", "dB", (p.single.axis(), decibels(p.single), "-", "one spectrum"),
          (p.power.axis(), decibels(p.power), "-", "mean of 100"))


def distortion(p):
    lines("Hz", "dB", (p.power.axis()[:1100], decibels(p.power[:1100]), "-", ""))
    plt.ylim(-120, 5)


def frequency(p):
    near = slice(118, 136)
    lines("Hz", "dB", (p.spectrum.axis()[near], decibels(dsp.magsq(p.spectrum))[near], "o-", ""))
    plt.axvline(p.refined, color="gray", lw=0.8)


def filter(p):
    taps = dsp.window_fir(dsp.fir("lowpass", 101, 1000 / 48000), "hamming")
    response = np.abs(np.fft.rfft(taps, 8192)) ** 2
    lines("Hz", "dB", (np.fft.rfftfreq(8192, 1 / 48000)[:700], decibels(response[:700]), "-", ""))


def rate(p):
    lines("ms", "", (np.arange(80) * p.dx * 1e3, p.out[:80], "o-", "44.1 kHz"))


def oneport(p):
    for values, style, label in ((p.raw, "o", "raw"), (p.calibration.correct(p.raw), "x", "corrected")):
        plt.plot(values.real, values.imag, style, label=label)
    circle = np.exp(1j * np.linspace(0, 2 * np.pi, 200))
    lines("", "", (circle.real, circle.imag, "-", ""))
    plt.gca().set_aspect("equal")
    plt.legend()


def inverse(p):
    ohms = np.geomspace(680, 130000, 200)
    curve = dsp.cspline(dsp.log(p.ohms), p.celsius, dsp.log(ohms))
    lines("ohms", "degrees", (ohms, curve, "-", "spline"), (p.ohms, p.celsius, "o", "table"), (p.readings, p.found, "x", "readings"))
    plt.xscale("log")


def smooth(p):
    lines("point", "dB", (np.arange(401), p.trace, "-", "as measured"), (np.arange(401), p.smooth, "-", "smoothed"))


def line(p):
    lines("x", "y", (p.x, p.y, "o", "readings"), (p.x, p.fit.slope * p.x + p.fit.intercept, "-", "fit"))


class Names:
    def __init__(self, names):
        self.__dict__.update(names)


sources, folder = map(Path, sys.argv[1:])
folder.mkdir(parents=True, exist_ok=True)
plt.rcParams.update({"figure.figsize": (6.4, 3.2), "figure.dpi": 100, "axes.grid": True, "grid.alpha": 0.3,
                     "axes.spines.top": False, "axes.spines.right": False, "lines.linewidth": 1.2, "lines.markersize": 4})
for program in sorted(sources.glob("*.py")):
    with contextlib.redirect_stdout(io.StringIO()):
        names = Names(runpy.run_path(str(program)))
    plt.figure(layout="constrained")
    globals()[program.stem](names)
    plt.savefig(folder / f"howto_{program.stem}.png")
    plt.close()
