#include "dsp/poly/polynomial.h"

#include <algorithm>
#include <cmath>

#include "dsp/core/sizing.h"
#include "dsp/poly/arithmetic.h"

namespace dsp::poly {
namespace {

bool is_real_signal(const dsp_vec &c) {
  if (c.is_complex == 0) return true;
  for (int64_t i = 0; i < samples(c); ++i)
    if (c.data[2 * i + 1] != 0.0) return false;
  return true;
}

bool is_finite_signal(const dsp_vec &c) {
  return std::all_of(c.data, c.data + doubles(c), [](double x) { return std::isfinite(x); });
}

}  // namespace

polynomial::polynomial(const dsp_vec &c, dsp_complex y)
    : c_(c),
      y_(y),
      degree_(std::max(samples(c), 1) - 1),
      is_finite_(is_finite_signal(c) && std::isfinite(y.re) && std::isfinite(y.im)),
      is_real_(is_real_signal(c) && y.im == 0.0) {
  const dsp_complex first = coefficient(0);
  if (!poly::is_finite(first)) scale_ = 0.5;  // the difference from y overflows
  while (degree_ >= 0 && is_zero_at(degree_)) --degree_;
  while (at_origin_ < degree_ && is_zero_at(at_origin_)) ++at_origin_;
  degree_ -= at_origin_;
}

dsp_complex polynomial::coefficient(int32_t k) const {
  const int64_t at = k;
  dsp_complex c = {0.0, 0.0};
  if (at < samples(c_))
    c = c_.is_complex != 0 ? dsp_complex{c_.data[2 * at], c_.data[2 * at + 1]} : dsp_complex{c_.data[at], 0.0};
  const double y = k == 0 ? scale_ : 0.0;
  return {c.re * scale_ - y_.re * y, c.im * scale_ - y_.im * y};
}

bool polynomial::is_zero_at(int32_t k) const { return largest_part(coefficient(k)) == 0.0; }

}  // namespace dsp::poly
