"""The density of noise: power in each bin, over the width of the noise that a bin takes in."""
import numpy as np
import dsp


def noise(n, seed=1):  # from -0.5 to 0.5, evenly
    for _ in range(n):
        seed = (seed * 1664525 + 1013904223) % 2**32
        yield seed / 2**32 - 0.5


blocks = np.fromiter(noise(102400), float).reshape(100, 1024)  # in place of a recording, in volts
average = dsp.Average("mean, power")
for block in blocks:
    power = average(dsp.spectrum(block, "hann", dx=1 / 48000))
bins = dsp.window_enbw("hann", 1024)
density = power * (0.5 / (bins * power.dx))  # A^2/2 is a sine's power; per hertz

print(f"{1e3 * np.sqrt(dsp.mean(density[10:510])):.2f} mV per root hertz")
