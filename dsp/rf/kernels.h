// Loops over matrices too large for the compiler to unroll, compiled once per instruction set; the same bits on every
// processor. Elements are pairs of doubles, row after row.
#pragma once

#include <cstdint>

#include "dsp/core/isa.h"

namespace dsp {

struct matrix_kernels {
  // As field::eliminate and field::multiply.
  void (*eliminate)(double *a, std::int64_t n, std::int64_t k);
  void (*multiply)(const double *a, const double *b, double *out, std::int64_t m, std::int64_t k, std::int64_t p);
};

DSP_DECLARE_KERNELS(matrix_kernels, matrix_table)

inline const matrix_kernels &matrices() { return DSP_KERNELS(matrix_table); }

}  // namespace dsp
