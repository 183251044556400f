# %% A sensor's calibration curve, ohms over degrees, read backwards: which temperature gives 150 ohms?
from pathlib import Path

import matplotlib.pyplot as plt
import numpy as np

import dsp

plt.style.use(Path(__file__).with_name("look.mplstyle"))

curve = [100.0, 0.39083, -5.775e-5]  # R = 100 + 0.39083 t - 5.775e-5 t^2
temperatures = dsp.solve(curve, 150.0)  # two: the parabola is met again far outside the range
temperature = min(temperatures, key=abs)

t = np.linspace(-100, 300, 200)
_, (left, right) = plt.subplots(1, 2)
left.plot(t, np.polyval(curve[::-1], t))
left.plot(temperature, 150.0, "o", label=f"150 Ω at {temperature:.2f} °C")
left.set_xlabel("temperature (°C)")
left.set_ylabel("resistance (Ω)")
left.legend()

# %% The zeros of a moving sum of eleven samples: the frequencies that it suppresses.
zeros = np.asarray(dsp.roots(np.ones(11)))
turn = np.exp(2j * np.pi * np.arange(201) / 200)
right.plot(turn.real, turn.imag, label="unit circle")
right.plot(zeros.real, zeros.imag, "o", label="zeros")
right.set_xlabel("real part")
right.set_ylabel("imaginary part")
right.set_aspect("equal")
right.legend(loc="center")
plt.savefig("poly.png")
