# %% From reflection points to a display: formats, smoothing, markers and pixels.
from pathlib import Path

import matplotlib.pyplot as plt
import numpy as np

import dsp

plt.style.use(Path(__file__).with_name("look.mplstyle"))

# %% An antenna: a resonance behind a cable, and noise.
f = dsp.expand_linear(401, 800e6, 1000e6)
rng = np.random.default_rng(5)
detuning = 60 * (f / 912e6 - 912e6 / f)
points = 1j * detuning / (2 + 1j * detuning) * np.exp(-2j * np.pi * f * 12e-9)
points = points + 0.01 * (rng.normal(size=401) + 1j * rng.normal(size=401))

level = dsp.format_buffer(dsp.smooth(points, 7), "level")
marker = dsp.find_min(level)
print(f"best at {f[marker] / 1e6:.1f} MHz: {level[marker]:.1f} dB, SWR {dsp.format_buffer(points, 'swr')[marker]:.2f}")
rows = dsp.scale_to_int(level, -40, 0, 479, 0)  # of a screen with 480

_, (above, middle, below) = plt.subplots(3)
above.plot(f / 1e6, dsp.format_buffer(points, "level"), lw=0.5, label="as measured")
above.plot(f / 1e6, level, label="smoothed")
above.plot(f[marker] / 1e6, level[marker], "v", label=f"{f[marker] / 1e6:.1f} MHz")
above.set(xlabel="frequency (MHz)", ylabel="reflection (dB)")
above.legend(bbox_to_anchor=(1, 1))
middle.plot(f / 1e6, dsp.unwrap_phase(points))
middle.set(xlabel="frequency (MHz)", ylabel="phase (rad)")
below.plot(rows, drawstyle="steps-mid")
below.invert_yaxis()
below.set(xlabel="column (pixels)", ylabel="row (pixels)")
plt.savefig("trace.png")
