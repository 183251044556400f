#include "dsp/poly/polynomial.h"

#include <algorithm>
#include <cmath>

#include "dsp/core/sizing.h"
#include "dsp/math/complex.h"

namespace dsp::poly {
namespace {

bool is_real_signal(const dsp_vec &c) {
  if (c.is_complex == 0) return true;
  for (int64_t i = 0; i < samples(c); ++i)
    if (c.data[2 * i + 1] != 0.0) return false;
  return true;
}

}  // namespace

bool is_finite_signal(const dsp_vec &v) {
  return std::all_of(v.data, v.data + doubles(v), [](double x) { return std::isfinite(x); });
}

dsp_complex sample(const dsp_vec &v, int64_t i) {
  return v.is_complex != 0 ? dsp_complex{v.data[2 * i], v.data[2 * i + 1]} : dsp_complex{v.data[i], 0.0};
}

polynomial::polynomial(const dsp_vec &c, dsp_complex y)
    : c_(c),
      y_(y),
      degree_(std::max(samples(c), 1) - 1),
      is_finite_(is_finite_signal(c) && dsp::is_finite(y)),
      is_real_(is_real_signal(c) && y.im == 0.0) {
  if (!dsp::is_finite(coefficient(0))) scale_ = 0.5;  // the difference from y overflows
  while (degree_ >= 0 && is_zero_at(degree_)) --degree_;
  while (at_origin_ < degree_ && is_zero_at(at_origin_)) ++at_origin_;
  degree_ -= at_origin_;
}

dsp_complex polynomial::coefficient(int32_t k) const {
  const dsp_complex c = k < samples(c_) ? sample(c_, k) : dsp_complex{0.0, 0.0};
  return k == 0 ? scale_ * c - scale_ * y_ : scale_ * c;
}

bool polynomial::is_zero_at(int32_t k) const { return largest_component(coefficient(k)) == 0.0; }

}  // namespace dsp::poly
