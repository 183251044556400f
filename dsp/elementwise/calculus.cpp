// Discrete calculus: differences, integrals, level crossings.
#include <type_traits>

#include "dsp/core/sizing.h"
#include "dsp/dsp.h"
#include "dsp/elementwise/complex_product.h"
#include "dsp/elementwise/unary_kernels.h"
#include "dsp/simd/traversal.h"

namespace dsp::elementwise {
namespace {

bool crosses(double a, double b, int32_t mode, double level) {
  return ((mode & DSP_EDGE_RISING) != 0 && a <= level && level < b) ||
         ((mode & DSP_EDGE_FALLING) != 0 && b < level && level <= a);
}

}  // namespace
}  // namespace dsp::elementwise

using namespace dsp;
using namespace dsp::elementwise;

int32_t dspi_differ(dsp_vec *v) {
  unary_kernels().difference(v->data, doubles(*v), v->is_complex != 0 ? 2 : 1, v->dx);
  return 0;
}

int32_t dspi_integ(dsp_vec *v) {
  const int32_t n = samples(*v);
  const double dx = v->dx;
  with_samples(v->data, v->is_complex != 0, [n, dx](auto *x) {
    std::decay_t<decltype(*x)> sum{};
    for (int32_t i = 0; i < n; ++i) {
      accumulate(&sum, x[i]);
      x[i] = multiply(sum, dx);
    }
  });
  return 0;
}

int32_t dspi_pdiffer(dsp_vec *v) {
  const int32_t n = samples(*v);
  unary_kernels().derivative(v->data, n, v->is_complex != 0);
  v->length = n > 0 ? n - 1 : 0;
  return 0;
}

int32_t dspi_edge(dsp_vec *v, int32_t mode, double level) {
  if (v->is_complex != 0) return -1;
  const int32_t n = samples(*v);
  int32_t found = 0;
  for (int32_t i = 1; i < n; ++i) {  // writes behind what it has read: there are fewer crossings than samples
    const double a = v->data[i - 1], b = v->data[i];
    if (crosses(a, b, mode, level)) v->data[found++] = v->dx * ((i - 1) + (level - a) / (b - a));
  }
  v->length = found;
  v->dx = 1.0;
  return 0;
}
