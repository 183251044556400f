# %% What windows do to a line: the spectra of some, between the bins as well.
from pathlib import Path

import matplotlib.pyplot as plt
import numpy as np

import dsp

plt.style.use(Path(__file__).with_name("look.mplstyle"))

n, finer = 64, 32  # samples of a window, points a bin

for name in ("uniform", "hann", "blackman_harris4", "flattop", "kaiser100"):
    window = dsp.window(np.ones(n), name, "amplitude, no_swap")
    response = dsp.dft(dsp.zpad(window, n * finer, "front, scaled"))
    bins = np.arange(12 * finer) / finer
    width = dsp.window_enbw(name, n)
    plt.plot(bins, dsp.db(dsp.mag(response))[: len(bins)], label=f"{name}: noise of {width:.2f} bins")
    print(f"{name:20} {width:.4f} bins, {20 * np.log10(abs(response[finer // 2])):7.3f} dB between two bins")

plt.ylim(-130, 5)
plt.xlabel("frequency (bins)")
plt.ylabel("level (dB)")
plt.legend(bbox_to_anchor=(1, 1))
plt.savefig("window.png")
