"""The calibration of a reflectometer with short, open and load, at three frequencies."""
import numpy as np
import dsp

e00, e11, e10e01 = np.array([0.1, 0.1j, -0.1]), np.array([0.2, -0.2, 0.2j]), np.array([0.8, 0.8j, -0.8])
device = 0.3 + 0.4j  # what is to be found


def reading(a):  # what the instrument makes of it
    return e00 + e10e01 * a / (1 - e11 * a)


standards = [np.full(3, -1.0), np.full(3, 1.0), np.zeros(3)]  # short, open, load
calibration = dsp.OnePort([reading(a) for a in standards], standards)
raw = reading(device)
for before, after in zip(raw, calibration.correct(raw)):
    print(f"raw {abs(before):.3f}, corrected {abs(after):.3f}")
