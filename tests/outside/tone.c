/* In C: a tone of amplitude 1 has a mean square of one half. Prints the release and twice the mean square. */
#include <stdio.h>

#include "dsp/dsp.h"

int main(void) {
  dsp_vec tone = {1e-3, NULL, 0, 1000, 0, 0}, level = {1.0, NULL, 0, 0, 0, 0};
  if (dsp_alloc(&tone) || dspc_cos(&tone, 50.0, 0.0) || dsps_rms(&tone, &level)) return 1;
  printf("%d %.6f\n", (int)dsp_version(), 2.0 * level.data[0] * level.data[0]);
  return dsp_destroy(&tone) || dsp_destroy(&level);
}
