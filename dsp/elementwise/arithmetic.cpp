// Arithmetic with a constant, in place.
#include <cmath>
#include <cstring>

#include "dsp/core/saturation.h"
#include "dsp/dsp.h"
#include "dsp/elementwise/in_place.h"
#include "dsp/elementwise/kernels.h"

namespace dsp {
namespace {

struct neg {
  double operator()(double x) const { return -x; }
  dsp_complex operator()(dsp_complex z) const { return {-z.re, -z.im}; }
};

struct offset {
  double c;
  double operator()(double x) const { return x + c; }
  dsp_complex operator()(dsp_complex z) const { return {z.re + c, z.im}; }
};

struct scale {
  double k;
  double operator()(double x) const { return k * x; }
  dsp_complex operator()(dsp_complex z) const { return {k * z.re, k * z.im}; }
};

struct complex_scale {
  dsp_complex c;
  dsp_complex operator()(double x) const { return {x * c.re, x * c.im}; }
  dsp_complex operator()(dsp_complex z) const { return {c.re * z.re - c.im * z.im, c.re * z.im + c.im * z.re}; }
};

struct times_i {
  dsp_complex operator()(double x) const { return {0.0, x}; }
  dsp_complex operator()(dsp_complex z) const { return {-z.im, z.re}; }
};

struct reciprocal {
  double operator()(double x) const { return x == 0.0 ? overflow_bound : 1.0 / x; }
  dsp_complex operator()(dsp_complex z) const {
    if (overflows(z.re) || overflows(z.im)) return {z.re * 1e-100, -z.im * 1e-100};
    const double q = z.re * z.re + z.im * z.im;
    const double inv = q <= 0.0 ? overflow_bound : 1.0 / q;
    return {z.re * inv, -z.im * inv};
  }
};

struct square {
  double operator()(double x) const { return overflows(x) ? overflow_bound : x * x; }
  dsp_complex operator()(dsp_complex z) const {
    const double y = saturate(z.im);
    const double twice = 2.0 * saturate(z.re);
    return {saturated_square(z.re) - saturated_square(z.im), y * twice};
  }
};

// One call per signal rather than one branch per sample: whether any was out is asked along the way.
int32_t clamp_all(double *x, std::int64_t n, double lo, double hi) {
  int32_t clipped = 0;
  for (std::int64_t i = 0; i < n; ++i) {
    clipped |= (x[i] < lo) | (x[i] > hi);
    x[i] = x[i] < lo ? lo : x[i] > hi ? hi : x[i];
  }
  return clipped;
}

}  // namespace
}  // namespace dsp

using namespace dsp;

int32_t dspi_neg(dsp_vec *v) { return in_place(v, neg()); }
int32_t dspi_offset(dsp_vec *v, double c) { return in_place(v, offset{c}); }
int32_t dspi_scale(dsp_vec *v, double k) { return in_place(v, scale{k}); }
int32_t dspi_recip(dsp_vec *v) { return in_place(v, reciprocal()); }
int32_t dspi_sqrt(dsp_vec *v) { return in_place(v, root()); }
int32_t dspu_sqrt(const dsp_vec *in, dsp_vec *out) { return into(in, out, root()); }
int32_t dspi_square(dsp_vec *v) { return in_place(v, square()); }

int32_t dspi_cscale(dsp_vec *v, double c_re, double c_im) {
  return samples(*v) == 0 ? 0 : in_place(v, complex_scale{{c_re, c_im}});
}

int32_t dspi_timesi(dsp_vec *v) { return samples(*v) == 0 ? 0 : in_place(v, times_i()); }

int32_t dspi_limit(dsp_vec *v, double lo, double hi, int32_t *clipped) {
  const int32_t any = lo > hi ? clamp_all(v->data, doubles(*v), hi, lo) : clamp_all(v->data, doubles(*v), lo, hi);
  if (clipped != nullptr) *clipped = any;
  return 0;
}

int32_t dspi_zero(dsp_vec *v) {
  if (dsp_alloc(v) != 0) return -1;
  if (samples(*v) > 0) std::memset(v->data, 0, static_cast<std::size_t>(doubles(*v)) * sizeof(double));
  return 0;
}
