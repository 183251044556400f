// Functions of real samples with loops of their own, compiled once per instruction set. Each is right to 1 ulp; the
// last bit may differ between instruction sets.
#pragma once

#include <cstdint>

#include "dsp/simd/isa.h"

namespace dsp::elementwise {

struct function_kernel_set {
  // e^(by x), 1e100 above the limit
  void (*exponential)(double *x, int64_t n, double by, double limit);
  // natural logarithm, and `factor` times the common one; x below the smallest normal double counts as that
  void (*logarithm)(double *x, int64_t n);
  void (*decibels)(double *x, int64_t n, double factor);
};

DSP_DECLARE_KERNELS(function)

}  // namespace dsp::elementwise
