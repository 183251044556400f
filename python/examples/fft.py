# %% The envelope and the frequency of a chirp, by its analytic signal; and its spectrum, of any length.
import matplotlib.pyplot as plt
import numpy as np

import dsp

n, dx = 3000, 1e-3
t = np.arange(n) * dx
chirp = dsp.Signal(np.exp(-(((t - 1.5) / 0.6) ** 2)) * np.cos(2 * np.pi * (50 * t + 20 * t**2)), dx)

# %% Magnitude and phase of the analytic signal are envelope and phase; a turn a second is a hertz.
analytic = dsp.analytic(chirp)
envelope = dsp.mag(analytic)
frequency = dsp.scale(dsp.differ(dsp.unwrap(dsp.phase(analytic))), 1 / (2 * np.pi))
spectrum = dsp.mag(dsp.rdft(chirp))

_, (above, middle, below) = plt.subplots(3, layout="constrained")
above.plot(chirp.axis(), chirp, envelope.axis(), envelope)
middle.plot(t[300:-300], frequency[300:-300], t, 50 + 40 * t, "--")
middle.set_ylabel("Hz")
below.plot(spectrum.axis(), spectrum)
below.set_xlabel("Hz")
plt.savefig("fft.png")
