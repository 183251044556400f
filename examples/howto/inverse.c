/* A calibration curve the other way round: a thermistor's resistance is tabulated over temperature, and a temperature
 * is wanted for a resistance. The spline goes through the logarithm, in which the curve is almost straight. */
#include <math.h>
#include <stdio.h>

#include "dsp/dsp.h"

int main(void) {
  double celsius[] = {100, 75, 50, 25, 0, -25}; /* so that the resistance rises */
  double ohms[] = {680, 1480, 3600, 10000, 32650, 130000};
  double readings[] = {5000, 12500, 20000}; /* to be looked up; they rise too */
  dsp_vec x = {1, ohms, 0, 6, 0, 0}, y = {1, celsius, 0, 6, 0, 0}, q = {1, readings, 0, 3, 0, 0}, out = {.dx = 1};
  if (dspi_log(&x) || dspi_log(&q)) return 1;

  if (dsp_cspline(&x, &y, NULL, &q, &out)) return 1;
  for (int i = 0; i < 3; ++i) printf("%.0f ohms: %.2f degrees\n", exp(readings[i]), out.data[i]);
  return dsp_destroy(&out);
}
