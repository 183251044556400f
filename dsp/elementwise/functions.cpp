// Elementary functions of samples. A fixed value replaces the result outside a function's domain.
#include <math.h>

#include <algorithm>
#include <cmath>

#include "dsp/core/sizing.h"
#include "dsp/dsp.h"
#include "dsp/elementwise/function_kernels.h"
#include "dsp/elementwise/in_place.h"
#include "dsp/elementwise/polar.h"
#include "dsp/math/saturation.h"
#include "dsp/simd/traversal.h"

#if defined(_WIN32)  // strict C++ hides them in the headers
extern "C" __declspec(dllimport) double _y0(double);
extern "C" __declspec(dllimport) double _y1(double);
#endif

namespace dsp::elementwise {
namespace {

#if defined(_WIN32)
double bessel_y0(double x) { return ::_y0(x); }
double bessel_y1(double x) { return ::_y1(x); }
#else
double bessel_y0(double x) { return ::y0(x); }
double bessel_y1(double x) { return ::y1(x); }
#endif

constexpr double largest_exponent = 230.25850929940458;  // its exponential is 1e100
constexpr double ln_10 = 2.302585092994046;

// For functions that complex signals are refused.
template <class Function>
int32_t of_reals(dsp_vec *v, Function f) {
  if (v->is_complex != 0) return -1;
  walk<double>(v->data, samples(*v), f, v->data);
  return 0;
}

dsp_complex exp_of(dsp_complex z) {
  return from_polar(z.re > largest_exponent ? overflow_bound : std::exp(z.re), z.im);
}

// Exponents below -1e100 give the magnitude -1e100: odd, but promised in dsp.h.
dsp_complex exp10_of(dsp_complex z) {
  const double m = z.re > 100.0 ? overflow_bound : z.re < -overflow_bound ? -overflow_bound : std::exp(z.re * ln_10);
  return from_polar(m, z.im * ln_10);
}

dsp_complex log_of(dsp_complex z) {
  const bool beyond = overflows(z.re) || overflows(z.im);
  const double p = beyond ? overflow_bound : z.re * z.re + z.im * z.im;
  if (p < smallest_normal) return {ln_smallest_normal, 0.0};
  return {0.5 * std::log(p), std::atan2(saturate(z.im), saturate(z.re))};
}

// Loops for in_place(), where `out` is `in`.
template <dsp_complex (*function)(dsp_complex), class Real>
void loop(double *out, const double *in, int64_t n, bool is_complex, Real real) {
  if (is_complex)
    walk<dsp_complex>(out, n, function, as<dsp_complex>(in));
  else
    real(out);
}

void exponentials(double *out, const double *in, int64_t n, bool is_complex, dsp_complex) {
  loop<exp_of>(out, in, n, is_complex, [n](double *x) { function_kernels().exponential(x, n, 1.0, largest_exponent); });
}

// A real sample below -1e100 ends the conversion; dsp.h says so.
void exponentials_of_ten(double *out, const double *in, int64_t n, bool is_complex, dsp_complex) {
  loop<exp10_of>(out, in, n, is_complex, [n](double *x) {
    const double *end = std::find_if(x, x + n, [](double sample) { return sample < -overflow_bound; });
    function_kernels().exponential(x, end - x, ln_10, 100.0);
  });
}

void logarithms(double *out, const double *in, int64_t n, bool is_complex, dsp_complex) {
  loop<log_of>(out, in, n, is_complex, [n](double *x) { function_kernels().logarithm(x, n); });
}

}  // namespace
}  // namespace dsp::elementwise

using namespace dsp;
using namespace dsp::elementwise;

int32_t dspi_asin(dsp_vec *v) {
  return of_reals(v, [](double x) { return std::fabs(x) > 1.0 ? 0.0 : std::asin(x); });
}

int32_t dspi_acos(dsp_vec *v) {
  return of_reals(v, [](double x) { return std::fabs(x) > 1.0 ? 0.0 : std::acos(x); });
}

int32_t dspi_sinh(dsp_vec *v) {
  return of_reals(
      v, [](double x) { return std::fabs(x) > largest_exponent ? std::copysign(overflow_bound, x) : std::sinh(x); });
}

int32_t dspi_cosh(dsp_vec *v) {
  return of_reals(v, [](double x) { return std::fabs(x) > largest_exponent ? overflow_bound : std::cosh(x); });
}

int32_t dspi_besy0(dsp_vec *v) {
  return of_reals(v, [](double x) { return x <= 0.0 ? 0.0 : bessel_y0(x); });
}

int32_t dspi_besy1(dsp_vec *v) {
  return of_reals(v, [](double x) { return x <= 0.0 ? 0.0 : bessel_y1(x); });
}

int32_t dspi_exp(dsp_vec *v) { return in_place(v, becomes::same, exponentials); }

int32_t dspi_exp10(dsp_vec *v) { return in_place(v, becomes::same, exponentials_of_ten); }

int32_t dspi_log(dsp_vec *v) { return in_place(v, becomes::same, logarithms); }

int32_t dspi_log10(dsp_vec *v) { return dspi_db(v, 1.0); }
