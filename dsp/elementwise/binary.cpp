// Two signals, sample by sample, into a third.
#include "dsp/core/operands.h"
#include "dsp/core/saturation.h"
#include "dsp/core/temporary.h"
#include "dsp/core/traversal.h"
#include "dsp/dsp.h"
#include "dsp/elementwise/complex_product.h"
#include "dsp/elementwise/kernels.h"

namespace dsp {
namespace {

// Chooses the kernel's overload for the operands' representations. The output is complex when either is.
template <class Kernel>
int32_t combine(const dsp_vec *a, const dsp_vec *b, dsp_vec *out, Kernel kernel) {
  operands in;
  if (dspb_prepare_output(*a, *b, out, &in) != 0) return -1;
  const auto *za = as<dsp_complex>(in.a);
  const auto *zb = as<dsp_complex>(in.b);
  if (in.a_complex && in.b_complex)
    walk<dsp_complex>(out->data, in.length, kernel, za, zb);
  else if (in.a_complex)
    walk<dsp_complex>(out->data, in.length, kernel, za, in.b);
  else if (in.b_complex)
    walk<dsp_complex>(out->data, in.length, kernel, in.a, zb);
  else
    walk<double>(out->data, in.length, kernel, in.a, in.b);
  return 0;
}

// The one routine pair that takes operands of different lengths: zeros stand for what the shorter lacks.
template <class Kernel>
int32_t combine_padded(const dsp_vec *a, const dsp_vec *b, dsp_vec *out, Kernel kernel) {
  if (samples(*a) == samples(*b)) return combine(a, b, out, kernel);
  const bool a_shorter = samples(*a) < samples(*b);
  temporary padded;
  if (dsp_copy(padded.get(), a_shorter ? a : b) != 0) return -1;
  if (dspi_zpad(padded.get(), samples(a_shorter ? *b : *a)) != 0) return -1;
  return a_shorter ? combine(padded.get(), b, out, kernel) : combine(a, padded.get(), out, kernel);
}

struct sum {
  double operator()(double a, double b) const { return a + b; }
  dsp_complex operator()(dsp_complex a, dsp_complex b) const { return {a.re + b.re, a.im + b.im}; }
  dsp_complex operator()(dsp_complex a, double b) const { return {a.re + b, a.im}; }
  dsp_complex operator()(double a, dsp_complex b) const { return {a + b.re, b.im}; }
};

struct difference {
  double operator()(double a, double b) const { return a - b; }
  dsp_complex operator()(dsp_complex a, dsp_complex b) const { return {a.re - b.re, a.im - b.im}; }
  dsp_complex operator()(dsp_complex a, double b) const { return {a.re - b, a.im}; }
  dsp_complex operator()(double a, dsp_complex b) const { return {a - b.re, -b.im}; }
};

struct product {
  template <class A, class B>
  auto operator()(A a, B b) const {
    return multiply(a, b);
  }
};

struct conjugate_product {
  template <class A>
  auto operator()(A a, double b) const {
    return multiply(a, b);
  }
  dsp_complex operator()(dsp_complex a, dsp_complex b) const {
    return {a.re * b.re + a.im * b.im, a.im * b.re - a.re * b.im};
  }
  dsp_complex operator()(double a, dsp_complex b) const { return {a * b.re, -a * b.im}; }
};

struct quotient {
  static dsp_complex by_zero(bool zero) {
    return zero ? dsp_complex{0.0, 0.0} : dsp_complex{overflow_bound, overflow_bound};
  }
  double operator()(double a, double b) const { return b != 0.0 ? a / b : a == 0.0 ? 0.0 : overflow_bound; }
  dsp_complex operator()(dsp_complex a, double b) const {
    return b != 0.0 ? dsp_complex{a.re / b, a.im / b} : by_zero(a.re == 0.0 && a.im == 0.0);
  }
  dsp_complex operator()(double a, dsp_complex b) const {
    const double q = b.re * b.re + b.im * b.im;
    if (q > 0.0) return {a * b.re / q, -a * b.im / q};
    return by_zero(a == 0.0 && b.re == 0.0 && b.im == 0.0);
  }
  dsp_complex operator()(dsp_complex a, dsp_complex b) const {
    const double q = b.re * b.re + b.im * b.im;
    if (q > 0.0) return {(a.re * b.re + a.im * b.im) / q, (a.im * b.re - a.re * b.im) / q};
    return by_zero(a.re == 0.0 && a.im == 0.0 && b.re == 0.0 && b.im == 0.0);
  }
};

// b + w (a - b)
struct blend {
  double w;
  double operator()(double a, double b) const { return b + w * (a - b); }
  dsp_complex operator()(dsp_complex a, dsp_complex b) const { return {(*this)(a.re, b.re), (*this)(a.im, b.im)}; }
  dsp_complex operator()(dsp_complex a, double b) const { return {(*this)(a.re, b), w * a.im}; }
  dsp_complex operator()(double a, dsp_complex b) const { return {(*this)(a, b.re), (1.0 - w) * b.im}; }
};

inline dsp_complex widened(double x) { return {x, 0.0}; }
inline dsp_complex widened(dsp_complex z) { return z; }

// The winner whole; a tie, or a NaN, leaves b. Complex samples, and real ones beside them, compete by squared
// magnitude.
template <class Wins>
struct chosen {
  double operator()(double a, double b) const { return Wins()(a, b) ? a : b; }
  template <class A, class B>
  dsp_complex operator()(A a, B b) const {
    return Wins()(magnitude_squared(a), magnitude_squared(b)) ? widened(a) : widened(b);
  }
};

struct greater {
  bool operator()(double a, double b) const { return a > b; }
};
struct less {
  bool operator()(double a, double b) const { return a < b; }
};

}  // namespace
}  // namespace dsp

