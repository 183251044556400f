# %% A lowpass for a stream: designed, looked at, and run block by block.
from pathlib import Path

import matplotlib.pyplot as plt
import numpy as np

import dsp

plt.style.use(Path(__file__).with_name("look.mplstyle"))

# %% Ideal taps ripple at the edge; a window smooths that.
ideal = dsp.fir("lowpass", 101, 0.1)
taps = dsp.window_fir(ideal, "blackman")
taps = dsp.scale(taps, 1 / dsp.sum(taps))


def response(h):
    return dsp.db(dsp.mag(dsp.rfft(dsp.zpad(h, 4096))) * 4096)  # a transform is a mean, a gain a sum


# %% Steps and noise, in blocks of 100 samples; the filter goes on where the last block ended.
rng = np.random.default_rng(2)
signal = np.repeat([0.0, 1, -0.5, 0.5, 0], 200) + 0.2 * rng.normal(size=1000)
lowpass = dsp.FirFilter(taps)
filtered = np.concatenate([lowpass(block) for block in signal.reshape(10, 100)])

_, (above, below) = plt.subplots(2)
for h, name in ((ideal, "ideal"), (taps, "with a window")):
    above.plot(response(h).axis(), response(h), label=name)
above.set(xlabel="frequency (cycles per sample)", ylabel="gain (dB)", ylim=(-120, 5))
above.legend(bbox_to_anchor=(1, 1))
below.plot(signal, lw=0.5, label="signal")
below.plot(np.arange(1000) - 50, filtered, label="filtered")  # the taps' centre is 50 samples late
below.set(xlabel="time (samples)", ylabel="voltage (V)")
below.legend(bbox_to_anchor=(1, 1))
plt.savefig("filter.png")
