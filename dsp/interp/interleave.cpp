// Twice the samples: two signals merged, or zeros put in between.
#include <cstdint>

#include "dsp/core/operands.h"
#include "dsp/core/sizing.h"
#include "dsp/dsp.h"
#include "dsp/interp/kernels.h"

namespace dsp {
namespace {

// A sample on its way, real or with both parts.
template <bool Complex>
struct sample {
  double re;
  double im = 0.0;
  sample(const double *in, std::int64_t i) : re(in[Complex ? 2 * i : i]) {
    if (Complex) im = in[2 * i + 1];
  }
};

void put(double *out, std::int64_t at, double re, double im) {
  out[2 * at] = re;
  out[2 * at + 1] = im;
}

// From the back, each pair read before it is written: `out` may be `a` or `b`.
template <bool A, bool B>
void interleave_complex(const double *a, const double *b, double *out, std::int64_t n) {
  for (std::int64_t i = n; i-- > 0;) {
    const sample<A> x(a, i);
    const sample<B> y(b, i);
    put(out, 2 * i, x.re, x.im);
    put(out, 2 * i + 1, y.re, y.im);
  }
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
  const bool held_complex = even.keeps_complex() || odd.keeps_complex();
  out->dx = mean_spacing(a->dx, b->dx) * 0.5;
  out->length = 2 * n;
  out->is_complex = is_complex;
  const bool keep = even.is_shared() || odd.is_shared();
  if ((keep ? dsp_realloc(out, n, held_complex) : dsp_alloc(out)) != 0) return -1;
  const double *x = even.data(*out);
  const double *y = odd.data(*out);
  if (!is_complex)
    interp().interleave(x, y, out->data, n);
  else if (!even.is_complex())
    interleave_complex<false, true>(x, y, out->data, n);
  else if (!odd.is_complex())
    interleave_complex<true, false>(x, y, out->data, n);
  else
    interleave_complex<true, true>(x, y, out->data, n);
  return 0;
}

int32_t dspi_zinter(dsp_vec *v) {
  const std::int32_t n = samples(*v);
  if (!doubles_fit(n)) return -1;
  v->length = 2 * n;
  v->dx *= 0.5;
  if (dsp_realloc(v, n, v->is_complex) != 0) return -1;
  double *const x = v->data;
  if (v->is_complex != 0) {
    for (std::int64_t i = n; i-- > 0;) {
      put(x, 2 * i, x[2 * i], x[2 * i + 1]);
      put(x, 2 * i + 1, 0.0, 0.0);
    }
  } else {
    for (std::int64_t i = n; i-- > 0;) put(x, i, x[i], 0.0);
  }
  return 0;
}
