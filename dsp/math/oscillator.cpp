#include "dsp/math/oscillator.h"

#include <cmath>

namespace dsp {

// 2 w, 4 w and 8 w are exact; other multiples may round, so their rotations are products of these.
oscillator::oscillator(double phase, double w) : phase_(phase), w_(w), lane_c_{1.0}, lane_s_{0.0} {
  double half_sine = 0.0;
  for (int p = 1; p < lanes; p *= 2) {
    const double c = std::cos(w * p);
    const double s = half_sine = std::sin(w * p);
    for (int l = 0; l < p; ++l) {
      lane_c_[p + l] = c * lane_c_[l] - s * lane_s_[l];
      lane_s_[p + l] = s * lane_c_[l] + c * lane_s_[l];
    }
  }
  cos_ = std::cos(w * lanes);
  sin_ = std::sin(w * lanes);
  slow_ = cos_ >= 0.0;
  if (slow_) cos_ = 2.0 * half_sine * half_sine;
}

void oscillator::operator()(int32_t first, int32_t count, double *c, double *s) const {
  const double angle = phase_ + w_ * first;
  const double seed_c = std::cos(angle);
  const double seed_s = std::sin(angle);
  for (int l = 0; l < lanes; ++l) {
    c[l] = seed_c * lane_c_[l] - seed_s * lane_s_[l];
    s[l] = seed_s * lane_c_[l] + seed_c * lane_s_[l];
  }
  c[0] = seed_c;
  s[0] = seed_s;
  for (int32_t i = lanes; i < count; i += lanes) turn(c + i, s + i);
}

void oscillator::turn(double *c, double *s) const {
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

}  // namespace dsp
