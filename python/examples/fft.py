# %% The envelope and the frequency of a chirp, by its analytic signal; and its spectrum, of any length.
from pathlib import Path

import matplotlib.pyplot as plt
import numpy as np

import dsp

plt.style.use(Path(__file__).with_name("look.mplstyle"))

n, dx = 3000, 1e-3
t = np.arange(n) * dx
chirp = dsp.Signal(np.exp(-(((t - 1.5) / 0.6) ** 2)) * np.cos(2 * np.pi * (50 * t + 20 * t**2)), dx)

# %% Magnitude and phase of the analytic signal are envelope and phase; a turn a second is a hertz.
analytic = dsp.analytic(chirp)
envelope = dsp.mag(analytic)
frequency = dsp.scale(dsp.differ(dsp.unwrap(dsp.phase(analytic))), 1 / (2 * np.pi))
spectrum = dsp.mag(dsp.rdft(chirp))

_, (above, middle, below) = plt.subplots(3)
above.plot(chirp.axis(), chirp, lw=0.5, label="chirp")
above.plot(envelope.axis(), envelope, label="envelope")
above.set(xlabel="time (s)", ylabel="voltage (V)")
middle.plot(t[300:-300], frequency[300:-300], label="as measured")
middle.plot(t, 50 + 40 * t, "--", label="as made")
middle.set(xlabel="time (s)", ylabel="frequency (Hz)")
below.plot(spectrum.axis(), spectrum)
below.set(xlabel="frequency (Hz)", ylabel="amplitude (V)")
for axes in (above, middle):
    axes.legend(bbox_to_anchor=(1, 1))
plt.savefig("fft.png")
