# %% A correction table of gain over frequency, brought to the bins of a spectrum.
from pathlib import Path

import matplotlib.pyplot as plt
import numpy as np

import dsp

plt.style.use(Path(__file__).with_name("look.mplstyle"))

frequencies = [0, 100, 300, 700, 1500, 3000, 6000]
gains = [1.00, 0.99, 0.97, 0.92, 0.80, 0.55, 0.25]
bins = np.arange(0, 8000, 40.0)

for mode in ("hold", "linear, clamp", "quadratic, clamp", "spline, clamp"):
    plt.plot(bins, dsp.interp(frequencies, gains, bins, mode), label=mode)

# %% A spline whose ends are known: flat at 0 Hz.
d2 = dsp.cspline_2d(frequencies, gains, dsp.End("clamped", 0.0), "natural")
plt.plot(bins, dsp.interp(frequencies, gains, bins, "spline, clamp", d2=d2), "--", label="spline, flat at 0")

plt.plot(frequencies, gains, "ok", label="table")
plt.xlabel("frequency (Hz)")
plt.ylabel("gain")
plt.legend(bbox_to_anchor=(1, 1))
plt.savefig("interp.png")
