"""The table of routines and constants against the header, and how arrays go in and come out."""

import concurrent.futures
import copy
import ctypes
import doctest
import importlib
import inspect
import os
import pickle
import re
import shutil
import subprocess
import sys
from pathlib import Path

import numpy as np
import pytest

import dsp
from dsp import _c, _names
from dsp._signal import Record

LETTERS = {
    "dsp_vec *": "v", "int32_t": "i", "uint32_t": "u", "dsp_window_type": "i", "dsp_fir_type": "i",
    "dsp_fir2_type": "i", "double": "d", "float": "f", "double *": "D", "float *": "F", "int32_t *": "I",
    "dsp_window_type *": "I",
    "dsp_complex *": "z", "void *": "p", "char *": "s", "dsph_rsmp_coef *": "c", "dsph_rsmp_state *": "t",
    "dsp_alloc_fn": "a", "dsp_free_fn": "a", "dsp_realloc_fn": "r", "dsp_alloc_fn *": "A", "dsp_free_fn *": "A",
    "dsp_realloc_fn *": "R",
}  # fmt: skip


def code_of(header):
    return re.sub(r"/\*.*?\*/|//[^\n]*", "", header, flags=re.S)


def test_signatures_are_those_of_the_header(header):
    declared = {}
    for result, name, arguments in re.findall(r"DSP_API (\w+) (\w+)\(([^)]*)\)", code_of(header)):
        listed = [a.replace("const ", "") for a in arguments.split(",") if a.strip() != "void"]
        types = [re.sub(r"\w+$", "", a).strip() for a in listed]
        returned = {"int32_t": "", "uint32_t": "u:", "void": "void:"}[result]
        declared[name] = returned + "".join(LETTERS[t] for t in types)
    table = {name: re.sub("^i:", "", s) for s, names in _c.SIGNATURES.items() for name in names.split()}
    assert len(declared) > 170
    assert table == declared


def test_structures_are_those_of_the_header(header):
    kinds = {
        "double": ctypes.c_double, "double *": ctypes.c_void_p, "int32_t": ctypes.c_int32, "uint32_t": ctypes.c_uint32,
        "dsp_vec": _c.Vec, "dsp_vec *": ctypes.POINTER(_c.Vec),
    }  # fmt: skip
    for name, structure in (("dsp_vec", _c.Vec), ("dsph_rsmp_coef", _c.RsmpCoef), ("dsph_rsmp_state", _c.RsmpState)):
        body = re.search(r"typedef struct %s {(.*?)}" % name, code_of(header), re.S).group(1)
        fields = [(field, kinds[kind.strip()]) for kind, field in re.findall(r"(\w+ \*?)(\w+);", body)]
        assert structure._fields_ == fields


def test_constants_are_those_of_the_header(header):
    declared = {name: int(value, 0) for name, value in re.findall(r"^  (DSP_\w+) = (\w+)", header, re.M)}
    known = {
        f"DSP_{names.__name__.upper()}_{name}": int(value)
        for names in vars(_names).values()
        if inspect.isclass(names) and names.__module__ == _names.__name__
        for name, value in names.__members__.items()
    }
    assert known == declared
    number = np.zeros(1, np.int32)
    for name, value in dsp.Window.__members__.items():
        dsp.lib.dsp_window_from_str(name.encode(), number)
        assert number[0] == value == _names.choose(dsp.Window, name.lower().replace("_", "-"))


def test_friendly_layer_reaches_every_routine(root):
    in_c_only = """
        dsp_lib_init dsp_init dsp_alloc dsp_realloc dsp_lib_alloc dsp_lib_realloc dsp_lib_free dsp_copy_at_most
        dspi_mag dspi_magsq dspu_sqrt dspi_zpad dspi_unwrap cf_dspi_fft cf_dsph_fft dsp_window_from_str
        dsp_window_to_str dsph_corr dspd_rsmp2 dspi_hwfilt vfpdbMul1 vfpdbMul2 vfpsbMul2 vfpdb_ScaleToInt2"""
    source = "".join(p.read_text() for p in (root / "python/dsp").glob("_*.py") if p.name != "_c.py")
    missing = {n for names in _c.SIGNATURES.values() for n in names.split() if not re.search(r"lib\.%s\b" % n, source)}
    assert missing == set(in_c_only.split())


