# %% Phase noise and edges of a clock: generators, conversions, order, calculus.
import matplotlib.pyplot as plt
import numpy as np

import dsp

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

_, (above, below) = plt.subplots(2, layout="constrained")
above.plot(phase.axis() * 1e3, phase, label="by mixing")
above.plot(edges * 1e3, -jitter * 2 * np.pi * 51e3, ".", ms=2, label="by edges")
above.set(xlabel="ms", ylabel="rad")
above.legend()
below.hist(dsp.differ(jitter)[1:] * 1e9, 50)
below.set_xlabel("ns from period to period")
plt.savefig("elementwise.png")
