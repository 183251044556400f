// The matrix element of this library's own routines: a complex number that stays in one vector register, where a pair
// of doubles would be loaded and stored in halves.
#pragma once

#include <complex>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "dsp/dsp.h"
#include "dsp/rf/matrix.h"
#include "dsp/rf/matrix_kernels.h"

namespace dsp::rf {

class complex_value {
 public:
  complex_value(double re = 0.0, double im = 0.0) : v_{re, im} {}
  complex_value(const dsp_complex &z) { std::memcpy(&v_, &z, sizeof v_); }

  double re() const { return v_[0]; }
  double im() const { return v_[1]; }
  operator dsp_complex() const {
    dsp_complex z;
    std::memcpy(&z, &v_, sizeof z);
    return z;
  }

  friend complex_value operator+(complex_value a, complex_value b) { return a.v_ + b.v_; }
  friend complex_value operator-(complex_value a, complex_value b) { return a.v_ - b.v_; }
  friend complex_value operator-(complex_value a) { return -a.v_; }
  friend complex_value operator*(complex_value a, complex_value b) {
    const parts re = {a.v_[0], a.v_[0]};
    const parts im = {-a.v_[1], a.v_[1]};
    return re * b.v_ + im * __builtin_shufflevector(b.v_, b.v_, 1, 0);
  }
  complex_value conjugate_over(double divisor) const {
    const double scale = 1.0 / divisor;
    return v_ * parts{scale, -scale};
  }

 private:
  typedef double parts __attribute__((vector_size(16)));
  complex_value(parts v) : v_(v) {}
  parts v_;
};

using complex_matrix = matrix<complex_value>;

inline std::complex<double> standard(complex_value z) { return {z.re(), z.im()}; }

inline double sum_of_squares(complex_value z) { return field::sum_of_squares(standard(z)); }

inline double modulus(complex_value z) { return field::modulus(standard(z)); }

inline double *doubles(complex_value *z) { return reinterpret_cast<double *>(z); }
inline double *doubles(dsp_complex *z) { return reinterpret_cast<double *>(z); }
inline const double *doubles(const dsp_complex *z) { return reinterpret_cast<const double *>(z); }

}  // namespace dsp::rf

// Functions of the matrix that have a faster form for these elements.
namespace dsp::field {

template <>
inline rf::complex_value reciprocal(const rf::complex_value &x) {
  const double sum = rf::sum_of_squares(x);
  if (is_safe(sum)) return x.conjugate_over(sum);
  const std::complex<double> r = scaled_reciprocal(rf::standard(x));
  return {r.real(), r.imag()};
}

template <>
inline std::size_t find_pivot(const rf::complex_value *a, std::size_t n, std::size_t k) {
  const std::size_t row = largest_in_column(a, n, k, rf::sum_of_squares);
  return is_safe(rf::sum_of_squares(a[row * n + k])) ? row : largest_in_column(a, n, k, rf::modulus);
}

// Small matrices are inlined, where the compiler knows their size.
template <>
inline void eliminate(rf::complex_value *a, std::size_t n, std::size_t k) {
  constexpr std::size_t worth_a_call = 4;
  if (n < worth_a_call) return eliminate_rows(a, n, k);
  rf::matrix_kernels().eliminate(rf::doubles(a), static_cast<int64_t>(n), static_cast<int64_t>(k));
}

}  // namespace dsp::field
