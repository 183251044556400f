// The search for an extreme sample, compiled once per instruction set.
#pragma once

#include <cstdint>

#include "dsp/simd/isa.h"

namespace dsp::stats {

// Samples are compared by key: a real one's value, a complex one's squared magnitude or, when a part is beyond +-1e100,
// 1e100. The first sample with the greatest (least) key, -1 when no key is above -1e100 (below 1e100). NaN is no key.
struct extremes_kernel_set {
  std::int64_t (*greatest)(const double *x, std::int64_t n, int parts);
  std::int64_t (*least)(const double *x, std::int64_t n, int parts);
};

DSP_DECLARE_KERNELS(extremes)

}  // namespace dsp::stats
