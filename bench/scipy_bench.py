"""Routines called from Python beside NumPy's and SciPy's, all in this one process, the rounds interleaved at random.

usage: scipy_bench.py LIBRARY RESULTS [REPETITIONS]        LIBRARY is libdsp.so; RESULTS is written as the benchmark
programs write theirs. Rows of work `call` tell what a call from Python costs that has nothing to do.
"""

import ctypes
import itertools
import json
import os
import random
import sys
import time
from pathlib import Path

import numpy as np
import scipy.fft
import scipy.signal

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "python"))
os.environ["DSP_LIBRARY"] = sys.argv[1]
from dsp._c import Vec as Signal

MIN_TIME = 0.02


def view(x):
    """A record on the array's memory, whose size it may not exceed."""
    return Signal(1.0, x.ctypes.data, x.size * (2 if x.dtype == complex else 1), x.size, int(x.dtype == complex), 0)


def calls(dsp):
    empty, nothing = Signal(), np.empty(0)
    v = ctypes.byref(empty)
    yield "call", 0, "dsp", lambda: dsp.dspi_neg(v)
    yield "call", 0, "numpy", lambda: np.negative(nothing, out=nothing)


def functions(dsp, noise):
    """Each round starts from a copy of the same samples, on either side."""

    def decibels(y):
        np.log10(y, out=y)
        np.multiply(y, 20.0, out=y)

    works = [
        ("exp", lambda v: dsp.dspi_exp(v), lambda y: np.exp(y, out=y)),
        ("log", lambda v: dsp.dspi_log(v), lambda y: np.log(y, out=y)),
        ("db", lambda v: dsp.dspi_db(v, ctypes.c_double(20.0)), decibels),
    ]
    for n in (1000, 100000, 10000000):
        x, y = noise.uniform(0.5, 2.0, n), np.empty(n)
        record = view(y)
        for name, ours, theirs in works:
            yield name, n, "dsp", lambda x=x, y=y, v=record, f=ours: (np.copyto(y, x), f(ctypes.byref(v)))
            yield name, n, "numpy", lambda x=x, y=y, f=theirs: (np.copyto(y, x), f(y))
        z = noise.uniform(-1, 1, n) + 1j * noise.uniform(-1, 1, n)
        yield "magnitude", n, "dsp", lambda z=view(z), keep=z, v=record: dsp.dspu_mag(ctypes.byref(z), ctypes.byref(v))
        yield "magnitude", n, "numpy", lambda z=z, y=y: np.abs(z, out=y)


def windows(dsp):
    """Made anew and multiplied into a record; the symmetry and the scale are those that need nothing more."""
    coefficients = np.array([0.355768, -0.487396, 0.144232, -0.012604])
    sum_of_cosines = view(coefficients)
    flags = 2 | 32  # raw, halves not swapped

    def made(n, theirs):
        y = np.ones(n)

        def run():
            np.copyto(y, 1.0)
            np.multiply(y, theirs(n), out=y)

        return run

    def ours(n, routine, *arguments):
        y = np.ones(n)
        v = view(y)

        def run(keep=coefficients):
            np.copyto(y, 1.0)
            routine(ctypes.byref(v), *arguments)

        return run

    for n in (1024, 16384, 262144):
        yield "window, 4 cosines", n, "dsp", ours(n, dsp.dspi_window_cos, ctypes.byref(sum_of_cosines))
        yield "window, 4 cosines", n, "scipy", made(
            n, lambda n: scipy.signal.windows.general_cosine(n, np.abs(coefficients), sym=False)
        )
        yield "window, Kaiser", n, "dsp", ours(n, dsp.dspi_window_kaiser, ctypes.c_double(12.0), flags)
        yield "window, Kaiser", n, "scipy", made(n, lambda n: scipy.signal.windows.kaiser(n, 12.0, sym=False))
        yield "window, Gauss", n, "dsp", ours(n, dsp.dspi_window_gauss, ctypes.c_double(0.15), flags)
        yield "window, Gauss", n, "scipy", made(n, lambda n: scipy.signal.windows.gaussian(n, 0.15 * n, sym=False))


