"""Measurement signals: spectra and windows, filters, sample-rate conversion, statistics, interpolation, calibration.

    import numpy as np
    import dsp

    x = np.cos(2 * np.pi * 123.4 * np.arange(1024) * 1e-3)          # 1024 samples, 1 ms apart
    s = dsp.spectrum(x, "gausstop", dx=1e-3)
    print(f"{dsp.peak(s, 'gauss').place:.2f} Hz")                   # 123.40 Hz
    plt.plot(s.axis(), dsp.db(dsp.mag(s)))

Signals are arrays, lists or `Signal`s, arrays that know the spacing `dx` of their samples; results are `Signal`s. Real
and complex go by the dtype. Arrays of several dimensions hold a record in each row, along `axis`, the last one unless
said otherwise; two operands are broadcast. Nothing changes its arguments, but for `out`: an array of the kind and shape
of the operand, which takes the result. Docstrings in the source leave out what these parameters, `x`, `y`, `axis`, `dx`
and `out`, mean everywhere; help() shows it.

The names are those of dsp.h without their prefixes, and the docstrings name the routine whose contract, in dsp.h, holds
here, too. What a routine refuses raises `Error`, a ValueError that says why; a MemoryError means that memory ran out.
Constants go by name: windows, and flags as in "raw, no_swap". Streams (`FirFilter`, `Resampler`, `Average`, ...) are
objects that are called block by block, fork by `copy.copy` and can be pickled. `lib` has the routines as they are in C,
for `Record`s and arrays.

Threads may call everything, and take turns: the library serves one at a time, so that a call holds the interpreter's
lock until it is done. A server that must answer meanwhile gives long records to processes (`concurrent.futures` has
pools of them) or cuts them into blocks, which streams are for. A stream belongs to one thread at a time.
"""

from . import _docs
from ._arithmetic import *
from ._c import Error, lib
from ._calculus import *
from ._core import *
from ._fft import *
from ._filter import *
from ._fit import *
from ._function import *
from ._generator import *
from ._interp import *
from ._names import *
from ._order import *
from ._pair import *
from ._poly import *
from ._representation import *
from ._resample import *
from ._rf import *
from ._signal import *
from ._spectrum import *
from ._stats import *
from ._trace import *
from ._window import *

__version__ = "2.5.0"

_docs.explain_common_parameters(globals())
