// Loops compiled once per instruction set; the same bits on every processor. Elements are pairs of doubles.
#pragma once

#include <cstdint>

#include "dsp/simd/isa.h"

namespace dsp::rf {

// The loops of field::eliminate and field::multiply, for matrices that are too large to unroll.
struct matrix_kernel_set {
  void (*eliminate)(double *a, int64_t n, int64_t k);
  void (*multiply)(const double *a, const double *b, double *out, int64_t m, int64_t k, int64_t p);
};

DSP_DECLARE_KERNELS(matrix)

}  // namespace dsp::rf
