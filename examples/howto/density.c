/* The density of noise: power in each bin, over the width of the noise that a bin takes in. */
#include <math.h>
#include <stdint.h>
#include <stdio.h>

#include "dsp/dsp.h"

static double noise(uint32_t *seed) { /* from -0.5 to 0.5, evenly */
  *seed = *seed * 1664525u + 1013904223u;
  return *seed / 4294967296.0 - 0.5;
}

int main(void) {
  dsp_vec v = {.dx = 1.0 / 48000, .length = 1024}, spectrum = {.dx = 1}, average = {.dx = 1}, mean = {.dx = 1};
  uint32_t seed = 1;
  double bins;
  if (dsp_alloc(&v)) return 1;
  for (int32_t count = 1; count <= 100; ++count) {
    for (int32_t i = 0; i < v.length; ++i) v.data[i] = noise(&seed); /* in place of a recording, in volts */
    if (dsph_fft(&v, &spectrum, 0, 1.0, DSP_WINDOW_HANN, 0)) return 1;
    if (dsph_avg(&spectrum, &average, NULL, DSP_AVG_MEAN | DSP_AVG_POWER, count, 0, -1.0, 0.0)) return 1;
  }
  if (dsp_window_enbw(&bins, DSP_WINDOW_HANN, v.length)) return 1;
  if (dspi_scale(&average, 0.5 / (bins * average.dx))) return 1; /* A^2/2 is a sine's power; per hertz */

  if (dspu_subvec(&average, &mean, 10, 500) || dsps_mean(&mean, &mean)) return 1;
  printf("%.2f mV per root hertz\n", 1e3 * sqrt(mean.data[0]));
  return dsp_destroy(&v) || dsp_destroy(&spectrum) || dsp_destroy(&average) || dsp_destroy(&mean);
}
