/* Averaging: the floor of one spectrum scatters by 6 dB, that of the mean of 100 by 0.4 dB, and shows a weak tone. */
#include <stdint.h>
#include <stdio.h>

#include "dsp/dsp.h"

static double noise(uint32_t *seed) { /* from -0.5 to 0.5, evenly */
  *seed = *seed * 1664525u + 1013904223u;
  return *seed / 4294967296.0 - 0.5;
}

static double scatter(const dsp_vec *power) { /* of the bins 200 to 499, in dB */
  dsp_vec bins = {.dx = 1};
  if (dspu_subvec(power, &bins, 200, 300) || dspi_db(&bins, 10.0) || dsps_pop_stddev(&bins, &bins)) return -1;
  const double result = bins.data[0];
  dsp_destroy(&bins);
  return result;
}

int main(void) {
  dsp_vec v = {.dx = 1e-3, .length = 1024}, spectrum = {.dx = 1}, average = {.dx = 1}, peak = {.dx = 1};
  uint32_t seed = 1;
  double single = 0;
  if (dsp_alloc(&v)) return 1;
  for (int32_t count = 1; count <= 100; ++count) {
    if (dspc_cos(&v, 123.0, count) || dspi_scale(&v, 0.05)) return 1; /* a tone 12 dB below the noise */
    for (int32_t i = 0; i < v.length; ++i) v.data[i] += noise(&seed);
    if (dsph_fft(&v, &spectrum, 0, 1.0, DSP_WINDOW_HANN, 0)) return 1;
    if (dsph_avg(&spectrum, &average, NULL, DSP_AVG_MEAN | DSP_AVG_POWER, count, 0, -1.0, 0.0)) return 1;
    if (count == 1) single = scatter(&average);
  }
  if (dsps_peak(&average, &peak, DSP_PEAK_PARABOLIC, 0)) return 1;
  printf("scatter %.1f dB, averaged %.1f dB; tone at %.0f Hz\n", single, scatter(&average), peak.data[1] * average.dx);
  return dsp_destroy(&v) || dsp_destroy(&spectrum) || dsp_destroy(&average) || dsp_destroy(&peak);
}
