// The coefficients of the polynomial that has given zeros.
#include <algorithm>
#include <cmath>
#include <cstdint>

#include "dsp/core/temporary.h"
#include "dsp/dsp.h"
#include "dsp/math/double_double.h"
#include "dsp/math/sort.h"
#include "dsp/poly/heap_array.h"
#include "dsp/poly/leja.h"
#include "dsp/poly/result.h"

namespace dsp::poly {
namespace {

struct coefficient {
  double_double re, im;
};

double_double times(double_double a, double b) { return a * double_double{b, 0.0}; }

double_double scaled(double_double a, double power) { return {a.hi * power, a.lo * power}; }

int exponent_of(double x) {
  int exponent;
  std::frexp(x, &exponent);
  return exponent;
}

double largest_part(dsp_complex z) { return std::max(std::fabs(z.re), std::fabs(z.im)); }

// A polynomial that grows by one zero at a time, its coefficients divided by 2^exponent where they would overflow.
class product {
 public:
  // `room` holds one coefficient more than there will be zeros.
  explicit product(coefficient *room) : c_(room) { c_[0] = {{1.0, 0.0}, {0.0, 0.0}}; }

  void multiply(dsp_complex zero) {
    const int size = std::max(exponent_of(largest_part(zero)), 0);
    const int excess = size + exponent_of(largest()) - most;
    if (excess > 0) shrink(excess);
    const double shrunk = std::ldexp(1.0, std::min(most - size, 0));
    if (size > most) exponent_ += size - most;
    const dsp_complex z = {zero.re * shrunk, zero.im * shrunk};
    c_[degree_ + 1] = {scaled(c_[degree_].re, shrunk), scaled(c_[degree_].im, shrunk)};
    for (std::int64_t k = degree_; k >= 0; --k) {
      const coefficient c = c_[k];
      c_[k].re = times(c.im, z.im) - times(c.re, z.re);
      c_[k].im = -(times(c.re, z.im) + times(c.im, z.re));
      if (k == 0) break;
      c_[k].re = c_[k].re + scaled(c_[k - 1].re, shrunk);
      c_[k].im = c_[k].im + scaled(c_[k - 1].im, shrunk);
    }
    ++degree_;
  }

  dsp_complex operator[](std::int64_t k) const {
    return {std::ldexp(c_[k].re.hi, exponent_), std::ldexp(c_[k].im.hi, exponent_)};
  }

 private:
  static constexpr int most = 950;  // products of doubles can be split without overflow up to 2^996

  double largest() const {
    double most_so_far = 0.0;
    for (std::int64_t k = 0; k <= degree_; ++k)
      most_so_far = std::max({most_so_far, std::fabs(c_[k].re.hi), std::fabs(c_[k].im.hi)});
    return most_so_far;
  }

  void shrink(int exponent) {
    const double power = std::ldexp(1.0, -exponent);
    for (std::int64_t k = 0; k <= degree_; ++k) c_[k] = {scaled(c_[k].re, power), scaled(c_[k].im, power)};
    exponent_ += exponent;
  }

  coefficient *c_;
  std::int64_t degree_ = 0;
  int exponent_ = 0;
};

bool is_before(const dsp_complex &a, const dsp_complex &b) { return a.re < b.re || (a.re == b.re && a.im < b.im); }

bool is_same(const dsp_complex &a, const dsp_complex &b) { return a.re == b.re && a.im == b.im; }

// Whether each zero that is not real has its conjugate: those above the axis, and those below mirrored, sort alike.
bool is_symmetric(dsp_complex *z, std::int32_t n) {
  dsp_complex *const end = z + n;
  dsp_complex *const complex = std::partition(z, end, [](const dsp_complex &a) { return a.im == 0.0; });
  dsp_complex *const lower = std::partition(complex, end, [](const dsp_complex &a) { return a.im > 0.0; });
  if (end - lower != lower - complex) return false;
  for (dsp_complex *a = lower; a != end; ++a) a->im = -a->im;
  sort(complex, lower - complex, is_before);
  sort(lower, end - lower, is_before);
  const bool result = std::equal(complex, lower, lower, is_same);
  for (dsp_complex *a = lower; a != end; ++a) a->im = -a->im;
  return result;
}

dsp_complex sample(const dsp_vec &v, std::int64_t i) {
  return v.is_complex != 0 ? complex_samples(v)[i] : dsp_complex{v.data[i], 0.0};
}

// Multiplies z[0..n) out into c, n + 1 samples, the lowest n - count of which are 0.
int32_t multiply_out(dsp_complex *z, std::int32_t n, std::int32_t count, dsp_vec *c) {
  const heap_array<coefficient> room(n + std::int64_t{1});
  if (!room || sort_leja(z, count) != 0) return -1;
  product p(room.get());
  for (std::int32_t i = 0; i < count; ++i) p.multiply(z[i]);
  const bool is_complex = c->is_complex != 0;
  std::fill_n(c->data, doubles(*c), 0.0);
  for (std::int64_t k = 0; k <= count; ++k) {
    const std::int64_t at = k + n - count;
    const dsp_complex value = k < count ? p[k] : dsp_complex{1.0, 0.0};
    c->data[is_complex ? 2 * at : at] = value.re;
    if (is_complex) c->data[2 * at + 1] = value.im;
  }
  return 0;
}

}  // namespace
}  // namespace dsp::poly

using namespace dsp;
using namespace dsp::poly;

int32_t dspi_pztoc(dsp_vec *v) {
  const std::int32_t n = samples(*v);
  if (n == INT32_MAX) return -1;
  if (!std::all_of(v->data, v->data + doubles(*v), [](double x) { return std::isfinite(x); })) return -1;
  const heap_array<dsp_complex> z(n);
  if (!z) return -1;
  std::int32_t count = 0;  // zeros elsewhere than at 0, which only move the coefficients up
  for (std::int32_t i = 0; i < n; ++i) {
    z[count] = sample(*v, i);
    if (z[count].re != 0.0 || z[count].im != 0.0) ++count;
  }
  temporary c;
  if (size_as(c.get(), n + 1, !is_symmetric(z.get(), count)) != 0) return -1;
  if (multiply_out(z.get(), n, count, c.get()) != 0) return -1;
  replace(v, c.get());
  return 0;
}
