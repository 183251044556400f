/* The calibration of a reflectometer with short, open and load, at three frequencies. */
#include <complex.h>
#include <stdio.h>

#include "dsp/dsp.h"

typedef double complex number; /* laid out as dsp_complex is */

int main(void) {
  const number e00[3] = {0.10, 0.10 * I, -0.10}, e11[3] = {0.20, -0.20, 0.20 * I}, e10e01[3] = {0.8, 0.8 * I, -0.8};
  const number device = 0.3 + 0.4 * I; /* to be found from what the instrument measures, `raw` */
  number is[3][3] = {{-1, -1, -1}, {1, 1, 1}, {0, 0, 0}}, read[3][3], raw[3]; /* of short, open, load */
  for (int i = 0; i < 3; ++i) {
    for (int k = 0; k < 3; ++k) read[k][i] = e00[i] + e10e01[i] * is[k][i] / (1 - e11[i] * is[k][i]);
    raw[i] = e00[i] + e10e01[i] * device / (1 - e11[i] * device);
  }

  dsp_complex *r[3], *a[3];
  for (int k = 0; k < 3; ++k) r[k] = (dsp_complex *)read[k], a[k] = (dsp_complex *)is[k];
  Compute1PortTerms(r[0], r[1], r[2], a[0], a[1], a[2], 0, 3); /* readings become e00, e11 and e10e01 */
  for (int i = 0; i < 3; ++i) {
    const number d = raw[i] - read[0][i], corrected = d / (read[2][i] + read[1][i] * d);
    printf("raw %.3f, corrected %.3f\n", cabs(raw[i]), cabs(corrected));
  }
  return 0;
}
