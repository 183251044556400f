"""A frequency between the bins: the lobe of the Gausstop window is a Gaussian, whose centre two samples determine."""
import dsp

v = dsp.cos(1024, 123.4567, dx=1e-3)  # in place of a recording

spectrum = dsp.spectrum(v, "gausstop")
nearest = dsp.peak(spectrum, "no_interp").place
refined = dsp.peak(spectrum, "gauss_corr").place
print(f"nearest bin {nearest:.4f} Hz, refined {refined:.4f} Hz")