def spectra(dsp, noise):
    """A record windowed, transformed and taken into an average: with the window at hand, and by scipy.signal.welch."""
    hann = 2

    def ours(x):
        record, spectrum, average = view(x), Signal(), Signal()
        dsp.dsp_init(ctypes.byref(spectrum))
        dsp.dsp_init(ctypes.byref(average))
        count = 0

        def run(keep=x):
            nonlocal count
            count += 1
            dsp.dsph_fft(ctypes.byref(record), ctypes.byref(spectrum), 0, ctypes.c_double(1.0), hann, 0)
            dsp.dsph_avg(
                ctypes.byref(spectrum), ctypes.byref(average), None, 1, count, 0, ctypes.c_double(-1.0), ctypes.c_double(0)
            )

        return run

    def theirs(x):
        n = x.size
        window = scipy.signal.get_window("hann", n) * (4.0 / n)
        average = np.zeros(n // 2 + 1, dtype=complex)
        count = 0

        def run():
            nonlocal count
            count += 1
            spectrum = scipy.fft.rfft(x * window)
            spectrum -= average
            spectrum /= count
            np.add(average, spectrum, out=average)

        return run

    for bits in (10, 14, 18):
        n = 1 << bits
        x = noise.uniform(-1, 1, n)
        yield "spectrum", n, "dsp", ours(x)
        yield "spectrum", n, "scipy", theirs(x)
        yield "spectrum", n, "welch", lambda x=x: scipy.signal.welch(x, nperseg=x.size, detrend=False)


def transforms(dsp, noise):
    """Complex ones in place, beside SciPy's pocketfft, which may overwrite its input as well."""
    for n in (1000, 1200, 1920, 4095, 4800, 44100, 48000, 100000, 1000000):
        x = np.zeros(n, dtype=complex)
        record = view(x)
        yield "dft", n, "dsp", lambda record=record: dsp.dspi_dft(ctypes.byref(record), 0)
        yield "dft", n, "scipy", lambda x=x: scipy.fft.fft(x, norm="forward", overwrite_x=True)


def roots(dsp, noise):
    """All zeros of polynomials with random coefficients, twenty of a degree in turn."""
    for n in (10, 50, 200):
        polynomials = noise.standard_normal((20, n + 1))
        reverse = polynomials[:, ::-1].copy()
        room = np.empty(2 * n + 2)
        turn = itertools.cycle(range(20))

        def ours(n=n, polynomials=polynomials, room=room, turn=turn):
            room[: n + 1] = polynomials[next(turn)]
            record = Signal(1.0, room.ctypes.data, room.size, n + 1, 0, 0)
            dsp.dspi_proots(ctypes.byref(record))

        yield "roots", n, "dsp", ours
        yield "roots", n, "numpy", lambda reverse=reverse, turn=turn: np.roots(reverse[next(turn)])


def timed(run, count):
    start = time.thread_time()
    for _ in range(count):
        run()
    return time.thread_time() - start


def iterations(run):
    count = 1
    while (spent := timed(run, count)) < MIN_TIME:
        count = max(count + 1, int(count * min(10.0, 1.2 * MIN_TIME / max(spent, 1e-9))))
    return count


def main(library, results, repetitions=5):
    dsp = ctypes.CDLL(library)
    noise = np.random.default_rng(1)
    rows = [*calls(dsp), *functions(dsp, noise), *windows(dsp), *transforms(dsp, noise), *spectra(dsp, noise)]
    rows += roots(dsp, noise)
    counts = [iterations(run) for *_, run in rows]
    order = list(range(len(rows))) * int(repetitions)
    random.Random(1).shuffle(order)
    runs = []
    for i in order:
        work, size, peer, run = rows[i]
        runs.append(
            {
                "family_index": i,
                "per_family_instance_index": 0,
                "run_name": f"{work}/{size}/{peer}",
                "run_type": "iteration",
                "iterations": counts[i],
                "cpu_time": timed(run, counts[i]) / counts[i] * 1e9,
                "time_unit": "ns",
            }
        )
    with open(results, "w") as file:
        json.dump({"context": {"numpy": np.__version__, "scipy": scipy.__version__}, "benchmarks": runs}, file)


if __name__ == "__main__":
    main(*sys.argv[1:])
