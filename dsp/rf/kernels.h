// Loops compiled once per instruction set; the same bits on every processor. Elements are pairs of doubles.
#pragma once

#include <cstdint>

#include "dsp/core/isa.h"

namespace dsp {

// For matrices too large for the compiler to unroll, row after row.
struct matrix_kernels {
  // As field::eliminate and field::multiply.
  void (*eliminate)(double *a, std::int64_t n, std::int64_t k);
  void (*multiply)(const double *a, const double *b, double *out, std::int64_t m, std::int64_t k, std::int64_t p);
};

DSP_DECLARE_KERNELS(matrix_kernels, matrix_table)

// Solves points of the calibration from the front and returns how many: up to one that needs care, or too few at the
// end. g and a hold the three standards' measured and actual coefficients; g becomes the error terms.
using one_port_kernel = std::int64_t (*)(double *const *g, const double *const *a, std::int64_t count);

DSP_DECLARE_KERNELS(one_port_kernel, one_port_points)

inline const matrix_kernels &matrices() { return DSP_KERNELS(matrix_table); }

}  // namespace dsp
