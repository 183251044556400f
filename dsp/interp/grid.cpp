// A tabulated function at other abscissae: held, linear, parabolic or a cubic spline.
#include <cstdint>

#include "dsp/core/sharing.h"
#include "dsp/core/sizing.h"
#include "dsp/core/temporary.h"
#include "dsp/dsp.h"
#include "dsp/interp/interp_kernels.h"

namespace dsp::interp {
namespace {

// Fewer than two nodes: 0, a constant, or a spline's single parabola.
void without_interval(const nodes &f, const queries &q, bool is_spline) {
  const double curvature = f.n == 1 && is_spline ? f.d2[0] * 0.5 : 0.0;
  for (int32_t i = 0; i < q.n; ++i) {
    q.out[i] = f.n == 1 ? f.y[0] : 0.0;
    if (f.n == 1 && is_spline) q.out[i] += (q.t[i] - f.x[0]) * (q.t[i] - f.x[0]) * curvature;
  }
}

constexpr int32_t scheme_mask = 7;

// With fewer than the three nodes of a parabola, schemes 3 and 7 (both low bits set) are linear.
int32_t scheme_for(int32_t mode, int32_t n) {
  const int32_t scheme = mode & scheme_mask;
  return (scheme & DSP_INTERP_QUADRATIC) == DSP_INTERP_QUADRATIC && n < 3 ? DSP_INTERP_LINEAR : scheme;
}

}  // namespace
}  // namespace dsp::interp

using namespace dsp;
using namespace dsp::interp;

int32_t dsp_interp(const dsp_vec *x, const dsp_vec *y, const dsp_vec *d2, const dsp_vec *xq, dsp_vec *out,
                   int32_t mode) {
  const bool is_spline = (mode & scheme_mask) == DSP_INTERP_SPLINE;
  temporary made;
  if (is_spline && d2 == nullptr) {
    if (dspb_cspline_2d(x, y, made.get(), 0.0, 0.0, DSP_SPLINE_NOT_A_KNOT, DSP_SPLINE_NOT_A_KNOT) != 0) return -1;
    d2 = made.get();
  }
  const int32_t n = samples(*x);
  if (x->is_complex != 0 || y->is_complex != 0 || xq->is_complex != 0 || n != samples(*y)) return -1;
  if (is_spline && (d2->is_complex != 0 || samples(*d2) != n)) return -1;
  output result(out, {x, y, xq, is_spline ? d2 : nullptr});
  if (result.shape(samples(*xq), false, xq->dx) != 0) return -1;
  const nodes f = {x->data, y->data, is_spline ? d2->data : nullptr, n};
  const queries q = {xq->data, result->data, result->length};
  int32_t status = 0;
  if (n < 2)
    without_interval(f, q, is_spline);
  else
    status = interp_kernels().interpolate(f, q, scheme_for(mode, n), (mode & DSP_INTERP_CLAMP) != 0);
  return result.commit() != 0 ? -1 : status;
}

int32_t dsp_cspline(const dsp_vec *x, const dsp_vec *y, const dsp_vec *d2, const dsp_vec *xq, dsp_vec *out) {
  return dsp_interp(x, y, d2, xq, out, DSP_INTERP_SPLINE);
}
