"""The distortion of a tone: the power of its harmonics over its own, read under a flat-top window."""
import numpy as np
import dsp

x = dsp.cos(8192, 1000.3, dx=1 / 48000)
v = x + 0.002 * x**2 + 0.004 * x**3  # in place of a recording: a slightly non-linear amplifier

power = dsp.magsq(dsp.spectrum(v, "flattop"))
power[:8] = 0  # bins near 0 Hz are not harmonics
place = dsp.peak(power).position
tone = power[round(place)]
harmonics = sum(power[round(k * place)] for k in range(2, int(len(power) / place) + 1) if round(k * place) < len(power))
print(f"distortion {100 * np.sqrt(harmonics / tone):.3f} %")
