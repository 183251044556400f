// Elementary functions of samples. Outside a function's domain a fixed value stands in.
#include <math.h>

#include <cmath>

#include "dsp/dsp.h"
#include "dsp/elementwise/in_place.h"
#include "dsp/elementwise/kernels.h"

namespace dsp {
namespace {

constexpr double largest_exponent = 230.25850929940458;  // its exponential is 1e100
constexpr double ln_10 = 2.302585092994046;
constexpr double ln_smallest_normal = -708.3964185322641;

double bessel_y0(double x) {
#if defined(_WIN32)
  return ::_y0(x);
#else
  return ::y0(x);
#endif
}

double bessel_y1(double x) {
#if defined(_WIN32)
  return ::_y1(x);
#else
  return ::y1(x);
#endif
}

template <class Function>
int32_t real_only(dsp_vec *v, Function f) {
  if (v->is_complex != 0) return -1;
  for (int32_t i = 0; i < samples(*v); ++i) v->data[i] = f(v->data[i]);
  return 0;
}

double capped_exp(double x) { return x > largest_exponent ? overflow_bound : std::exp(x); }

struct exponential {
  double operator()(double x) const { return capped_exp(x); }
  dsp_complex operator()(dsp_complex z) const { return from_polar(capped_exp(z.re), z.im); }
};

// 10^z. A real part below -1e100 gives the magnitude -1e100, and is told apart by callers of real samples.
double capped_exp10(double x) {
  return x > 100.0 ? overflow_bound : x < -overflow_bound ? -overflow_bound : std::exp(x * ln_10);
}

struct logarithm {
  double operator()(double x) const { return x < smallest_normal ? ln_smallest_normal : std::log(x); }
  dsp_complex operator()(dsp_complex z) const {
    const bool beyond = overflows(z.re) || overflows(z.im);
    const double p = beyond ? overflow_bound : z.re * z.re + z.im * z.im;
    if (p < smallest_normal) return {ln_smallest_normal, 0.0};
    return {0.5 * std::log(p), std::atan2(saturate(z.im), saturate(z.re))};
  }
};

}  // namespace
}  // namespace dsp

using namespace dsp;

int32_t dspi_asin(dsp_vec *v) {
  return real_only(v, [](double x) { return std::fabs(x) > 1.0 ? 0.0 : std::asin(x); });
}

int32_t dspi_acos(dsp_vec *v) {
  return real_only(v, [](double x) { return std::fabs(x) > 1.0 ? 0.0 : std::acos(x); });
}

int32_t dspi_sinh(dsp_vec *v) {
  return real_only(
      v, [](double x) { return std::fabs(x) > largest_exponent ? std::copysign(overflow_bound, x) : std::sinh(x); });
}

int32_t dspi_cosh(dsp_vec *v) {
  return real_only(v, [](double x) { return std::fabs(x) > largest_exponent ? overflow_bound : std::cosh(x); });
}

int32_t dspi_besy0(dsp_vec *v) {
  return real_only(v, [](double x) { return x <= 0.0 ? 0.0 : bessel_y0(x); });
}

int32_t dspi_besy1(dsp_vec *v) {
  return real_only(v, [](double x) { return x <= 0.0 ? 0.0 : bessel_y1(x); });
}

int32_t dspi_exp(dsp_vec *v) { return in_place(v, exponential()); }

int32_t dspi_exp10(dsp_vec *v) {
  if (v->is_complex != 0) {
    auto *z = as<dsp_complex>(v->data);
    for (int32_t i = 0; i < samples(*v); ++i) z[i] = from_polar(capped_exp10(z[i].re), z[i].im * ln_10);
    return 0;
  }
  // A sample below -1e100 ends the conversion; dsp.h says so.
  for (int32_t i = 0; i < samples(*v) && !(v->data[i] < -overflow_bound); ++i) v->data[i] = capped_exp10(v->data[i]);
  return 0;
}

int32_t dspi_log(dsp_vec *v) { return in_place(v, logarithm()); }

int32_t dspi_log10(dsp_vec *v) { return in_place(v, decibels(1.0)); }
