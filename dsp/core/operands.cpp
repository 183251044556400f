#include "dsp/core/operands.h"

#include <cmath>

#include "dsp/core/sizing.h"

namespace dsp {

double mean_spacing(double a, double b) {
  const double mean = (a + b) * 0.5;
  return std::isinf(mean) ? a * 0.5 + b * 0.5 : mean;
}

int32_t dspb_prepare_output(const dsp_vec &a, const dsp_vec &b, bool out_complex, dsp_vec *out, operands *ready) {
  const int32_t n = samples(a);
  if (n != samples(b)) return -1;
  const operand left(a, *out);
  const operand right(b, *out);
  out->dx = mean_spacing(a.dx, b.dx);
  out->is_complex = out_complex;
  out->length = n;
  const bool keep = left.is_shared() || right.is_shared();
  const bool held_complex = left.keeps_complex() || right.keeps_complex();
  if ((keep ? dsp_realloc(out, n, held_complex) : dsp_alloc(out)) != 0) return -1;
  *ready = {left.data(*out), right.data(*out), left.is_complex(), right.is_complex(), n};
  return 0;
}

int32_t dspb_prepare_output(const dsp_vec &a, const dsp_vec &b, dsp_vec *out, operands *ready) {
  return dspb_prepare_output(a, b, a.is_complex != 0 || b.is_complex != 0, out, ready);
}

}  // namespace dsp
