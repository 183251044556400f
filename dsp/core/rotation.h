// A sampled rotation: cosine and sine of phase + w k for consecutive k. Each block of 256 starts from the C library's
// values; within it eight neighbours turn together by 8 w.
//
// Turning by c cos(d) - s sin(d) loses digits where cos(d) is near 1, since what little it differs from 1 is rounded
// away; c - (alpha c + beta s) with alpha = 2 sin^2(d/2) and beta = sin(d) does not. Towards half a turn alpha nears 2
// and the plain form is the better one.
#pragma once

#include <cmath>
#include <cstdint>

namespace dsp {

class rotation {
 public:
  static constexpr std::int32_t block = 256;

  rotation(double phase, double w) : phase_(phase), w_(w) {
    for (int l = 0; l < lanes; ++l) {
      lane_c_[l] = std::cos(w * l);
      lane_s_[l] = std::sin(w * l);
    }
    const double step = w * lanes;
    cos_ = std::cos(step);
    sin_ = std::sin(step);
    slow_ = cos_ >= 0.0;
    const double half = std::sin(0.5 * step);
    if (slow_) cos_ = 2.0 * half * half;
  }

  // c[i], s[i] for k = first + i, i < count <= block; room for a whole block is written to.
  void operator()(std::int32_t first, std::int32_t count, double *c, double *s) const {
    const double angle = phase_ + w_ * first;
    const double seed_c = std::cos(angle);
    const double seed_s = std::sin(angle);
    for (int l = 0; l < lanes; ++l) {
      c[l] = seed_c * lane_c_[l] - seed_s * lane_s_[l];
      s[l] = seed_s * lane_c_[l] + seed_c * lane_s_[l];
    }
    c[0] = seed_c;
    s[0] = seed_s;
    for (std::int32_t i = lanes; i < count; i += lanes) turn(c + i, s + i);
  }

 private:
  static constexpr int lanes = 8;

  void turn(double *c, double *s) const {
    if (slow_) {
      for (int l = 0; l < lanes; ++l) {
        const double x = c[l - lanes], y = s[l - lanes];
        c[l] = x - (cos_ * x + sin_ * y);
        s[l] = y - (cos_ * y - sin_ * x);
      }
    } else {
      for (int l = 0; l < lanes; ++l) {
        const double x = c[l - lanes], y = s[l - lanes];
        c[l] = cos_ * x - sin_ * y;
        s[l] = cos_ * y + sin_ * x;
      }
    }
  }

  double phase_, w_;
  double lane_c_[lanes], lane_s_[lanes];
  double cos_, sin_;  // of eight steps; when slow, alpha in place of the cosine
  bool slow_;
};

}  // namespace dsp
