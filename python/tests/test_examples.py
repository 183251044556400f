"""Every example runs and draws something."""

import runpy
from pathlib import Path

import pytest

pyplot = pytest.importorskip("matplotlib.pyplot")
EXAMPLES = sorted((Path(__file__).resolve().parents[1] / "examples").glob("*.py"))


@pytest.mark.parametrize("path", EXAMPLES, ids=lambda path: path.stem)
def test_example(path, tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    runpy.run_path(str(path))
    panes = pyplot.gcf().axes
    lines = [line for axes in panes for line in axes.lines + axes.images]
    assert all(axes.get_ylabel() and (axes.get_xlabel() or axes in panes[:-1]) for axes in panes)
    pyplot.close("all")
    assert lines and (tmp_path / f"{path.stem}.png").stat().st_size > 10000


def test_every_family_has_one():
    families = {path.name for path in (EXAMPLES[0].parents[2] / "dsp").iterdir() if path.is_dir()}
    assert {path.stem for path in EXAMPLES} == families - {"core", "math", "simd"}
