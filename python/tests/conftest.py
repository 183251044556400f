import os
import sys
from pathlib import Path

import pytest

os.environ["MPLBACKEND"] = "Agg"
tree = Path(__file__).resolve().parents[2]
if "DSP_INSTALLED" not in os.environ:  # else the package of this Python is tested
    sys.path.insert(0, str(tree / "python"))


@pytest.fixture(scope="session")
def root():
    return tree


@pytest.fixture(scope="session")
def header():
    return (tree / "dsp" / "dsp.h").read_text()
