// Arithmetic with a constant, powers and roots.
#include <cmath>
#include <cstring>

#include "dsp/dsp.h"
#include "dsp/elementwise/in_place.h"
#include "dsp/elementwise/polar.h"
#include "dsp/math/saturation.h"
#include "dsp/simd/traversal.h"

namespace dsp::elementwise {
namespace {

dsp_complex principal_root(dsp_complex z) {
  const bool beyond = overflows(z.re) || overflows(z.im);
  const double m = std::sqrt(beyond ? overflow_bound : std::sqrt(z.re * z.re + z.im * z.im));
  if (m <= 0.0) return {0.0, 0.0};
  return from_polar(m, std::atan2(z.im, z.re) / 2.0);
}

void root(double *out, const double *in, int64_t n, bool is_complex, dsp_complex) {
  if (is_complex)
    walk<dsp_complex>(out, n, principal_root, as<dsp_complex>(in));
  else
    unary_kernels().root(out, in, n);
}

}  // namespace
}  // namespace dsp::elementwise

using namespace dsp;
using namespace dsp::elementwise;

int32_t dspi_neg(dsp_vec *v) { return dspi_scale(v, -1.0); }
int32_t dspi_scale(dsp_vec *v, double k) { return in_place(v, becomes::same, unary_kernels().scale, {k, 0.0}); }
int32_t dspi_offset(dsp_vec *v, double c) { return in_place(v, becomes::same, unary_kernels().offset, {c, 0.0}); }
int32_t dspi_recip(dsp_vec *v) { return in_place(v, becomes::same, unary_kernels().reciprocal); }
int32_t dspi_square(dsp_vec *v) { return in_place(v, becomes::same, unary_kernels().square); }
int32_t dspi_sqrt(dsp_vec *v) { return in_place(v, becomes::same, root); }
int32_t dspu_sqrt(const dsp_vec *in, dsp_vec *out) { return into(in, out, becomes::same, root); }

int32_t dspi_cscale(dsp_vec *v, double c_re, double c_im) {
  return samples(*v) == 0 ? 0 : in_place(v, becomes::complex, unary_kernels().complex_scale, {c_re, c_im});
}

int32_t dspi_timesi(dsp_vec *v) {
  return samples(*v) == 0 ? 0 : in_place(v, becomes::complex, unary_kernels().times_i);
}

int32_t dspi_limit(dsp_vec *v, double lo, double hi, int32_t *clipped) {
  const bool swapped = lo > hi;
  const bool any = unary_kernels().clamp(v->data, doubles(*v), swapped ? hi : lo, swapped ? lo : hi);
  if (clipped != nullptr) *clipped = any;
  return 0;
}

int32_t dspi_zero(dsp_vec *v) {
  if (dsp_alloc(v) != 0) return -1;
  if (samples(*v) > 0) std::memset(v->data, 0, static_cast<std::size_t>(doubles(*v)) * sizeof(double));
  return 0;
}
