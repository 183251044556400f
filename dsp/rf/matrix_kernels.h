// Loops compiled once per instruction set; the same bits on every processor. Elements are pairs of doubles.
#pragma once

#include <cstdint>

#include "dsp/simd/isa.h"

namespace dsp::rf {

// For matrices that are too large to unroll, row by row.
struct matrix_kernel_set {
  // As field::eliminate and field::multiply.
  void (*eliminate)(double *a, int64_t n, int64_t k);
  void (*multiply)(const double *a, const double *b, double *out, int64_t m, int64_t k, int64_t p);
};

DSP_DECLARE_KERNELS(matrix)

}  // namespace dsp::rf
