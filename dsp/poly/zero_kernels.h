// Loops of the search for zeros, over blocks of points; compiled once per instruction set.
#pragma once

#include <cstdint>

#include "dsp/simd/isa.h"

namespace dsp::poly {

constexpr int block_size = 16;

// Approximations of zeros and what the kernels compute for them. Unused places hold numbers, too, so that a whole
// vector can be computed.
struct alignas(64) point_block {
  double at_re[block_size], at_im[block_size];
  double re[block_size], im[block_size], modulus[block_size];  // the variable of the polynomial, modulus at most 1
  double value_re[block_size], value_im[block_size];
  double slope_re[block_size], slope_im[block_size];
  double terms[block_size];                             // sum of the moduli of all terms
  double aberth_re[block_size], aberth_im[block_size];  // sum of 1/(at - x) over all other approximations x
};

// Coefficients from the highest power to the lowest, `step` doubles apart.
struct coefficient_run {
  const double *re, *im, *modulus;
  int64_t step;
  int64_t degree;
};

// Each computes the first `count` points of a block.
struct zero_kernel_set {
  // Value, slope and terms.
  void (*evaluate)(const coefficient_run &c, point_block *b, int count);
  // The value alone, as if computed with twice the digits and then rounded.
  void (*evaluate_twofold)(const coefficient_run &c, point_block *b, int count);
  // Aberth's sum over n approximations; those equal to a point do not count.
  void (*add_inverse_distances)(const double *x_re, const double *x_im, int64_t n, point_block *b, int count);
};

DSP_DECLARE_KERNELS(zero)

}  // namespace dsp::poly
