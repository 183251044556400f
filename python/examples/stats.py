# %% Is it noise, and how much? Levels, distribution and drift of readings.
import matplotlib.pyplot as plt
import numpy as np

import dsp

rng = np.random.default_rng(3)
readings = dsp.Signal(5 + 2e-4 * np.arange(2000) + 0.1 * rng.normal(size=2000), 0.5)  # two a second

# %% The drift first: the line, and how sure it is.
fit = dsp.lin_regres2(readings)
print(f"drift {fit.slope * 3600:.3f} +- {np.sqrt(fit.slope_var) * 3600:.3f} per hour")

# %% What is left, and its shape.
rest = readings - (fit.intercept + fit.slope * readings.axis())
sigma = dsp.samp_stddev(rest)
print(f"deviation {sigma:.4f}, skew {dsp.skew(rest):.2f}, excess {dsp.excess(rest):.2f}")
counts = dsp.hist(rest, -0.4, 0.02, 40)

_, (above, below) = plt.subplots(2, layout="constrained")
above.plot(readings.axis(), readings, lw=0.5)
above.axline((0, fit.intercept), slope=fit.slope, color="C1")
above.set_xlabel("s")
places = counts.axis() - 0.39
below.bar(places, counts, 0.018)
below.plot(places, 2000 * 0.02 * np.exp(-((places / sigma) ** 2) / 2) / (sigma * np.sqrt(2 * np.pi)), "C1")
plt.savefig("stats.png")