using namespace dsp;

int32_t dspb_add(const dsp_vec *a, const dsp_vec *b, dsp_vec *out) { return combine_padded(a, b, out, sum()); }
int32_t dspb_sub(const dsp_vec *a, const dsp_vec *b, dsp_vec *out) { return combine_padded(a, b, out, difference()); }
int32_t dspb_mul(const dsp_vec *a, const dsp_vec *b, dsp_vec *out) { return combine(a, b, out, product()); }
int32_t dspb_conj_mul(const dsp_vec *a, const dsp_vec *b, dsp_vec *out) {
  return combine(a, b, out, conjugate_product());
}
int32_t dspb_div(const dsp_vec *a, const dsp_vec *b, dsp_vec *out) { return combine(a, b, out, quotient()); }
int32_t dspb_avg_add(const dsp_vec *a, const dsp_vec *b, dsp_vec *out, double w) {
  return combine(a, b, out, blend{w});
}
int32_t dspb_max(const dsp_vec *a, const dsp_vec *b, dsp_vec *out) { return combine(a, b, out, chosen<greater>()); }
int32_t dspb_min(const dsp_vec *a, const dsp_vec *b, dsp_vec *out) { return combine(a, b, out, chosen<less>()); }

int32_t dspb_ritoc(const dsp_vec *re, const dsp_vec *im, dsp_vec *out) {
  const int32_t n = samples(*re);
  if (re->is_complex != 0 || im->is_complex != 0 || n != samples(*im)) return -1;
  const operand a(*re, *out);
  const operand b(*im, *out);
  const int32_t old_length = out->length;
  const uint32_t was_complex = out->is_complex;
  out->dx = mean_spacing(re->dx, im->dx);
  out->is_complex = 1;
  out->length = n;
  if (dsp_realloc(out, old_length, was_complex) != 0) return -1;
  walk<dsp_complex>(
      out->data, n,
      [](double x, double y) {
        return dsp_complex{x, y};
      },
      a.data(*out), b.data(*out));
  return 0;
}
