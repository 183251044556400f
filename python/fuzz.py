"""Calls the package at random: hostile arguments, streams that fork and are pickled, records whose arrays outlive them.

    python3 python/fuzz.py [CALLS] [SEED]

No call may crash, change an argument, leave memory behind, or fail otherwise than by an exception that says what is
wrong. Prints how often what came, and exits with 1 at the first find, whose seed and number name it.
"""

import copy
import ctypes
import faulthandler
import functools
import gc
import inspect
import os
import pickle
import random
import resource
import sys
from collections import Counter
from pathlib import Path

import numpy as np

if "DSP_INSTALLED" not in os.environ:
    sys.path.insert(0, str(Path(__file__).resolve().parent))
import dsp  # noqa: E402
from dsp import _names  # noqa: E402

REFUSALS = (ValueError, TypeError, OverflowError, IndexError, np.linalg.LinAlgError)
HUGE = [2**31 - 1, 2**31, 2**40, -(2**31)]
INTEGERS = [-3, -1, 0, 1, 2, 3, 4, 5, 8, 9, 16, 17, 33, 64, 100, 257]
NUMBERS = [0.0, -0.0, 0.25, 0.5, 1.0, 2.0, 3.7, -1.5, 100.0, 1e-9, 1e100, 1e300, -1e300, np.inf, -np.inf, np.nan]
ENUMS = {
    "window": _names.Window, "mode": _names.Pad, "how": _names.Peak, "kind": _names.Fir, "format": _names.Format,
    "left": _names.Spline, "right": _names.Spline, "scale": _names.Wnd,
}  # fmt: skip
FUNCTIONS = [f for n, f in sorted(vars(dsp).items()) if inspect.isfunction(f) and n not in ("set_fpscr", "set_runfast")]
STREAMS = [
    dsp.FirFilter, dsp.SymmetricFir, dsp.HalfBandFilter, dsp.Decimator, dsp.Resampler, dsp.FractionalResampler,
    dsp.Average,
]  # fmt: skip
rng = random.Random()


def shape():
    n = rng.choice(INTEGERS[2:]) if rng.random() < 0.98 else rng.choice([1000, 2048, 4099])
    return rng.choice([(n,)] * 12 + [(3, n), (min(n, 9), 2), (2, 1, n), (0, n), (n, 0), ()])


def samples():
    size = shape()
    count = int(np.prod(size))
    array = np.frombuffer(rng.randbytes(16 * count), np.uint8).astype(float)[:count].reshape(size) - 128
    kind = rng.random()
    if size == ():
        return float(array)
    if kind < 0.4:
        array = array + 1j * np.roll(array, 1)
    elif kind < 0.5:
        array = np.sort(array + np.arange(count).reshape(size) * 1e-3, axis=-1)
    elif kind < 0.6:
        array = array.astype(rng.choice(["f4", "i2", ">f8", "?", "c8", "u8", "U3", "O"]))
    elif kind < 0.7 and count:
        array.flat[rng.randrange(count)] = rng.choice(NUMBERS)
    how = rng.random()
    if how < 0.1:
        return array.tolist()
    if how < 0.2:
        array.flags.writeable = False
    elif how < 0.3:
        return array[..., ::-1]
    elif how < 0.33:
        return np.ma.array(array, mask=rng.random() < 0.5)
    elif how < 0.35:
        return rng.choice([None, "text", 3.0, 1j, [[1.0], [2.0, 3.0]], {}, b"ab"])
    elif how < 0.5 and array.ndim and array.dtype.kind in "fc":
        return dsp.Signal(array, rng.choice(NUMBERS))
    return array


def choice(names):
    words = [rng.choice(list(names.__members__)).lower() for _ in range(rng.choice([1, 1, 2]))]
    return rng.choice([words[0]] * 4 + [", ".join(words), rng.choice(INTEGERS), "wrong", rng.choice(list(names))])


def argument(name, annotation, function):
    odd = rng.random()
    if odd < 0.01:
        return rng.choice([None, "text", 1j, [], object, *HUGE])
    if "Choice" in annotation:
        flags = {"spectrum": _names.Spectrum, "spectrum_dft": _names.Spectrum}.get(function, _names.Wnd)
        names = {"interp": _names.Interp, "fir2": _names.Fir2, "Average": _names.Avg}.get(
            function, ENUMS.get(name, flags)
        )
        return choice(names)
    if name in ("measured", "actual"):
        return [samples() for _ in range(rng.choice([3, 3, 3, 2]))]
    if "Samples" in annotation or "ArrayLike" in annotation:
        return rng.randrange(6) if name == "table" and rng.random() < 0.7 else samples()
    if name == "axis":
        return rng.choice([-1, -1, 0, 0, 1, 5])
    if name == "skip":
        return (rng.choice(INTEGERS), rng.choice(INTEGERS))
    if name == "ratio":
        return rng.choice([1.0, 1.5, 2.0, 3.3, 4.0, 7.7, *NUMBERS])
    if "bool" in annotation:
        return rng.random() < 0.5
    if "int" in annotation or annotation == "Any":
        return rng.choice(INTEGERS)
    return rng.choice(NUMBERS)


