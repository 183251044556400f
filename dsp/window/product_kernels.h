// A window put on a signal, in one pass also when the halves change places. Compiled once per instruction set.
#pragma once

#include <cstdint>

#include "dsp/simd/isa.h"

namespace dsp::window {

// v: n samples, w: n weights. The swapped ones take an even n.
struct product_kernel_set {
  void (*real)(double *v, const double *w, std::int32_t n);
  void (*complex)(double *v, const double *w, std::int32_t n);
  void (*swapped_real)(double *v, const double *w, std::int32_t n);
  void (*swapped_complex)(double *v, const double *w, std::int32_t n);
};

DSP_DECLARE_KERNELS(product)

}  // namespace dsp::window
