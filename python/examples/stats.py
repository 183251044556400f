# %% Is it noise, and how much? Levels, distribution and drift of readings.
from pathlib import Path

import matplotlib.pyplot as plt
import numpy as np

import dsp

plt.style.use(Path(__file__).with_name("look.mplstyle"))

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

_, (above, below) = plt.subplots(2)
above.plot(readings.axis(), readings, lw=0.5, label="readings")
above.axline((0, fit.intercept), slope=fit.slope, color="C1", label="drift")
above.set(xlabel="time (s)", ylabel="voltage (V)")
places = counts.axis() - 0.39
below.bar(places, counts, 0.018, label="what is left")
below.plot(
    places,
    2000 * 0.02 * np.exp(-((places / sigma) ** 2) / 2) / (sigma * np.sqrt(2 * np.pi)),
    "C1",
    label="a normal one",
)
below.set(xlabel="distance from the line (V)", ylabel="readings")
for axes in (above, below):
    axes.legend(bbox_to_anchor=(1, 1))
plt.savefig("stats.png")
