# %% From 48 kHz to 44.1 kHz, block by block: what becomes of a sweep, and of what lies too high.
from pathlib import Path

import matplotlib.pyplot as plt
import numpy as np

import dsp

plt.style.use(Path(__file__).with_name("look.mplstyle"))

before, after = 48000.0, 44100.0
t = np.arange(96000) / before
sweep = dsp.Signal(np.cos(2 * np.pi * 6000 * t**2), 1 / before)  # from 0 to 24 kHz in two seconds

converter = dsp.Resampler(before / after)
pieces = [converter(sweep[k : k + 1000]) for k in range(0, len(sweep), 1000)]
converted = dsp.Signal(np.concatenate(pieces), pieces[0].dx)
print(f"{len(sweep)} samples at {1 / sweep.dx:.0f} Hz, {len(converted)} at {1 / converted.dx:.0f} Hz")

_, axes = plt.subplots(2, sharex=True)
for axis, signal in zip(axes, (sweep, converted)):
    axis.specgram(signal, 512, 1 / signal.dx, vmin=-180, scale="dB")
    axis.set(ylabel="frequency (Hz)", title=f"{1 / signal.dx:.0f} samples a second")
    axis.grid(False)
axes[1].set_xlabel("time (s)")
plt.savefig("resample.png")
