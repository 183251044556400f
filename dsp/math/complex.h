// Arithmetic of complex numbers by its formulas. The operators of std::complex also repair infinities, at a cost.
#pragma once

#include <algorithm>
#include <cmath>

#include "dsp/dsp.h"

namespace dsp {

inline dsp_complex operator+(dsp_complex a, dsp_complex b) { return {a.re + b.re, a.im + b.im}; }
inline dsp_complex operator-(dsp_complex a, dsp_complex b) { return {a.re - b.re, a.im - b.im}; }
inline dsp_complex operator*(double a, dsp_complex b) { return {a * b.re, a * b.im}; }
inline dsp_complex operator/(dsp_complex a, double b) { return {a.re / b, a.im / b}; }

// Of vectors in the plane.
inline double dot(dsp_complex a, dsp_complex b) { return a.re * b.re + a.im * b.im; }
inline double cross(dsp_complex a, dsp_complex b) { return a.re * b.im - a.im * b.re; }

inline double squared_modulus(dsp_complex z) { return dot(z, z); }
inline double modulus(dsp_complex z) { return std::hypot(z.re, z.im); }
inline double largest_component(dsp_complex z) { return std::max(std::fabs(z.re), std::fabs(z.im)); }
inline bool is_finite(dsp_complex z) { return std::isfinite(z.re) && std::isfinite(z.im); }

inline dsp_complex product(dsp_complex a, dsp_complex b) {
  return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
}

inline dsp_complex quotient(dsp_complex a, dsp_complex b) {
  const double inverse = 1.0 / squared_modulus(b);
  return {dot(a, b) * inverse, cross(b, a) * inverse};
}

// The exponent of the smallest power of two above |x|; 0 for x = 0.
inline int exponent_of(double x) {
  int exponent;
  std::frexp(x, &exponent);
  return exponent;
}

}  // namespace dsp
