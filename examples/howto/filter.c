/* A stream through a lowpass, block by block: the state carries what the next block needs. */
#include <math.h>
#include <stdio.h>

#include "dsp/dsp.h"

static double level_after(double hertz) { /* of a tone, in dB, in the last of 100 blocks */
  dsp_vec taps = {.dx = 1, .length = 101}, in = {.dx = 1.0 / 48000, .length = 480}, out = {.dx = 1};
  dsp_vec state = {.dx = 1}, level = {.dx = 1};
  if (dsp_alloc(&in) || dspc_fir(&taps, DSP_FIR_LOWPASS, 1000.0 / 48000, 0.0)) return 0; /* cycles per sample */
  if (dspi_window_fir(&taps, DSP_WINDOW_HAMMING)) return 0;

  for (int block = 0; block < 100; ++block) {
    if (dspc_cos(&in, hertz, 6.283185307179586 * hertz * 0.01 * block)) return 0; /* the next 10 ms */
    if (dspd_fir(&in, &out, &taps, &state)) return 0;
  }
  dsps_rms(&out, &level);
  const double result = 20 * log10(level.data[0] * sqrt(2));
  dsp_destroy(&taps), dsp_destroy(&in), dsp_destroy(&out), dsp_destroy(&state), dsp_destroy(&level);
  return result;
}

int main(void) {
  printf("800 Hz: %.2f dB, 1 kHz: %.2f dB, 2 kHz: %.0f dB\n", level_after(800), level_after(1000), level_after(2000));
  return 0;
}
