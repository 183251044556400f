// Multiplies a signal by a window, and swaps its halves in the same pass where asked. Compiled once per instruction
// set.
#pragma once

#include <cstdint>

#include "dsp/simd/isa.h"

namespace dsp::window {

// v: n samples, w: n weights. The swapping ones need an even n.
struct product_kernel_set {
  void (*real)(double *v, const double *w, int32_t n);
  void (*complex)(double *v, const double *w, int32_t n);
  void (*swapped_real)(double *v, const double *w, int32_t n);
  void (*swapped_complex)(double *v, const double *w, int32_t n);
};

DSP_DECLARE_KERNELS(product)

}  // namespace dsp::window
