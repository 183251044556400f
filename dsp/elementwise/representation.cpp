// Real, complex and polar samples, magnitudes, phases and decibels.
#include <algorithm>
#include <cmath>

#include "dsp/dsp.h"
#include "dsp/elementwise/function_kernels.h"
#include "dsp/elementwise/in_place.h"
#include "dsp/elementwise/magnitude.h"
#include "dsp/elementwise/polar.h"
#include "dsp/math/saturation.h"

namespace dsp::elementwise {
namespace {

struct phase {
  double operator()(double x) const { return x < 0.0 ? pi : 0.0; }
  double operator()(dsp_complex z) const { return z.re == 0.0 && z.im == 0.0 ? 0.0 : std::atan2(z.im, z.re); }
};

struct polar {
  dsp_complex operator()(double x) const { return {magnitude(x), phase()(x)}; }
  dsp_complex operator()(dsp_complex z) const { return {magnitude(z), phase()(z)}; }
};

struct cartesian {
  double operator()(double x) const { return x; }  // GCOVR_EXCL_LINE: real signals stay as they are
  dsp_complex operator()(dsp_complex z) const { return from_polar(z.re, z.im); }
};

dsp_complex complex_decibels(dsp_complex z, double factor) {
  const double p = saturated_square(z.re) + saturated_square(z.im);
  if (p < smallest_normal) return {factor * log10_smallest_normal, 0.0};
  return {factor * std::log10(p) * 0.5, factor * std::atan2(saturate(z.im), saturate(z.re)) * log10_e};
}

void decibels(double *out, const double *in, int64_t n, bool is_complex, dsp_complex factor) {
  if (is_complex)
    walk<dsp_complex>(
        out, n, [=](dsp_complex z) { return complex_decibels(z, factor.re); }, as<dsp_complex>(in));
  else
    function_kernels().decibels(out, n, factor.re);
}

}  // namespace
}  // namespace dsp::elementwise

using namespace dsp;
using namespace dsp::elementwise;

int32_t dspi_real(dsp_vec *v) { return v->is_complex == 0 ? 0 : in_place(v, becomes::real, unary_kernels().real_part); }
int32_t dspi_imag(dsp_vec *v) {
  if (v->is_complex != 0) return in_place(v, becomes::real, unary_kernels().imaginary_part);
  std::fill_n(v->data, samples(*v), 0.0);
  return 0;
}
int32_t dspi_rtoc(dsp_vec *v) { return v->is_complex != 0 ? 0 : in_place(v, becomes::complex, unary_kernels().widen); }
int32_t dspi_conj(dsp_vec *v) { return v->is_complex == 0 ? 0 : in_place(v, becomes::same, unary_kernels().conjugate); }
int32_t dspi_mag(dsp_vec *v) { return in_place(v, becomes::real, unary_kernels().magnitude); }
int32_t dspi_magsq(dsp_vec *v) { return in_place(v, becomes::real, unary_kernels().magnitude_squared); }
int32_t dspi_phase(dsp_vec *v) { return in_place(v, becomes::real, loop_of<phase>); }
int32_t dspi_rtop(dsp_vec *v) { return in_place(v, becomes::complex, loop_of<polar>); }
int32_t dspi_ptor(dsp_vec *v) { return v->is_complex == 0 ? 0 : in_place(v, becomes::same, loop_of<cartesian>); }
int32_t dspi_db(dsp_vec *v, double factor) { return in_place(v, becomes::same, decibels, {factor, 0.0}); }
int32_t dspu_mag(const dsp_vec *in, dsp_vec *out) { return into(in, out, becomes::real, unary_kernels().magnitude); }
int32_t dspu_magsq(const dsp_vec *in, dsp_vec *out) {
  return into(in, out, becomes::real, unary_kernels().magnitude_squared);
}
