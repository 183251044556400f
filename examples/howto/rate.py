"""From 48 to 44.1 kHz, block by block. The converter contains the lowpasses that it needs."""
import numpy as np
import dsp

converter = dsp.Resampler(48.0 / 44.1)
blocks = [converter(dsp.cos(480, 1000.0, 2 * np.pi * 10 * block, dx=1 / 48000)) for block in range(100)]
out, dx = np.concatenate(blocks), blocks[0].dx

tone = dsp.peak(dsp.spectrum(out[:32768], "gausstop", dx=dx), "gauss").place
print(f"48000 samples became {len(out)}, {1 / dx:.0f} each second; the tone is at {tone:.2f} Hz")
