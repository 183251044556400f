// Sums of cosines of the multiples of one angle.
#pragma once

#include <cstdint>

#include "dsp/window/flags.h"

namespace dsp::window {

// c[0] + c[1] cos(x) + c[2] cos(2 x) + ... with `terms` coefficients.
struct cosine_sum {
  const double *c;
  int64_t terms;
};

// The values at x = 2 pi d / period for d = first, first + 1, ...
void evaluate(const cosine_sum &sum, double period, double first, int32_t count, double *to);

// Coherent gain: the mean (power scale: root mean square) of n samples over one period, relative to its limit for many
// samples. With few samples cos(k x) aliases to a constant, so the gain differs from 1.
double coherent_gain(const cosine_sum &sum, window_scale scale, int64_t n);

}  // namespace dsp::window
