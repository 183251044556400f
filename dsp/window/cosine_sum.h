// Sums of cosines of the multiples of one angle.
#pragma once

#include <cstdint>

namespace dsp {

// c[0] + c[1] cos(x) + c[2] cos(2 x) + ... with `terms` coefficients.
struct cosine_sum {
  const double *c;
  std::int64_t terms;
};

// Its values at x = 2 pi d / period for d = first, first + 1, ...
void evaluate(const cosine_sum &sum, double period, double first, std::int32_t count, double *to);

// Mean, over the mean it has in the long run (c[0]), and mean square less its long-run part, of n samples that span one
// period: few samples do not tell cos(n x) from a constant.
double mean_gain(const cosine_sum &sum, std::int64_t n);
double aliased_power(const cosine_sum &sum, std::int64_t n);

}  // namespace dsp
