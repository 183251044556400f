// Two signals, sample by sample, into a third.
#include "dsp/core/sharing.h"
#include "dsp/core/sizing.h"
#include "dsp/core/temporary.h"
#include "dsp/dsp.h"
#include "dsp/elementwise/binary_kernels.h"

namespace dsp::elementwise {
namespace {

int32_t combine(const dsp_vec *a, const dsp_vec *b, dsp_vec *out, binary_loop loop, double w = 0.0) {
  operands in;
  if (dspb_prepare_output(*a, *b, out, &in) != 0) return -1;
  loop(out->data, in, w);
  return 0;
}

// Addition and subtraction alone accept operands of different lengths: the shorter is extended with zeros.
int32_t combine_padded(const dsp_vec *a, const dsp_vec *b, dsp_vec *out, binary_loop loop, double w) {
  if (samples(*a) == samples(*b)) return combine(a, b, out, loop, w);
  const bool a_shorter = samples(*a) < samples(*b);
  temporary padded;
  if (dsp_copy(padded.get(), a_shorter ? a : b) != 0) return -1;
  if (dspi_zpad(padded.get(), samples(a_shorter ? *b : *a)) != 0) return -1;
  return a_shorter ? combine(padded.get(), b, out, loop, w) : combine(a, padded.get(), out, loop, w);
}

}  // namespace
}  // namespace dsp::elementwise

using namespace dsp;
using namespace dsp::elementwise;

int32_t dspb_add(const dsp_vec *a, const dsp_vec *b, dsp_vec *out) {
  return combine_padded(a, b, out, binary_kernels().sum, 1.0);
}
int32_t dspb_sub(const dsp_vec *a, const dsp_vec *b, dsp_vec *out) {
  return combine_padded(a, b, out, binary_kernels().sum, -1.0);
}
int32_t dspb_mul(const dsp_vec *a, const dsp_vec *b, dsp_vec *out) {
  return combine(a, b, out, binary_kernels().product);
}
int32_t dspb_conj_mul(const dsp_vec *a, const dsp_vec *b, dsp_vec *out) {
  return b->is_complex == 0 ? dspb_mul(a, b, out) : combine(a, b, out, binary_kernels().conjugate_product);
}
int32_t dspb_div(const dsp_vec *a, const dsp_vec *b, dsp_vec *out) {
  return combine(a, b, out, binary_kernels().quotient);
}
int32_t dspb_avg_add(const dsp_vec *a, const dsp_vec *b, dsp_vec *out, double w) {
  return combine(a, b, out, binary_kernels().blend, w);
}
int32_t dspb_max(const dsp_vec *a, const dsp_vec *b, dsp_vec *out) {
  return combine(a, b, out, binary_kernels().better, 1.0);
}
int32_t dspb_min(const dsp_vec *a, const dsp_vec *b, dsp_vec *out) {
  return combine(a, b, out, binary_kernels().better, -1.0);
}

int32_t dspb_ritoc(const dsp_vec *re, const dsp_vec *im, dsp_vec *out) {
  const int32_t n = samples(*re);
  if (re->is_complex != 0 || im->is_complex != 0 || n != samples(*im)) return -1;
  const operand a(*re, *out);
  const operand b(*im, *out);
  out->dx = mean_spacing(re->dx, im->dx);
  out->is_complex = 1;
  out->length = n;
  if (size_over(out, n, a, b) != 0) return -1;
  binary_kernels().pair(out->data, {a.data(*out), b.data(*out), false, false, n}, 0.0);
  return 0;
}
