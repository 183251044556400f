# %% Phase noise and edges of a clock: generators, conversions, order, calculus.
from pathlib import Path

import matplotlib.pyplot as plt
import numpy as np

import dsp

plt.style.use(Path(__file__).with_name("look.mplstyle"))

rng = np.random.default_rng(4)
dx = 1e-6

# %% A carrier whose phase wanders, mixed down by its nominal frequency.
wander = dsp.integ(rng.normal(size=20000) * 50, dx=dx)
carrier = dsp.mul(dsp.cexp(20000, 51e3, dx=dx), dsp.ptor(dsp.ritoc(np.ones(20000), wander)))
down = dsp.conj_mul(carrier, dsp.cexp(20000, 51e3, dx=dx))
phase = dsp.unwrap(dsp.phase(down))

# %% The same from the edges alone: each comes late or early.
edges = dsp.edge(dsp.real(carrier))
jitter = edges - np.arange(len(edges)) / 51e3 - 0.75 / 51e3

_, (above, below) = plt.subplots(2)
above.plot(phase.axis() * 1e3, phase, label="by mixing")
above.plot(edges * 1e3, -jitter * 2 * np.pi * 51e3, ".", ms=2, label="by edges")
above.set(xlabel="time (ms)", ylabel="phase (rad)")
above.legend(bbox_to_anchor=(1, 1))
below.hist(dsp.differ(jitter)[1:] * 1e9, 50)
below.set(xlabel="change from period to period (ns)", ylabel="periods")
plt.savefig("elementwise.png")
