"""A stream through a lowpass, block by block: the state carries what the next block needs."""
import numpy as np
import dsp


def level_after(hertz):  # of a tone, in dB, in the last of 100 blocks
    taps = dsp.window_fir(dsp.fir("lowpass", 101, 1000 / 48000), "hamming")  # cycles per sample
    lowpass = dsp.FirFilter(taps)
    for block in range(100):
        out = lowpass(dsp.cos(480, hertz, 2 * np.pi * hertz * 0.01 * block, dx=1 / 48000))  # the next 10 ms
    return 20 * np.log10(dsp.rms(out) * np.sqrt(2))


print(f"800 Hz: {level_after(800):.2f} dB, 1 kHz: {level_after(1000):.2f} dB, 2 kHz: {level_after(2000):.0f} dB")
