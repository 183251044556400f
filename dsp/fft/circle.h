// All n-th roots of unity from the first octant, for building tables.
#pragma once

#include <cstdint>

#include "dsp/math/angle.h"

namespace dsp::fft {

class circle {
 public:
  explicit circle(int32_t n) : multiple_(n % 4 == 0 ? 1 : n % 2 == 0 ? 2 : 4), period_(int64_t{n} * multiple_) {}
  circle(const circle &) = delete;
  circle &operator=(const circle &) = delete;
  ~circle();

  bool build();  // false: no memory

  // cos and sin of 2 pi k/n, 0 <= k < n.
  root operator[](int64_t k) const {
    k *= multiple_;
    const bool below = 2 * k > period_;
    if (below) k = period_ - k;
    const bool left = 4 * k > period_;
    if (left) k = period_ / 2 - k;
    const bool steep = 8 * k > period_;
    if (steep) k = period_ / 4 - k;
    const double c = steep ? sines_[k] : cosines_[k];
    const double s = steep ? cosines_[k] : sines_[k];
    return {left ? -c : c, below ? -s : s};
  }

 private:
  int64_t multiple_;
  int64_t period_;  // a multiple of 4, which the symmetries need
  double *cosines_ = nullptr;
  double *sines_ = nullptr;
};

}  // namespace dsp::fft
