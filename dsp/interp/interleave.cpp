// Interleaving: two signals merged sample by sample, or zeros inserted.
#include <cstdint>

#include "dsp/core/sharing.h"
#include "dsp/core/sizing.h"
#include "dsp/dsp.h"
#include "dsp/interp/interp_kernels.h"
#include "dsp/simd/traversal.h"

namespace dsp::interp {
namespace {

// Two samples of the output.
struct complex_pair {
  dsp_complex first;
  dsp_complex second;
};

dsp_complex widened(double x) { return {x, 0.0}; }
dsp_complex widened(dsp_complex z) { return z; }

bool can_double(int32_t n) { return n <= INT32_MAX / 2; }

}  // namespace
}  // namespace dsp::interp

using namespace dsp;
using namespace dsp::interp;

int32_t dspb_inter(const dsp_vec *a, const dsp_vec *b, dsp_vec *out) {
  const int32_t n = samples(*a);
  if (n != samples(*b) || !can_double(n)) return -1;
  const operand even(*a, *out);
  const operand odd(*b, *out);
  const bool is_complex = even.is_complex() || odd.is_complex();
  out->dx = mean_spacing(a->dx, b->dx) * 0.5;
  out->length = 2 * n;
  out->is_complex = is_complex;
  if (size_over(out, n, even, odd) != 0) return -1;
  const double *x = even.data(*out);
  const double *y = odd.data(*out);
  if (!is_complex)
    interp_kernels().interleave(x, y, out->data, n);
  else
    with_samples(x, even.is_complex(), y, odd.is_complex(), [out, n](auto *a_samples, auto *b_samples) {
      walk<complex_pair>(
          out->data, n,
          [](auto first, auto second) {
            return complex_pair{widened(first), widened(second)};
          },
          a_samples, b_samples);
    });
  return 0;
}

int32_t dspi_zinter(dsp_vec *v) {
  const int32_t n = samples(*v);
  if (!can_double(n)) return -1;
  v->length = 2 * n;
  v->dx *= 0.5;
  if (dsp_realloc(v, n, v->is_complex) != 0) return -1;
  const double *x = v->data;
  if (v->is_complex != 0)
    walk<complex_pair>(
        v->data, n,
        [](dsp_complex z) {
          return complex_pair{z, {0.0, 0.0}};
        },
        as<dsp_complex>(x));
  else
    walk<dsp_complex>(
        v->data, n, [](double sample) { return widened(sample); }, x);
  return 0;
}
