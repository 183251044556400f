// All n-th roots of unity from the first octant, for building tables.
#pragma once

#include <cstdint>

#include "dsp/math/angle.h"

namespace dsp::fft {

class circle {
 public:
  explicit circle(std::int32_t n)
      : multiple_(n % 4 == 0   ? 1
                  : n % 2 == 0 ? 2
                               : 4),
        period_(std::int64_t{n} * multiple_) {}
  circle(const circle &) = delete;
  circle &operator=(const circle &) = delete;
  ~circle();

  bool build();  // false: no memory

  // cos and sin of 2 pi k/n, 0 <= k < n.
  root operator[](std::int64_t k) const { return root_from_octant(cosines_, sines_, period_, k * multiple_); }

 private:
  std::int64_t multiple_;
  std::int64_t period_;  // a multiple of 4, as the symmetries ask for
  double *cosines_ = nullptr;
  double *sines_ = nullptr;
};

}  // namespace dsp::fft
