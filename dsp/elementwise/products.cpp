// Sums of products of two signals: the dot product and the product of polynomials.
#include <type_traits>

#include "dsp/core/sharing.h"
#include "dsp/core/sizing.h"
#include "dsp/dsp.h"
#include "dsp/elementwise/complex_product.h"
#include "dsp/simd/traversal.h"

namespace dsp::elementwise {
namespace {

template <class A, class B>
using product_of = decltype(multiply(A(), B()));

void convolve(const dsp_vec &a, const dsp_vec &b, double *out) {
  const int64_t m = samples(a);
  const int64_t n = samples(b);
  with_samples(a.data, a.is_complex != 0, b.data, b.is_complex != 0, [=](const auto *x, const auto *y) {
    using sample = product_of<std::decay_t<decltype(*x)>, std::decay_t<decltype(*y)>>;
    auto *to = as<sample>(out);
    for (int64_t i = 0; i < m; ++i) {
      const auto factor = x[i];
      DSP_INDEPENDENT
      for (int64_t j = 0; j < n; ++j) accumulate(&to[i + j], multiply(factor, y[j]));
    }
  });
}

}  // namespace
}  // namespace dsp::elementwise

using namespace dsp;
using namespace dsp::elementwise;

int32_t dspb_pmul(const dsp_vec *a, const dsp_vec *b, dsp_vec *out) {
  const int64_t m = samples(*a);
  const int64_t n = samples(*b);
  const int64_t length = m > 0 && n > 0 ? m + n - 1 : 0;
  if (length > INT32_MAX) return -1;
  output result(out, {a, b});
  if (result.shape(static_cast<int32_t>(length), a->is_complex != 0 || b->is_complex != 0, a->dx) != 0) return -1;
  dspi_zero(result.get());
  convolve(*a, *b, result->data);
  return result.commit();
}

int32_t dspbs_dot(const dsp_vec *a, const dsp_vec *b, dsp_vec *out) {
  const int32_t n = samples(*a);
  if (n != samples(*b)) return -1;
  const bool is_complex = a->is_complex != 0 || b->is_complex != 0;
  double total[2] = {0.0, 0.0};
  with_samples(a->data, a->is_complex != 0, b->data, b->is_complex != 0, [n, &total](const auto *x, const auto *y) {
    using sample = product_of<std::decay_t<decltype(*x)>, std::decay_t<decltype(*y)>>;
    sample sum{};
    for (int32_t i = 0; i < n; ++i) accumulate(&sum, multiply(x[i], y[i]));
    *as<sample>(total) = sum;
  });
  const operand left(*a, *out);
  const operand right(*b, *out);
  out->length = 1;
  out->is_complex = is_complex;
  if (size_over(out, n, left, right) != 0) return -1;
  out->data[0] = total[0];
  if (is_complex) out->data[1] = total[1];
  return 0;
}
