// Sums of cosines of the multiples of one angle.
#pragma once

#include <cstdint>

#include "dsp/window/flags.h"

namespace dsp::window {

// c[0] + c[1] cos(x) + c[2] cos(2 x) + ... with `terms` coefficients.
struct cosine_sum {
  const double *c;
  std::int64_t terms;
};

// Its values at x = 2 pi d / period for d = first, first + 1, ...
void evaluate(const cosine_sum &sum, double period, double first, std::int32_t count, double *to);

// The mean (power scale: root mean square) of n samples that span one period, over the one it has in the long run: few
// samples do not tell cos(n x) from a constant. A sum in power scale has a root mean square of 1 in the long run.
double size_of_period(const cosine_sum &sum, window_scale scale, std::int64_t n);

}  // namespace dsp::window
