// Products of complex samples around the convolution with a chirp.
#pragma once

#include <cstdint>

#include "dsp/simd/isa.h"

namespace dsp::fft {

struct chirp_kernel_set {
  // to[k] = x[k] w[k], k < n; for the inverse, the parts of x[k] are exchanged first. `to` may be x.
  void (*multiply)(const double *x, const double *w, int32_t n, bool exchange, double *to);
  // to[k] = x[k] w[k]; for the inverse, the parts of the product are exchanged.
  void (*multiply_back)(const double *x, const double *w, int32_t n, bool exchange, double *to);
};

DSP_DECLARE_KERNELS(chirp)

}  // namespace dsp::fft