@functools.lru_cache(None)
def parameters_of(function):
    return inspect.signature(function).parameters


def arguments(function):
    given = {}
    for name, parameter in parameters_of(function).items():
        if parameter.default is not parameter.empty and rng.random() < 0.5 or name == "out":
            continue
        given[name] = argument(name, str(parameter.annotation), function.__name__)
    if "out" in parameters_of(function) and rng.random() < 0.3:
        given["out"] = rng.choice([np.zeros(getattr(given.get("x"), "shape", 3)), samples()])
    return given


def content(value):
    if isinstance(value, (list, tuple)):
        return [content(v) for v in value]
    return (value.shape, value.dtype, value.tobytes()) if isinstance(value, np.ndarray) else repr(value)


def touch(result):
    """Reads every sample of a result."""
    for part in result if isinstance(result, tuple) else (result,):
        if isinstance(part, np.ndarray):
            part.tobytes()


def call(function, given):
    """The result or the refusal, after a look at the arguments."""
    watched = {name: content(value) for name, value in given.items() if name != "out"}
    try:
        result = function(**given)
        touch(result)
    except REFUSALS as error:
        result = error
    except MemoryError as error:
        sizes = [abs(v) for v in given.values() if isinstance(v, (int, float))] + [1 / getattr(function, "step", 1.0)]
        if max(sizes) < 1e6:
            raise AssertionError(f"memory ran out for {given}") from error
        result = error
    for name, before in watched.items():
        assert content(given[name]) == before, f"{name} was changed"
    return result


def copied(thing):
    return rng.choice([copy.copy, copy.deepcopy, lambda t: pickle.loads(pickle.dumps(t))])(thing)


def stream_step(pool):
    if len(pool) < 20 or rng.random() < 0.05:
        kind = rng.choice(STREAMS)
        made = call(kind, arguments(kind))
        if not isinstance(made, Exception):
            pool[rng.randrange(20)] = made
        return made
    stream = rng.choice(list(pool.values()))
    if rng.random() < 0.1:
        stream.reset()
    block = dict(x=samples())
    if isinstance(stream, dsp.FractionalResampler) and rng.random() < 0.3:
        block["most"] = rng.choice(INTEGERS)
    fork = copied(stream) if rng.random() < 0.3 else None
    result = call(stream, block)
    if fork is not None:
        again = call(fork, block)
        assert isinstance(result, Exception) or content(again) == content(result), "a fork goes another way"
    return result


def record_step(pool, views):
    lib, r = dsp.lib, pool[rng.randrange(len(pool))]
    k = rng.randrange(len(pool))
    step = rng.randrange(10)
    if step == 0:
        pool[k] = call(dsp.Record.of if rng.random() < 0.5 else dsp.Record.copy, dict(samples=samples()))
        if isinstance(pool[k], Exception):
            pool[k] = dsp.Record()
    elif step == 1:
        pool[k] = copied(r)
    elif step in (2, 3):
        views[rng.randrange(len(views))] = r.signal() if rng.random() < 0.7 else np.asarray(r)
    elif step == 4:
        lib.dspi_zpad(r, rng.choice([5, 50, 5000]))
    elif step == 5:
        lib.dspi_shift(r, rng.choice(INTEGERS))
    elif step == 6:
        lib.dsp_destroy(r)
    elif step == 7:
        call(lambda r, s: lib.dspb_add(r, s, r), dict(r=r, s=pool[k]))
    elif step == 8:
        call(lambda r: lib.dspi_rdft(r), dict(r=r))
    else:
        for view in views:
            touch(view)


def resident():
    gc.collect()
    with open("/proc/self/statm") as file:
        return int(file.read().split()[1]) * resource.getpagesize() / 2**20


def main(calls=10000, seed=1):
    faulthandler.enable()
    np.seterr(all="ignore")
    resource.setrlimit(resource.RLIMIT_AS, (4 * 2**30, 4 * 2**30))
    streams, records, views, seen = {}, [dsp.Record() for _ in range(8)], [np.zeros(1)] * 8, Counter()
    held = None
    for k in range(calls):
        rng.seed(f"{seed} {k}")
        try:
            which = rng.random()
            if which < 0.7:
                function = rng.choice(FUNCTIONS)
                result = call(function, arguments(function))
            elif which < 0.9:
                result = stream_step(streams)
            else:
                result = record_step(records, views)
        except Exception:
            print(f"seed {seed}, call {k}", file=sys.stderr)
            raise
        seen[type(result).__name__] += 1
        if k == calls // 5:
            held = resident()
        if k % 100000 == 99999:
            print(f"{k + 1} calls, {resident():.0f} MB", flush=True)
    streams.clear(), records.clear(), views.clear()
    dsp.free_internal()
    if hasattr(ctypes.CDLL(None), "malloc_trim"):  # else the heap keeps what is free
        ctypes.CDLL(None).malloc_trim(0)
    print(dict(seen.most_common()), f"{resident() - (held or 0):+.0f} MB")


if __name__ == "__main__":
    main(*map(int, sys.argv[1:]))
