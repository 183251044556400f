// factor log10(x). Samples below the smallest normal number, zero and negative ones among them, count as that number.
#pragma once

#include <cmath>

#include "dsp/core/saturation.h"
#include "dsp/dsp.h"
#include "dsp/elementwise/polar.h"

namespace dsp {

class decibels {
 public:
  explicit decibels(dsp_complex factor) : factor_(factor.re), floor_(factor_ * -307.6526555685888) {}

  double operator()(double x) const { return x < smallest_normal ? floor_ : factor_ * std::log10(x); }

  dsp_complex operator()(dsp_complex z) const {
    const double p = saturated_square(z.re) + saturated_square(z.im);
    if (p < smallest_normal) return {floor_, 0.0};
    return {factor_ * std::log10(p) * 0.5, factor_ * std::atan2(saturate(z.im), saturate(z.re)) * log10_e};
  }

 private:
  double factor_;
  double floor_;
};

}  // namespace dsp
