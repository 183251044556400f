// Twice the samples: two signals merged, or zeros put in between.
#include <cstdint>

#include "dsp/core/operands.h"
#include "dsp/core/sizing.h"
#include "dsp/dsp.h"

namespace dsp {
namespace {

// Sample i of either representation, as the output's.
void put(double *out, bool out_complex, std::int64_t at, const double *in, bool in_complex, std::int64_t i) {
  if (!out_complex) {
    out[at] = in[i];
    return;
  }
  const double re = in_complex ? in[2 * i] : in[i];
  const double im = in_complex ? in[2 * i + 1] : 0.0;
  out[2 * at] = re;
  out[2 * at + 1] = im;
}

bool doubles_fit(std::int32_t n) { return n <= INT32_MAX / 2; }

}  // namespace
}  // namespace dsp

using namespace dsp;

int32_t dspb_inter(const dsp_vec *a, const dsp_vec *b, dsp_vec *out) {
  const std::int32_t n = samples(*a);
  if (n != samples(*b) || !doubles_fit(n)) return -1;
  const operand even(*a, *out);
  const operand odd(*b, *out);
  const bool is_complex = even.is_complex() || odd.is_complex();
  const bool held_complex =
      out->is_complex != 0 || (even.is_shared() && even.is_complex()) || (odd.is_shared() && odd.is_complex());
  out->dx = mean_spacing(a->dx, b->dx) * 0.5;
  out->length = 2 * n;
  out->is_complex = is_complex;
  const bool keep = even.is_shared() || odd.is_shared();
  if ((keep ? dsp_realloc(out, n, held_complex) : dsp_alloc(out)) != 0) return -1;
  const double *x = even.data(*out);
  const double *y = odd.data(*out);
  double sample[2];  // of b, kept while a's place is taken: the output may be b
  for (std::int64_t i = n; i-- > 0;) {
    put(sample, is_complex, 0, y, odd.is_complex(), i);
    put(out->data, is_complex, 2 * i, x, even.is_complex(), i);
    put(out->data, is_complex, 2 * i + 1, sample, is_complex, 0);
  }
  return 0;
}

int32_t dspi_zinter(dsp_vec *v) {
  const std::int32_t n = samples(*v);
  if (!doubles_fit(n)) return -1;
  const bool is_complex = v->is_complex != 0;
  v->length = 2 * n;
  v->dx *= 0.5;
  if (dsp_realloc(v, n, v->is_complex) != 0) return -1;
  const double zero[2] = {0.0, 0.0};
  for (std::int64_t i = n; i-- > 0;) {
    put(v->data, is_complex, 2 * i, v->data, is_complex, i);
    put(v->data, is_complex, 2 * i + 1, zero, is_complex, 0);
  }
  return 0;
}
