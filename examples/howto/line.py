"""A straight line through readings, with the standard errors of its slope and intercept."""
import numpy as np
import dsp


def noise(n, seed=1):  # from -0.5 to 0.5, evenly
    for _ in range(n):
        seed = (seed * 1664525 + 1013904223) % 2**32
        yield seed / 2**32 - 0.5


x = 0.1 * np.arange(50)
y = 2 + 0.5 * x + 0.1 * np.fromiter(noise(50), float)

fit = dsp.lin_regres2(x + 1j * y)  # points, x and y as one complex number
print(f"slope {fit.slope:.4f} +- {np.sqrt(fit.slope_var):.4f}, "
      f"intercept {fit.intercept:.4f} +- {np.sqrt(fit.intercept_var):.4f}")
