// The solutions of p(z) = y.
#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdint>

#include "dsp/core/temporary.h"
#include "dsp/dsp.h"
#include "dsp/math/complex.h"
#include "dsp/math/constants.h"
#include "dsp/math/saturation.h"
#include "dsp/math/sort.h"
#include "dsp/poly/heap_array.h"
#include "dsp/poly/polynomial.h"
#include "dsp/poly/result.h"
#include "dsp/poly/zero_kernels.h"
#include "dsp/poly/zeros.h"

namespace dsp::poly {
namespace {

// Tells whether |p(z) - y| is no more than rounding noise.
class noise_test {
 public:
  noise_test(const dsp_vec &c, double y, int32_t degree)
      : c_(c), y_(y), degree_(degree), re_(degree_ + 1), im_(degree_ + 1), modulus_(degree_ + 1) {}

  bool is_valid() const { return re_ && im_ && modulus_; }

  // Whether it is noise at every point on the way from z to its real part.
  bool covers_way_to_axis(dsp_complex z) {
    constexpr int steps = 16;
    for (int i = 0; i <= steps; ++i)
      if (!is_noise({z.re, z.im * i / steps})) return false;
    return true;
  }

 private:
  struct sums {
    double modulus;  // of the value
    double terms;
  };

  bool is_noise(dsp_complex z) {
    sums s = evaluate(z, 0);
    // Terms that underflow matter beside small sums only. Near |z| = 1 the largest term is about 1.
    if (s.terms < 0x1p-900) s = evaluate(z, std::ilogb(std::max(largest_component(z), smallest_normal)));
    return s.modulus <= 4.0 * epsilon * static_cast<double>(degree_) * s.terms;
  }

  // Value and terms at z as a polynomial in z 2^-exponent; both are scaled by one power of two.
  sums evaluate(dsp_complex z, int exponent) {
    scale(exponent);
    std::complex<double> x = {std::ldexp(z.re, -exponent), std::ldexp(z.im, -exponent)};
    const bool is_outside = std::abs(x) > 1.0;
    if (is_outside) x = 1.0 / x;
    point_block b = {};
    b.re[0] = x.real();
    b.im[0] = x.imag();
    b.modulus[0] = std::abs(x);
    const int64_t first = is_outside ? 0 : degree_;
    const coefficient_run run = {re_.get() + first, im_.get() + first, modulus_.get() + first, is_outside ? 1 : -1,
                                 degree_};
    zero_kernels().evaluate(run, &b, 1);
    zero_kernels().evaluate_twofold(run, &b, 1);
    return {std::hypot(b.value_re[0], b.value_im[0]), b.terms[0]};
  }

  // The coefficients of powers of z 2^-exponent, the largest of them about 1.
  void scale(int exponent) {
    if (exponent == exponent_) return;
    exponent_ = exponent;
    const auto log_of = [&](int64_t k) {
      const double larger = std::max(std::fabs(c_.data[k]), k == 0 ? std::fabs(y_) : 0.0);
      return larger > 0.0 ? k * exponent + std::ilogb(larger) : INT64_MIN;
    };
    int64_t largest = INT64_MIN;
    for (int64_t k = 0; k <= degree_; ++k) largest = std::max(largest, log_of(k));
    for (int64_t k = 0; k <= degree_; ++k) {
      const int power = static_cast<int>(std::clamp<int64_t>(k * exponent - largest, -5000, 5000));
      const double c = std::ldexp(c_.data[k], power), y = k == 0 ? std::ldexp(y_, power) : 0.0;
      re_[k] = c - y;
      im_[k] = 0.0;
      modulus_[k] = std::fabs(c) + std::fabs(y);
    }
  }

  const dsp_vec &c_;
  double y_;
  int64_t degree_;
  int exponent_ = INT32_MIN;  // none yet
  heap_array<double> re_, im_, modulus_;
};

// Keeps the real ones of the n zeros of c - y, sorted, and returns their number; -1: no memory.
int32_t keep_real(dsp_complex *z, int32_t n, const dsp_vec &c, double y) {
  if (n == 0) return 0;
  noise_test noise(c, y, n);
  if (!noise.is_valid()) return -1;
  int32_t count = 0;
  for (int32_t i = 0; i < n; ++i) {
    const dsp_complex zero = z[i];
    const bool is_pair = zero.im != 0.0;
    if (is_pair) ++i;
    if (is_pair && !noise.covers_way_to_axis(zero)) continue;
    z[count++] = {zero.re, 0.0};
    if (is_pair) z[count++] = {zero.re, 0.0};
  }
  sort(z, count, [](const dsp_complex &a, const dsp_complex &b) { return a.re < b.re; });
  return count;
}

bool has_solutions(const polynomial &p) { return p.is_finite() && !p.is_zero(); }

}  // namespace
}  // namespace dsp::poly

using namespace dsp;
using namespace dsp::poly;

int32_t dsps_psolve(const dsp_vec *c, dsp_vec *out, double y) {
  const polynomial p(*c, {y, 0.0});
  if (c->is_complex != 0 || !has_solutions(p)) return -1;
  const heap_array<dsp_complex> z(p.zeros());
  if (!z || find_zeros(p, z.get()) != 0) return -1;
  const int32_t count = keep_real(z.get(), p.zeros(), *c, y);
  temporary solutions;
  if (count < 0 || size_as(solutions.get(), count, false) != 0) return -1;
  for (int32_t i = 0; i < count; ++i) solutions->data[i] = z[i].re;
  put(solutions.get(), out);
  return 0;
}

int32_t dsps_pcsolve(const dsp_vec *c, dsp_vec *out, double y_re, double y_im) {
  const polynomial p(*c, {y_re, y_im});
  temporary solutions;
  if (!has_solutions(p) || size_as(solutions.get(), p.zeros(), true) != 0) return -1;
  if (find_zeros(p, complex_samples(*solutions)) != 0) return -1;
  put(solutions.get(), out);
  return 0;
}
