// Arithmetic of complex samples by its formulas: the language's own tests for infinities.
#pragma once

#include <algorithm>
#include <cmath>

#include "dsp/dsp.h"

namespace dsp::poly {

inline double square(dsp_complex z) { return z.re * z.re + z.im * z.im; }

inline double largest_part(dsp_complex z) { return std::max(std::fabs(z.re), std::fabs(z.im)); }

inline bool is_finite(dsp_complex z) { return std::isfinite(z.re) && std::isfinite(z.im); }

inline dsp_complex product(dsp_complex a, dsp_complex b) {
  return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
}

inline dsp_complex quotient(dsp_complex a, dsp_complex b) {
  const double inverse = 1.0 / square(b);
  return {(a.re * b.re + a.im * b.im) * inverse, (a.im * b.re - a.re * b.im) * inverse};
}

}  // namespace dsp::poly
