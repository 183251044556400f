// The passes over memory around the cosine transform's real transform; inputs and outputs are apart.
#pragma once

#include <cstdint>

#include "dsp/dsp.h"
#include "dsp/simd/isa.h"

namespace dsp::fft {

struct dct_kernel_set {
  // Even samples to the front, odd ones in reverse to the back; and undone.
  void (*permute)(const double *x, int32_t n, double *permuted);
  void (*unpermute)(const double *permuted, int32_t n, double *x);
  // Between half spectrum and result, but for the bins that have no mirror; rotations[k - 1] for k = 1 .. (n - 1)/2.
  void (*rotate)(const dsp_complex *bins, const dsp_complex *rotations, int32_t n, double *y);
  void (*rotate_back)(const double *y, const dsp_complex *rotations, int32_t n, dsp_complex *bins);
};

DSP_DECLARE_KERNELS(dct)

}  // namespace dsp::fft
