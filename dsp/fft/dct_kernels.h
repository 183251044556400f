// The passes over memory before and after the real transform inside a cosine transform; input and output do not
// overlap.
#pragma once

#include <cstdint>

#include "dsp/dsp.h"
#include "dsp/simd/isa.h"

namespace dsp::fft {

struct dct_kernel_set {
  // Moves the even samples to the front and the odd ones in reverse to the back; and the inverse of that.
  void (*permute)(const double *x, int32_t n, double *permuted);
  void (*unpermute)(const double *permuted, int32_t n, double *x);
  // Between half spectrum and result, except bin 0 and bin n/2; rotations[k - 1] for k = 1 .. (n - 1)/2.
  void (*rotate)(const dsp_complex *bins, const dsp_complex *rotations, int32_t n, double *y);
  void (*rotate_back)(const double *y, const dsp_complex *rotations, int32_t n, dsp_complex *bins);
};

DSP_DECLARE_KERNELS(dct)

}  // namespace dsp::fft
