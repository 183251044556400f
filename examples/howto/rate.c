/* From 48 to 44.1 kHz, block by block. The converter contains the lowpasses that it needs. */
#include <stdio.h>

#include "dsp/dsp.h"

int main(void) {
  dsp_vec in = {.dx = 1.0 / 48000, .length = 480}, out = {.dx = 1}, scratch = {.dx = 1}, all = {.dx = 1},
          peak = {.dx = 1};
  dsph_rsmp_coef coef;
  dsph_rsmp_state state;
  dsph_rsmp_coef_init(&coef);
  dsph_rsmp_state_init(&state);
  if (dsph_rsmp_coef_alloc(&coef, 0) || dsph_rsmp_coef_setup(&coef, 0, 48.0 / 44.1, 0, 0)) return 1;
  if (dsph_rsmp_state_alloc(&coef, &state, 0) || dsph_rsmp_state_reset(&coef, &state) || dsp_alloc(&in)) return 1;

  for (int block = 0; block < 100; ++block) {
    if (dspc_cos(&in, 1000.0, 6.283185307179586 * 10 * block)) return 1; /* the next 10 ms of a tone */
    if (dsph_rsmp(&in, &out, &scratch, &coef, &state) || dsp_append(&all, &out)) return 1;
  }
  all.dx = out.dx;
  const int32_t length = all.length;
  if (dspu_subvec(&all, &all, 0, 32768) || dsph_fft(&all, &all, 0, 1.0, DSP_WINDOW_GAUSSTOP, 0)) return 1;
  if (dsps_peak(&all, &peak, DSP_PEAK_GAUSS, 0)) return 1;
  printf("48000 samples became %d, %.0f each second; the tone is at %.2f Hz\n", (int)length, 1 / out.dx,
         peak.data[1] * all.dx);
  dsph_rsmp_state_destroy(&state), dsph_rsmp_coef_destroy(&coef);
  return dsp_destroy(&in) || dsp_destroy(&out) || dsp_destroy(&scratch) || dsp_destroy(&all) || dsp_destroy(&peak);
}
