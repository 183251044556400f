/* A straight line through readings, with the standard errors of its slope and intercept. */
#include <math.h>
#include <stdint.h>
#include <stdio.h>

#include "dsp/dsp.h"

static double noise(uint32_t *seed) { /* from -0.5 to 0.5, evenly */
  *seed = *seed * 1664525u + 1013904223u;
  return *seed / 4294967296.0 - 0.5;
}

int main(void) {
  dsp_vec points = {.dx = 1, .length = 50, .is_complex = 1}, fit = {.dx = 1};
  uint32_t seed = 1;
  if (dsp_alloc(&points)) return 1;
  for (int32_t i = 0; i < points.length; ++i) { /* x and y in turn */
    points.data[2 * i] = 0.1 * i;
    points.data[2 * i + 1] = 2 + 0.5 * points.data[2 * i] + 0.1 * noise(&seed);
  }

  if (dsps_lin_regres2(&points, &fit)) return 1;
  const double *f = fit.data; /* slope, intercept, and their variances at 3 and 4 */
  printf("slope %.4f +- %.4f, intercept %.4f +- %.4f\n", f[0], sqrt(f[3]), f[1], sqrt(f[4]));
  return dsp_destroy(&points) || dsp_destroy(&fit);
}
