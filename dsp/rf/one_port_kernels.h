// The calibration of several points at once, once per instruction set; the same bits on every processor.
#pragma once

#include <cstdint>

#include "dsp/simd/isa.h"

namespace dsp::rf {

struct one_port_kernel_set {
  // Solves points from the front and returns how many. It stops before a vector of points of which one has an extreme
  // pivot, and before an incomplete last vector. g and a hold the three standards' measured and actual coefficients; g
  // becomes the error terms.
  int64_t (*solve_points)(double *const *g, const double *const *a, int64_t count);
};

DSP_DECLARE_KERNELS(one_port)

}  // namespace dsp::rf
