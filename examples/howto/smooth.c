/* A trace smoothed for the display: each point becomes the mean of the 21 around it. */
#include <math.h>
#include <stdint.h>
#include <stdio.h>

#include "dsp/dsp.h"

enum { points = 401 };

static double noise(uint32_t *seed) { /* from -0.5 to 0.5, evenly */
  *seed = *seed * 1664525u + 1013904223u;
  return *seed / 4294967296.0 - 0.5;
}

int main(void) {
  double clean[points], trace[points], smooth[points], before = 0, after = 0;
  uint32_t seed = 1;
  for (int i = 0; i < points; ++i) { /* a resonance */
    clean[i] = -20 / (1 + pow((i - 200) / 60.0, 2));
    trace[i] = clean[i] + noise(&seed);
  }

  const int32_t written = vfpd_Smooth(trace, smooth, points, 0, points, 21, 0);
  for (int i = 0; i < points; ++i) {
    before += pow(trace[i] - clean[i], 2) / points;
    after += pow(smooth[i] - clean[i], 2) / points;
  }
  printf("%d points, off by %.2f dB before and %.2f dB after\n", (int)written, sqrt(before), sqrt(after));
  return 0;
}
