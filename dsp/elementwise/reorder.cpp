// The order of samples: reversed, shifted, sorted, halves exchanged.
#include <algorithm>
#include <tuple>

#include "dsp/core/sizing.h"
#include "dsp/dsp.h"
#include "dsp/elementwise/unary_kernels.h"
#include "dsp/math/saturation.h"
#include "dsp/math/sort.h"
#include "dsp/simd/traversal.h"

namespace dsp::elementwise {
namespace {

bool before(double a, double b) { return a < b; }
bool before(dsp_complex a, dsp_complex b) {
  const auto rank = [](dsp_complex z) {
    return std::make_tuple(saturated_square(z.re) + saturated_square(z.im), z.re, z.im);
  };
  return rank(a) < rank(b);
}

int32_t rotate_left(dsp_vec *v, int32_t k) {
  const int64_t n = doubles(*v);
  if (n > 0 && k == v->length - k)
    unary_kernels().exchange(v->data, v->data + n / 2, n / 2);
  else
    with_samples(v->data, v->is_complex != 0, [=](auto *x) { std::rotate(x, x + k, x + samples(*v)); });
  return 0;
}

}  // namespace
}  // namespace dsp::elementwise

using namespace dsp;
using namespace dsp::elementwise;

int32_t dspi_rev(dsp_vec *v) {
  unary_kernels().reverse(v->data, samples(*v), v->is_complex != 0);
  return 0;
}

int32_t dspi_shift(dsp_vec *v, int32_t k) { return dspu_subvec(v, v, k, v->length); }

int32_t dspi_sort(dsp_vec *v) {
  const int32_t n = samples(*v);
  with_samples(v->data, v->is_complex != 0,
               [n](auto *x) { sort(x, numbers_first(x, n), [](auto a, auto b) { return before(a, b); }); });
  return 0;
}

int32_t dspi_swap_halves(dsp_vec *v) { return rotate_left(v, samples(*v) - samples(*v) / 2); }

int32_t dspi_swap_halves2(dsp_vec *v) { return rotate_left(v, samples(*v) / 2); }
