# %% The averaged spectrum of a noisy recording, and what its lines are.
from pathlib import Path

import matplotlib.pyplot as plt
import numpy as np

import dsp

plt.style.use(Path(__file__).with_name("look.mplstyle"))

rng = np.random.default_rng(1)
dx = 1 / 48000  # seconds

# %% A tone, its second harmonic 60 dB below, a weak one beside it, and noise; in blocks, as an instrument has them.
t = np.arange(32 * 4096) * dx
recording = np.cos(2 * np.pi * 5000 * t) + 1e-3 * np.cos(2 * np.pi * 10000 * t) + 1e-4 * np.cos(2 * np.pi * 5200 * t)
recording += 1e-3 * rng.normal(size=len(t))
blocks = recording.reshape(32, 4096)

# %% Powers are averaged; the window with low side lobes tells the neighbours apart.
average = dsp.Average("mean, power")
for spectrum in dsp.spectrum(blocks, "blackman_harris4", dx=dx):  # a row each
    power = average(spectrum)
level = dsp.db(power, 10)

# %% The strongest line, refined between the bins.
line = dsp.peak(level)
print(f"{line.place:.1f} Hz, {line.value:.2f} dB")

plt.plot(level.axis() / 1e3, level, label=f"{len(blocks)} blocks")
bare = dsp.db(dsp.mag(dsp.spectrum(blocks[0], "uniform", dx=dx)))
plt.plot(bare.axis() / 1e3, bare, lw=0.5, zorder=0, label="one, no window")
plt.plot(line.place / 1e3, line.value, "v", label=f"{line.place:.1f} Hz")
plt.xlabel("frequency (kHz)")
plt.ylabel("level (dB of amplitude 1)")
plt.legend(bbox_to_anchor=(1, 1))
plt.savefig("spectrum.png")
