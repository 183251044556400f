"""Averaging: the floor of one spectrum scatters by 6 dB, that of the mean of 100 by 0.4 dB, and shows a weak tone."""
import numpy as np
import dsp


def noise(n, seed=1):  # from -0.5 to 0.5, evenly
    for _ in range(n):
        seed = (seed * 1664525 + 1013904223) % 2**32
        yield seed / 2**32 - 0.5


def scatter(power):  # of the bins 200 to 499, in dB
    return dsp.pop_stddev(dsp.db(power[200:500], 10.0))


blocks = np.fromiter(noise(102400), float).reshape(100, 1024)
average = dsp.Average("mean, power")
for count, block in enumerate(blocks, 1):
    block = block + 0.05 * dsp.cos(1024, 123.0, count, dx=1e-3)  # a tone 12 dB below the noise
    power = average(dsp.spectrum(block, "hann", dx=1e-3))
    if count == 1:
        single = power.copy()
tone = dsp.peak(power).place
print(f"scatter {scatter(single):.1f} dB, averaged {scatter(power):.1f} dB; tone at {tone:.0f} Hz")
