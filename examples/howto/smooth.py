"""A trace smoothed for the display: each point becomes the mean of the 21 around it."""
import numpy as np
import dsp


def noise(n, seed=1):  # from -0.5 to 0.5, evenly
    for _ in range(n):
        seed = (seed * 1664525 + 1013904223) % 2**32
        yield seed / 2**32 - 0.5


clean = -20 / (1 + ((np.arange(401) - 200) / 60) ** 2)  # a resonance
trace = clean + np.fromiter(noise(401), float)

smooth = dsp.smooth(trace, 21)
before, after = dsp.rms(trace - clean), dsp.rms(smooth - clean)
print(f"{len(smooth)} points, off by {before:.2f} dB before and {after:.2f} dB after")
