"""Measurement signals: spectra and windows, filters, sample-rate conversion, statistics, interpolation, calibration.

    import numpy as np
    import dsp

    x = np.cos(2 * np.pi * 123.4 * np.arange(1024) * 1e-3)          # 1024 samples, 1 ms apart
    s = dsp.spectrum(x, "gausstop", dx=1e-3)
    print(f"{dsp.peak(s, 'gauss').place:.2f} Hz")                   # 123.40 Hz
    plt.plot(s.axis(), dsp.db(dsp.mag(s)))

Signals are arrays, lists or `Signal`s, arrays that know the spacing `dx` of their samples; results are `Signal`s. Real
and complex go by the dtype. Nothing changes its arguments, but for `out`. The names are those of dsp.h without their
prefixes, and the docstrings name the routine whose contract, in dsp.h, holds here, too. What it refuses raises `Error`.
Constants go by name: windows, and flags as in "raw, no_swap". Streams (`FirFilter`, `Resampler`, `Average`, ...) are
objects that are called block by block. `lib` has the routines as they are in C, for `Record`s and arrays.
"""

from ._c import Error, lib
from ._elementwise import *
from ._fft import *
from ._filter import *
from ._interp import *
from ._names import *
from ._resample import *
from ._rf import *
from ._signal import *
from ._spectrum import *
from ._stats import *
from ._trace import *
from ._window import *

__version__ = "2.5.0"
