// The coefficients of the polynomial that has given zeros.
#include <algorithm>
#include <cmath>
#include <cstdint>

#include "dsp/core/temporary.h"
#include "dsp/dsp.h"
#include "dsp/math/complex.h"
#include "dsp/math/double_double.h"
#include "dsp/math/sort.h"
#include "dsp/poly/heap_array.h"
#include "dsp/poly/leja.h"
#include "dsp/poly/polynomial.h"
#include "dsp/poly/result.h"

namespace dsp::poly {
namespace {

// A complex number of twice the digits and of any size: (re + i im) 2^exponent with both components within +-1.
struct coefficient {
  double_double re, im;
  int64_t exponent;

  bool is_zero() const { return re.hi == 0.0 && im.hi == 0.0; }
  double value(double_double part) const {
    return std::ldexp(part.hi, static_cast<int>(std::clamp<int64_t>(exponent, -5000, 5000)));
  }
};

double_double scaled(double_double a, double power) { return {a.hi * power, a.lo * power}; }

coefficient shifted(const coefficient &a, int64_t exponent) {
  const double power = std::ldexp(1.0, static_cast<int>(std::max<int64_t>(exponent, -1000)));
  return {scaled(a.re, power), scaled(a.im, power), a.exponent - exponent};
}

coefficient normalised(const coefficient &a) { return shifted(a, -exponent_of(largest_component({a.re.hi, a.im.hi}))); }

coefficient sum(const coefficient &a, const coefficient &b) {
  if (a.is_zero() || b.is_zero()) return a.is_zero() ? b : a;
  const int64_t exponent = std::max(a.exponent, b.exponent);
  const coefficient x = shifted(a, a.exponent - exponent), y = shifted(b, b.exponent - exponent);
  return normalised({x.re + y.re, x.im + y.im, exponent});
}

// -(re + i im) 2^exponent a
coefficient negative_product(const coefficient &a, double re, double im, int exponent) {
  const double_double x = {re, 0.0}, y = {im, 0.0};
  return normalised({a.im * y - a.re * x, -(a.re * y + a.im * x), a.exponent + exponent});
}

// Multiplies the polynomial c of the given degree by z - zero.
void multiply(coefficient *c, int64_t degree, dsp_complex zero) {
  const int exponent = exponent_of(largest_component(zero));
  const double re = std::ldexp(zero.re, -exponent), im = std::ldexp(zero.im, -exponent);
  c[degree + 1] = c[degree];
  for (int64_t k = degree; k > 0; --k) c[k] = sum(c[k - 1], negative_product(c[k], re, im, exponent));
  c[0] = negative_product(c[0], re, im, exponent);
}

bool is_before(const dsp_complex &a, const dsp_complex &b) { return a.re < b.re || (a.re == b.re && a.im < b.im); }

bool is_same(const dsp_complex &a, const dsp_complex &b) { return a.re == b.re && a.im == b.im; }

// Whether each zero that is not real has its conjugate. Changes the order of the zeros.
bool is_symmetric(dsp_complex *z, int32_t n) {
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

// Sets c, n + 1 samples, to the coefficients of z^(n - count) times the product of z - z[i] for i < count.
int32_t multiply_out(dsp_complex *z, int32_t n, int32_t count, dsp_vec *c) {
  const heap_array<coefficient> room(n + int64_t{1});
  if (!room || sort_leja(z, count) != 0) return -1;
  room[0] = {{1.0, 0.0}, {0.0, 0.0}, 0};
  for (int32_t i = 0; i < count; ++i) multiply(room.get(), i, z[i]);
  const bool is_complex = c->is_complex != 0;
  std::fill_n(c->data, doubles(*c), 0.0);
  for (int64_t k = 0; k <= count; ++k) {
    const int64_t at = k + n - count;
    c->data[is_complex ? 2 * at : at] = room[k].value(room[k].re);
    if (is_complex) c->data[2 * at + 1] = room[k].value(room[k].im);
  }
  return 0;
}

}  // namespace
}  // namespace dsp::poly

using namespace dsp;
using namespace dsp::poly;

int32_t dspi_pztoc(dsp_vec *v) {
  const int32_t n = samples(*v);
  if (n == INT32_MAX) return -1;
  if (!is_finite_signal(*v)) return -1;
  const heap_array<dsp_complex> z(n);
  if (!z) return -1;
  int32_t count = 0;  // zeros other than 0; each zero at 0 moves the coefficients up by one
  for (int32_t i = 0; i < n; ++i) {
    z[count] = sample(*v, i);
    if (z[count].re != 0.0 || z[count].im != 0.0) ++count;
  }
  temporary c;
  if (size_as(c.get(), n + 1, !is_symmetric(z.get(), count)) != 0) return -1;
  if (multiply_out(z.get(), n, count, c.get()) != 0) return -1;
  replace(v, c.get());
  return 0;
}
