import os
import sys
from pathlib import Path

import pytest

os.environ["MPLBACKEND"] = "Agg"
tree = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(tree / "python"))


@pytest.fixture(scope="session")
def root():
    return tree


@pytest.fixture(scope="session")
def header():
    return (tree / "dsp" / "dsp.h").read_text()
