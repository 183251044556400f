// The search for an extreme sample, compiled once per instruction set.
#pragma once

#include <cstdint>

#include "dsp/simd/isa.h"

namespace dsp::stats {

// Returns the first sample with the greatest (least) key: the value of a real sample, the squared magnitude of a
// complex one, or 1e100 when one of its components is beyond +-1e100. -1 when no key is above -1e100 (below 1e100). NaN
// never wins.
struct extremes_kernel_set {
  int64_t (*greatest)(const double *x, int64_t n, int width);
  int64_t (*least)(const double *x, int64_t n, int width);
};

DSP_DECLARE_KERNELS(extremes)

}  // namespace dsp::stats
