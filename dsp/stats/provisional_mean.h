// The value about which differences are summed: near the mean, and cheap.
#pragma once

#include "dsp/stats/input.h"

namespace dsp::stats {

// The mean of the first, middle and last sample, for one component. n >= 1.
inline double provisional_mean(const stats_input &x, int part) {
  const auto at = [&](int64_t i) { return x.data[i * x.width + part]; };
  return (at(0) + at(x.n / 2) + at(x.n - 1)) / 3.0;
}

}  // namespace dsp::stats
