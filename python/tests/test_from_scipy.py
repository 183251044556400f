"""Every row of docs/from-scipy.md: its three cells give the same numbers."""

import re
from pathlib import Path

import numpy as np
import pytest
from scipy import fft, interpolate, optimize, signal, special, stats

import dsp
from dsp._signal import Record

PAGE = Path(__file__).resolve().parents[2] / "docs" / "from-scipy.md"
ROWS = [line.replace(r"\|", "\0") for line in PAGE.read_text().splitlines() if line.startswith("| `")]


def variables():
    rng = np.random.default_rng(7)
    n, dt = 1000, 1e-3
    x, t = rng.normal(size=n), np.arange(n) * dt
    z = x + 1j * rng.normal(size=n)
    a, b = rng.normal(size=(2, 4, 4)) + 1j * rng.normal(size=(2, 4, 4))
    return dict(
        n=n, dt=dt, x=x, z=z, t=t, q=np.linspace(0.0005, 0.9985, 777), ones=np.ones(n), y=rng.uniform(0.5, 2, 40),
        p=np.angle(np.exp(1j * np.cumsum(x))), h=rng.normal(size=33), c=np.array([0.4, 0.3, 0.2, 0.1]),
        ref=x[100:300].copy(), g=1.5 - 2j + np.exp(1j * np.arange(100)) * rng.normal(3, 0.01, 100), a=a, b=b, value=np.zeros(1), trace=np.empty(n),
    )  # fmt: skip


def run_python(code):
    names = dict(
        variables(), np=np, fft=fft, interpolate=interpolate, optimize=optimize, signal=signal, special=special,
        stats=stats, dsp=dsp,
    )  # fmt: skip
    *statements, last = code.split("; ")
    for statement in statements:
        exec(statement, names)
    return eval(last, names)


def run_c(code, constants):
    """Calls the routines as the cell has them: `&name` is a signal, of that variable's samples or empty."""
    names = dict(variables(), **constants, **vars(dsp.lib), NULL=None)
    records = {name: Record.copy(names[name]) if name in names else Record() for name in re.findall(r"&(\w+)", code)}
    names.update((name, record.vec) for name, record in records.items())
    for statement in code.replace("&", "").split("; "):
        exec(statement, names)
    result = "out" if "out" in records else re.search(r"\(&?(\w+)", code).group(1)
    return records[result].signal() if result in records else names[result]


@pytest.fixture(scope="session")
def constants(header):
    return {name: int(value, 0) for name, value in re.findall(r"^  (DSP_\w+) = (\w+)", header, re.M)}


def test_page_has_its_rows():
    assert len(ROWS) > 60


@pytest.mark.parametrize("row", ROWS, ids=lambda row: row.split("`")[1])
def test_row(row, constants):
    theirs, in_c, in_python = (cell.strip().replace("\0", "|") for cell in row.split("|")[1:-1])
    expected = np.asarray(run_python(theirs.strip("`")))
    near = dict(rtol=1e-9, atol=1e-11 * np.abs(expected).max())
    np.testing.assert_allclose(run_python(in_python.strip("`")), expected, **near)
    if in_c.endswith("`"):
        np.testing.assert_allclose(np.reshape(run_c(in_c.strip("`"), constants), expected.shape), expected, **near)
