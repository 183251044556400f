// Products of complex samples around the convolution with a chirp.
#pragma once

#include <cstdint>

#include "dsp/simd/isa.h"

namespace dsp::fft {

struct chirp_kernel_set {
  // to[k] = x[k] w[k], k < n; x with its parts exchanged for the inverse. `to` may be x.
  void (*multiply)(const double *x, const double *w, int32_t n, bool exchange, double *to);
  // to[k] = x[k] w[k], its parts exchanged for the inverse.
  void (*multiply_back)(const double *x, const double *w, int32_t n, bool exchange, double *to);
};

DSP_DECLARE_KERNELS(chirp)

}  // namespace dsp::fft
