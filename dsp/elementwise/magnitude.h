// Magnitudes and squared magnitudes. The functions are static, so that each kernel file gets code of its own.
#pragma once

#include "dsp/dsp.h"
#include "dsp/math/saturation.h"

namespace dsp::elementwise {

static inline double magnitude(double x) { return __builtin_fabs(x); }

// As hypot: infinity wins over NaN, and the squares neither overflow nor underflow. Scaling by powers of two is exact,
// so the error is that of sqrt(x x + y y): at most 1 ulp.
static inline double magnitude(dsp_complex z) {
  constexpr double infinite = __builtin_huge_val();
  const double x = magnitude(z.re);
  const double y = magnitude(z.im);
  const double largest = x > y ? x : y;
  const double to = largest > 0x1p500 ? 0x1p-600 : largest < 0x1p-450 ? 0x1p600 : 1.0;
  const double back = largest > 0x1p500 ? 0x1p600 : largest < 0x1p-450 ? 0x1p-600 : 1.0;
  const double a = x * to;
  const double b = y * to;
  const double r = __builtin_sqrt(a * a + b * b) * back;
  return x == infinite || y == infinite ? infinite : r;
}

// Saturates to 1e100 when a component exceeds the bound.
static inline double magnitude_squared(double x) { return saturated_square(x, overflow_bound); }
static inline double magnitude_squared(dsp_complex z) {
  return overflows(z.re) || overflows(z.im) ? overflow_bound : z.re * z.re + z.im * z.im;
}

}  // namespace dsp::elementwise
