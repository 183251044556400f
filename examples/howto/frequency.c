/* A frequency between the bins: the lobe of the Gausstop window is a Gaussian, whose centre two samples determine. */
#include <stdio.h>

#include "dsp/dsp.h"

int main(void) {
  dsp_vec v = {.dx = 1e-3, .length = 1024}, peak = {.dx = 1};
  if (dsp_alloc(&v) || dspc_cos(&v, 123.4567, 0.0)) return 1; /* in place of a recording */

  if (dsph_fft(&v, &v, 0, 1.0, DSP_WINDOW_GAUSSTOP, 0)) return 1;
  if (dsps_peak(&v, &peak, DSP_PEAK_NO_INTERP, 0)) return 1;
  printf("nearest bin %.4f Hz, ", peak.data[1] * v.dx);
  if (dsps_peak(&v, &peak, DSP_PEAK_GAUSS_CORR, 0)) return 1;
  printf("refined %.4f Hz\n", peak.data[1] * v.dx);
  return dsp_destroy(&v) || dsp_destroy(&peak);
}
