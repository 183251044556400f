"""The level of a tone, wherever it lies between two bins: a flat-top window shows it right to 0.01 dB."""
import numpy as np
import dsp

v = 0.25 * dsp.cos(4096, 997.0, 0.3, dx=1 / 48000)  # in place of a recording

spectrum = dsp.spectrum(v, "flattop")  # a sine of amplitude A shows A
peak = dsp.max(dsp.magsq(spectrum))
print(f"amplitude {np.sqrt(peak):.3f} V, level {10 * np.log10(peak):.2f} dB")