def test_a_signal_is_an_array_that_keeps_its_spacing():
    s = dsp.Signal([1, 2, 3, 4, 5], 0.5)
    assert s.dtype == np.float64 and (s * 2).dx == s[1:].dx == s.copy().dx == 0.5
    assert s[::2].dx == 1.0 and s[::-1].dx == 0.5
    assert type(s.sum()) is np.float64 and type(s[0]) is np.float64
    assert list(s.axis()) == [0, 0.5, 1, 1.5, 2] and list(s.axis(centred=True)) == [-1, -0.5, 0, 0.5, 1]
    for again in (pickle.loads(pickle.dumps(s)), copy.deepcopy(s), copy.copy(s)):
        assert again.dx == 0.5 and list(again) == list(s) and not np.shares_memory(again, s)
    rows = dsp.Signal(np.zeros((3, 4, 5)), 0.5)
    spacings = [rows[0].dx, rows[..., ::2].dx, rows[:, ::2].dx, rows[1, 2, ::3].dx, rows[..., 1].dx, rows[None, 1:].dx]
    spacings += [rows[None, ::2].dx, rows[0, ..., None].dx]
    assert spacings == [0.5, 1, 0.5, 1.5, 1, 0.5, 0.5, 0.5] and len(rows.axis()) == 5
    assert repr(s[:2]) == "Signal([1., 2.], dx=0.5)" and np.outer(s, s).shape == (5, 5)
    memory = np.zeros(4, complex)
    assert np.shares_memory(dsp.Signal(memory), memory)
    for wrong, error in ((["a"], TypeError), (3.0, ValueError), (np.ma.array([1, 2], mask=[0, 1]), ValueError)):
        with pytest.raises(error):
            dsp.Signal(wrong)


@pytest.mark.parametrize("kind", [np.int16, np.float32, np.float64, ">f8", np.complex64, np.complex128, bool])
@pytest.mark.parametrize("layout", ["plain", "strided", "backwards", "unaligned", "read-only", "list"])
def test_any_array_goes_in_and_stays_as_it_was(kind, layout):
    memory = np.arange(24) % 5 - 2 * (kind is not bool)
    x = memory.astype(kind)
    if layout == "strided":
        x = x[::3]
    elif layout == "backwards":
        x = x[::-1]
    elif layout == "unaligned":
        x = np.frombuffer(b"?" + x.tobytes(), x.dtype, offset=1)
    elif layout == "read-only":
        x.flags.writeable = False
    elif layout == "list":
        x = x.tolist()
    before = np.array(x)
    expected = (before - 1.0) if before.dtype.kind != "b" else before.astype(float) - 1
    np.testing.assert_array_equal(dsp.offset(x, -1), expected)
    np.testing.assert_array_equal(dsp.add(x, x), 2.0 * before)
    np.testing.assert_array_equal(x, before)
    assert dsp.offset(x, 1).dtype == (np.complex128 if before.dtype.kind == "c" else np.float64)


def test_out_takes_the_result():
    x = np.linspace(1, 2, 5)
    expected = np.exp(x)
    for out in (np.zeros(5), dsp.Signal(np.zeros(5)), x):
        result = dsp.exp(x, out=out)
        assert np.shares_memory(result, out)
        np.testing.assert_allclose(out, expected, rtol=1e-15)
    signal = dsp.Signal(np.ones(4), 0.5)
    assert dsp.zero(signal, out=signal) is signal and not signal.any() and signal.dx == 0.5
    frozen = np.zeros(5)
    frozen.flags.writeable = False
    for out in (np.zeros(4), np.zeros(5, complex), np.zeros(5, np.float32), np.zeros(10)[::2], frozen):
        with pytest.raises(ValueError):
            dsp.neg(x, out=out)
    with pytest.raises(ValueError):
        dsp.timesi(x, out=np.zeros(5))


def test_results_live_as_long_as_they_are_looked_at():
    tail = dsp.rev(np.arange(100000.0))[-10:]
    others = [dsp.zpad(np.ones(10), 100000) for _ in range(20)]
    np.testing.assert_array_equal(tail, np.arange(9.0, -1, -1))
    assert isinstance(tail.base.base.base, Record) and len(others) == 20
    assert dsp.edge(np.arange(100000.0), 5.0).base.base is None


def test_records_leave_their_memory_to_those_who_look_at_it():
    for change in (lambda r: dsp.lib.dsp_destroy(r), lambda r: dsp.lib.dspi_zpad(r, 100000), lambda r: None):
        for record in (Record.copy(np.arange(100.0)), Record.of(np.arange(100.0))):
            views = [record.signal(), np.asarray(record)]
            change(record)
            views.append(record.signal())
            del record
            others = [dsp.zpad(np.ones(10), 100) for _ in range(50)]
            assert all(list(v) == list(range(100)) for v in views[:2]) and len(others) == 50
    frozen = b"\0" * 80
    dsp.lib.dspi_offset(Record.of(np.frombuffer(frozen)), 1.0)
    assert not any(frozen)
    record = Record.copy([1.0, 2.0], 0.5)
    for twin in (copy.copy(record), copy.deepcopy(record), pickle.loads(pickle.dumps(record))):
        dsp.lib.dspi_neg(twin)
        assert list(twin.signal()) == [-1, -2] and list(record.signal()) == [1, 2] and twin.signal().dx == 0.5
    assert pickle.loads(pickle.dumps(Record.sized(7, 2.0))).vec.length == 7


