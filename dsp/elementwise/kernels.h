// Kernels that more than one routine uses.
#pragma once

#include <cmath>

#include "dsp/core/saturation.h"
#include "dsp/dsp.h"

namespace dsp {

constexpr double pi = 3.141592653589793;
constexpr double log10_e = 0.4342944819032518;

// Squared magnitude, and what stands for it when a part is beyond the bound.
inline double magnitude_squared(double x) { return saturated_square(x, overflow_bound); }
inline double magnitude_squared(dsp_complex z) {
  return overflows(z.re) || overflows(z.im) ? overflow_bound : z.re * z.re + z.im * z.im;
}

inline double angle(double x) { return x < 0.0 ? pi : 0.0; }
inline double angle(dsp_complex z) { return z.re == 0.0 && z.im == 0.0 ? 0.0 : std::atan2(z.im, z.re); }

inline double magnitude(double x) { return std::fabs(x); }
inline double magnitude(dsp_complex z) { return std::hypot(z.re, z.im); }

inline dsp_complex from_polar(double m, double p) { return {m * std::cos(p), m * std::sin(p)}; }

struct root {
  double operator()(double x) const { return x < 0.0 ? 0.0 : std::sqrt(x); }
  dsp_complex operator()(dsp_complex z) const {
    const bool beyond = overflows(z.re) || overflows(z.im);
    const double m = std::sqrt(beyond ? overflow_bound : std::sqrt(z.re * z.re + z.im * z.im));
    if (m <= 0.0) return {0.0, 0.0};
    return from_polar(m, std::atan2(z.im, z.re) / 2.0);
  }
};

// factor log10(x); samples below the smallest normal number give `floor`, the factor times its logarithm.
struct decibels {
  double factor;
  double floor;
  explicit decibels(double f) : factor(f), floor(f * -307.6526555685888) {}
  double operator()(double x) const { return x < smallest_normal ? floor : factor * std::log10(x); }
  dsp_complex operator()(dsp_complex z) const {
    const double p = saturated_square(z.re) + saturated_square(z.im);
    if (p < smallest_normal) return {floor, 0.0};
    return {factor * std::log10(p) * 0.5, factor * std::atan2(saturate(z.im), saturate(z.re)) * log10_e};
  }
};

}  // namespace dsp
