/* The distortion of a tone: the power of its harmonics over its own, read under a flat-top window. */
#include <math.h>
#include <stdio.h>

#include "dsp/dsp.h"

int main(void) {
  dsp_vec v = {.dx = 1.0 / 48000, .length = 8192}, peak = {.dx = 1};
  double harmonics = 0;
  if (dsp_alloc(&v) || dspc_cos(&v, 1000.3, 0.0)) return 1;
  for (int32_t i = 0; i < v.length; ++i) { /* in place of a recording: a slightly non-linear amplifier */
    const double x = v.data[i];
    v.data[i] = x + 0.002 * x * x + 0.004 * x * x * x;
  }

  if (dsph_fft(&v, &v, 0, 1.0, DSP_WINDOW_FLATTOP, 0) || dspi_magsq(&v)) return 1;
  for (int32_t i = 0; i < 8; ++i) v.data[i] = 0; /* bins near 0 Hz are not harmonics */
  if (dsps_peak(&v, &peak, DSP_PEAK_PARABOLIC, 0)) return 1;
  const double place = peak.data[1], tone = v.data[lround(place)];
  for (int k = 2; k * place < v.length; ++k) harmonics += v.data[lround(k * place)];
  printf("distortion %.3f %%\n", 100 * sqrt(harmonics / tone));
  return dsp_destroy(&v) || dsp_destroy(&peak);
}