def test_docstrings_are_whole_and_their_examples_run():
    modules = [importlib.import_module(f"dsp.{path.stem}") for path in Path(dsp.__file__).parent.glob("_[a-z]*.py")]
    for module in modules:
        ran = doctest.testmod(module, extraglobs=dict(np=np, dsp=dsp, copy=copy))
        assert not ran.failed, module
    for name, thing in vars(dsp).items():
        if inspect.isfunction(thing):
            for parameter in inspect.signature(thing).parameters:
                assert re.search(rf"^{parameter} : ", inspect.getdoc(thing), re.M), (name, parameter)
            assert ">>> " in thing.__doc__, name


def test_types(root, tmp_path):
    pytest.importorskip("mypy")
    (tmp_path / "use.py").write_text(
        "import dsp\nm: float = dsp.mean([1.0])\ns: dsp.Signal = dsp.rfft([1.0, 2.0])[1:]\n"
        "p: tuple[float, float] = dsp.peak(s)[:2]\ndsp.mean()\n"
    )
    command = [
        "-m",
        "mypy",
        "--strict",
        "--cache-dir",
        str(tmp_path),
        str(root / "python/dsp"),
        str(tmp_path / "use.py"),
    ]
    ran = subprocess.run([sys.executable, *command], capture_output=True, text=True, cwd=root / "python")
    assert re.findall(r"use.py:(\d): error|(?:dsp/.*error.*)", ran.stdout) == ["5"], ran.stdout


def test_random_calls_are_answered_or_refused(root):
    ran = subprocess.run(
        [sys.executable, "-W", "ignore", root / "python/fuzz.py", "5000"], capture_output=True, text=True
    )
    assert ran.returncode == 0, ran.stderr


def test_memory_comes_back():
    status = re.compile(r"VmRSS:\s+(\d+)")
    if not os.path.exists("/proc/self/status"):
        pytest.skip("no measure of memory here")

    def resident():
        with open("/proc/self/status") as file:
            return int(status.search(file.read()).group(1))

    def work():
        x = np.ones(2**17)
        average = dsp.Average()
        resampler = dsp.Resampler(3.3)
        for _ in range(3):
            average(dsp.fft(x))
            resampler(dsp.addcos(x, 0.1))
            dsp.FirFilter(np.ones(50))(x)

    work()
    before = resident()
    for _ in range(20):
        work()
    assert resident() - before < 20000  # kB; each round asks for 30 MB


def test_threads_take_turns():
    x = np.random.default_rng(1).normal(size=3000)

    def work(n):
        return [dsp.magsq_sum(dsp.dft(x[:n])), dsp.rms(dsp.window(x[:n], "hann")), dsp.sum(dsp.FirFilter(x[:n])(x))]

    lengths = [1000 + 7 * k for k in range(40)]
    with concurrent.futures.ThreadPoolExecutor(8) as pool:
        assert list(pool.map(work, lengths)) == [work(n) for n in lengths]


