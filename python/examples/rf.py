# %% A reflectometer is calibrated with short, open and load, and its readings are corrected.
from pathlib import Path

import matplotlib.pyplot as plt
import numpy as np

import dsp

plt.style.use(Path(__file__).with_name("look.mplstyle"))

f = dsp.expand_log(201, 1e6, 1e9)

# %% What the instrument makes of a reflection; its owner does not know.
turn = np.exp(-2j * np.pi * f * 3e-10)
directivity, match, tracking = 0.1 * turn, 0.2 * turn**2, 0.8 * turn**3


def reading(a):
    return directivity + tracking * a / (1 - match * a)


# %% The open has a stray capacitance, which its data sheet gives.
stray = 2j * np.pi * f * 0.1e-12 * 50
short, opened, load = -np.ones(201), (1 - stray) / (1 + stray), np.zeros(201)
calibration = dsp.OnePort([reading(short), reading(opened), reading(load)], [short, opened, load])

# %% A device: 75 ohms at the end of a cable.
device = 0.2 * np.exp(-4j * np.pi * f * 5e-9)
measured = reading(device)
corrected = calibration.correct(measured)
print(f"off by {np.abs(measured - device).max():.3f} as read, {np.abs(corrected - device).max():.1e} corrected")

for a, name in ((measured, "as read"), (corrected, "corrected")):
    plt.semilogx(f, dsp.format_buffer(a, "level"), label=name)
plt.xlabel("frequency (Hz)")
plt.ylabel("reflection (dB)")
plt.legend(bbox_to_anchor=(1, 1))
plt.savefig("rf.png")
