// The equation p(z) = y as the polynomial p - y without the zero coefficients at its ends.
#pragma once

#include <cstdint>

#include "dsp/dsp.h"

namespace dsp::poly {

bool is_finite_signal(const dsp_vec &v);

// Sample i of a real or complex signal.
dsp_complex sample(const dsp_vec &v, int64_t i);

class polynomial {
 public:
  // Refers to `c`, which must outlive it.
  polynomial(const dsp_vec &c, dsp_complex y);

  bool is_finite() const { return is_finite_; }
  bool is_zero() const { return degree_ < 0; }
  bool is_real() const { return is_real_; }
  // The degree after division by z^at_origin(); -1 for the zero polynomial.
  int32_t degree() const { return degree_; }
  // The number of zeros at 0.
  int32_t at_origin() const { return at_origin_; }
  int32_t zeros() const { return is_zero() ? 0 : degree_ + at_origin_; }
  // The coefficient of z^k after that division.
  dsp_complex operator[](int32_t k) const { return coefficient(k + at_origin_); }

 private:
  dsp_complex coefficient(int32_t k) const;
  bool is_zero_at(int32_t k) const;

  const dsp_vec &c_;
  dsp_complex y_;
  int32_t degree_;
  int32_t at_origin_ = 0;
  double scale_ = 1.0;
  bool is_finite_;
  bool is_real_;
};

}  // namespace dsp::poly
