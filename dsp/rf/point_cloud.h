// Points moved to about their mean and scaled by a power of two, so that the farthest is about 1 away.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "dsp/dsp.h"
#include "dsp/math/complex.h"

namespace dsp::rf {

class point_cloud {
 public:
  point_cloud(const dsp_complex *z, int64_t n) : z_(z), n_(n) {
    double largest = 0.0;
    for (int64_t i = 0; i < n; ++i) {
      is_finite_ = is_finite_ && is_finite(z[i]);
      largest = std::max(largest, largest_component(z[i]));
    }
    coarse_ = limited_exponent(largest);
    const dsp_complex mean = sum([this](int64_t i) { return coarse(i); });
    centre_ = 1.0 / static_cast<double>(n) * mean;
    double width = 0.0;
    for (int64_t i = 0; i < n; ++i) width = std::max(width, largest_component(coarse(i) - centre_));
    fine_ = limited_exponent(width);
    largest_ = std::ldexp(largest, -coarse_ - fine_);
  }

  bool is_finite_throughout() const { return is_finite_; }
  int64_t count() const { return n_; }
  dsp_complex operator[](int64_t i) const { return std::ldexp(1.0, -fine_) * (coarse(i) - centre_); }
  // The largest coordinate of the original points, in the same scale.
  double largest() const { return largest_; }

  // Back to the caller's coordinates.
  double length(double x) const { return std::ldexp(x, coarse_ + fine_); }
  dsp_complex place(dsp_complex p) const {
    return {std::ldexp(std::ldexp(p.re, fine_) + centre_.re, coarse_),
            std::ldexp(std::ldexp(p.im, fine_) + centre_.im, coarse_)};
  }

  template <class Term>
  dsp_complex sum(Term term) const {
    dsp_complex s = {0.0, 0.0};
    for (int64_t i = 0; i < n_; ++i) s = s + term(i);
    return s;
  }

 private:
  // Limited, so that 2^exponent and 2^-exponent neither overflow nor underflow.
  static int limited_exponent(double x) { return std::clamp(exponent_of(x), -1000, 1000); }

  // Point i scaled so that the mean cannot overflow.
  dsp_complex coarse(int64_t i) const { return std::ldexp(1.0, -coarse_) * z_[i]; }

  const dsp_complex *z_;
  int64_t n_;
  bool is_finite_ = true;
  int coarse_, fine_;
  dsp_complex centre_;
  double largest_;
};

}  // namespace dsp::rf
