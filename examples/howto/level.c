/* The level of a tone, wherever it lies between two bins: a flat-top window shows it right to 0.01 dB. */
#include <math.h>
#include <stdio.h>

#include "dsp/dsp.h"

int main(void) {
  dsp_vec v = {.dx = 1.0 / 48000, .length = 4096}, peak = {.dx = 1};
  if (dsp_alloc(&v) || dspc_cos(&v, 997.0, 0.3) || dspi_scale(&v, 0.25)) return 1; /* in place of a recording */

  if (dsph_fft(&v, &v, 0, 1.0, DSP_WINDOW_FLATTOP, 0)) return 1; /* a sine of amplitude A shows A */
  if (dsps_peak(&v, &peak, DSP_PEAK_NO_INTERP, 0)) return 1;     /* its square, for a complex spectrum */
  printf("amplitude %.3f V, level %.2f dB\n", sqrt(peak.data[0]), 10 * log10(peak.data[0]));
  return dsp_destroy(&v) || dsp_destroy(&peak);
}
