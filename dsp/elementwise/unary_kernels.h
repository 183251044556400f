// The element-wise loops that are arithmetic alone, compiled once per instruction set; the same bits on every
// processor.
#pragma once

#include <cstdint>

#include "dsp/core/sharing.h"
#include "dsp/dsp.h"
#include "dsp/simd/isa.h"

namespace dsp::elementwise {

// n samples from `in`, which may be `out`; c is the routine's constant, if it has one.
using unary_loop = void (*)(double *out, const double *in, int64_t n, bool is_complex, dsp_complex c);

struct unary_kernel_set {
  // keep the representation
  unary_loop scale, offset, reciprocal, square;
  // result is complex
  unary_loop complex_scale, times_i;
  // result is real
  unary_loop magnitude, magnitude_squared;
  // complex samples only; `widen` real ones only
  unary_loop conjugate, real_part, imaginary_part, widen;

  // real samples only
  void (*root)(double *out, const double *in, int64_t n);
  // true when a sample was outside [lo, hi]
  bool (*clamp)(double *x, int64_t n, double lo, double hi);
  // x[i] - x[i - width], times 1e100 for dx 0, else over dx; n doubles
  void (*difference)(double *x, int64_t n, int64_t width, double dx);
  // x[i - 1] = i x[i]; n samples
  void (*derivative)(double *x, int32_t n, bool is_complex);
  // n samples in reverse order
  void (*reverse)(double *x, int32_t n, bool is_complex);
  // swaps n doubles of x and y
  void (*exchange)(double *x, double *y, int64_t n);
};

DSP_DECLARE_KERNELS(unary)

}  // namespace dsp::elementwise