def test_what_cannot_be_is_told():
    with pytest.raises(
        ValueError, match="rfft takes a power of two of samples, got 3; rdft takes any length"
    ) as caught:
        dsp.rfft(np.ones(3))
    for error in (caught.value, pickle.loads(pickle.dumps(caught.value))):
        assert error.routine == "dspi_rfft" and "got 3" in str(error)
    for error, call in (
        (dsp.Error, lambda: dsp.mul([1.0, 2, 3], [1.0, 2.0])),
        (dsp.Error, lambda: dsp.asin([1j])),
        (dsp.Error, lambda: dsp.fir("highpass", 10, 0.1)),
        (dsp.Error, lambda: dsp.smooth(np.ones(9), 4)),
        (dsp.Error, lambda: dsp.interp([0.0, 1, 1], [1.0, 2, 3], [0.5])),
        (dsp.Error, lambda: dsp.corr([1.0, 2], [1.0, 2], 3)),
        (dsp.Error, lambda: dsp.window(np.ones(4), "hann", "symmetric")),
        (dsp.Error, lambda: dsp.Resampler(np.nan)),
        (dsp.Error, lambda: dsp.find_max(np.ones(4), skip=(0, 4))),
        (dsp.Error, lambda: dsp.lib.dspi_fft(Record.of(np.ones(3)), 0)),
        (ValueError, lambda: dsp.FractionalResampler(1.5, 9)),
        (ValueError, lambda: dsp.FractionalResampler(1.5, [3.0, 1, 2, 3, 4, 5])),
        (ValueError, lambda: dsp.spectrum(np.ones(4), 25)),
        (ValueError, lambda: dsp.window(np.ones(4), "hann", 64)),
        (ValueError, lambda: dsp.peak(np.ones(4), 0x700)),
        (ValueError, lambda: dsp.zpad(np.ones(4), 8, 3)),
        (ValueError, lambda: dsp.edge([[0.0, 1, 0, 1], [0.0, 1, 1, 1]], 0.5)),
        (ValueError, lambda: dsp.rfft(np.ones(4), axis=1)),
        (TypeError, lambda: dsp.neg([1.0], out=[0.0])),
        (TypeError, lambda: dsp.mean(np.ones((2, 2)), axis=None)),
        (TypeError, lambda: dsp.rdft(np.ones(4), dx="1")),
        (TypeError, lambda: dsp.spectrum(np.ones(4), dsp.Fir.RAMP)),
        (TypeError, lambda: dsp.spectrum(np.ones(4), 2.0)),
        (TypeError, lambda: dsp.shift([1.0], 0.5)),
        (TypeError, lambda: dsp.scale([1.0], "2")),
        (TypeError, lambda: dsp.lib.vfpdbMul1(2.0, [1.0], 1)),
        (TypeError, lambda: dsp.lib.dspi_shift(Record(), 2**31)),
        (TypeError, lambda: dsp.find_max(np.ones(4, complex))),
        (TypeError, lambda: dsp.smooth(np.ones(4, complex), 3, phase=True)),
        (ValueError, lambda: dsp.FractionalResampler(0.0)(np.ones(4))),
        (OverflowError, lambda: dsp.cos(2**31, 0.1)),
        (ValueError, lambda: dsp.window(np.ones(4), "hanning")),
        (ValueError, lambda: dsp.window(np.ones(4), "hann", "raw, wrong")),
        (ValueError, lambda: dsp.fir("lowpass|ramp", 3)),
        (IndexError, lambda: dsp.find_max(np.ones(4), 0, 5)),
        (ValueError, lambda: dsp.expand_log(4, 0, 1)),
        (np.linalg.LinAlgError, lambda: dsp.invert(np.zeros((2, 2)))),
        (ValueError, lambda: dsp.invert(np.zeros((2, 3)))),
        (ValueError, lambda: dsp.matrix_mult(np.eye(2), np.eye(3))),
        (ValueError, lambda: dsp.matrix_mult(np.ones((2, 3)), np.ones((3, 2)))),
    ):  # fmt: skip
        with pytest.raises(error):
            call()


def test_the_library_is_found_or_named(root, tmp_path):
    def run(code, **environment):
        inherited = {k: v for k, v in os.environ.items() if k != "DSP_LIBRARY"}
        inherited["PYTHONPATH"] = str(root / "python")
        command = [sys.executable, "-c", code]
        return subprocess.run(command, env={**inherited, **environment}, capture_output=True, text=True)

    missing = run("import dsp", DSP_LIBRARY=str(tmp_path / "none.so"))
    assert missing.returncode == 1 and "ImportError" in missing.stderr and "none.so" in missing.stderr
    strange = run("import dsp", DSP_LIBRARY=ctypes.util.find_library("m") or "libm.so.6")
    assert strange.returncode == 1 and "ImportError" in strange.stderr
    shutil.copytree(root / "python" / "dsp", tmp_path / "dsp")
    shutil.copy(next(_c.candidates()), tmp_path / "dsp" / "libdsp.so.2")
    beside = run("import dsp; print(next(dsp._c.candidates()), *dsp.version())", PYTHONPATH=str(tmp_path))
    assert beside.stdout.split() == [str(tmp_path / "dsp" / "libdsp.so.2"), *map(str, dsp.version())]


@pytest.mark.parametrize("path", ["README.md", "python/dsp/__init__.py"])
def test_first_programs_run(root, path, capsys):
    text = (root / path).read_text()
    if path.endswith(".md"):
        program = re.search(r"```python\n(.*?)```", text, re.S).group(1)
    else:
        program = "\n".join(re.findall(r"^    (.*)", text, re.M))
    exec(program, {"plt": pytest.importorskip("matplotlib.pyplot")})
    assert "123.40" in capsys.readouterr().out


def test_hooks_and_modes():
    seen = []

    @_c.AllocHook
    def refuse(vec):
        seen.append(vec.contents.length)
        vec.contents.data = None

    dsp.lib.dsp_lib_alloc(refuse, None)
    try:
        with pytest.raises(MemoryError, match="dspc_cos"):
            dsp.cos(100, 0.1)
    finally:
        dsp.lib.dsp_lib_alloc(_c.AllocHook(), None)
    assert seen == [100] and len(dsp.cos(100, 0.1)) == 100
    modes = dsp.get_fpscr()
    try:
        assert dsp.set_runfast(True) >> 24 & 3 == 3 and dsp.get_fpscr() >> 24 & 3 == 3
    finally:
        dsp.set_fpscr(modes)
    dsp.free_internal()
