// Discrete calculus: differences, integrals, level crossings.
#include "dsp/core/saturation.h"
#include "dsp/core/sizing.h"
#include "dsp/dsp.h"
#include "dsp/elementwise/by_sample.h"
#include "dsp/elementwise/complex_product.h"

namespace dsp {
namespace {

double minus(double a, double b) { return a - b; }
dsp_complex minus(dsp_complex a, dsp_complex b) { return {a.re - b.re, a.im - b.im}; }

double over(double a, double dx) { return a / dx; }
dsp_complex over(dsp_complex a, double dx) { return {a.re / dx, a.im / dx}; }

bool crosses(double a, double b, int32_t mode, double level) {
  return ((mode & 1) != 0 && a <= level && level < b) || ((mode & 2) != 0 && b < level && level <= a);
}

}  // namespace
}  // namespace dsp

using namespace dsp;

int32_t dspi_differ(dsp_vec *v) {
  const double dx = v->dx;
  by_sample(v, [dx](auto *x, int32_t n) {
    for (int32_t i = n; i-- > 0;) {
      const auto d = i > 0 ? minus(x[i], x[i - 1]) : x[i];
      x[i] = dx == 0.0 ? multiply(d, overflow_bound) : over(d, dx);
    }
  });
  return 0;
}

int32_t dspi_integ(dsp_vec *v) {
  const double dx = v->dx;
  by_sample(v, [dx](auto *x, int32_t n) {
    std::decay_t<decltype(*x)> sum{};
    for (int32_t i = 0; i < n; ++i) {
      accumulate(&sum, x[i]);
      x[i] = multiply(sum, dx);
    }
  });
  return 0;
}

int32_t dspi_pdiffer(dsp_vec *v) {
  by_sample(v, [](auto *x, int32_t n) {
    for (int32_t i = 1; i < n; ++i) x[i - 1] = multiply(x[i], static_cast<double>(i));
  });
  v->length = samples(*v) > 0 ? v->length - 1 : 0;
  return 0;
}

int32_t dspi_edge(dsp_vec *v, int32_t mode, double level) {
  if (v->is_complex != 0) return -1;
  const int32_t n = samples(*v);
  int32_t found = 0;
  double a = n > 0 ? v->data[0] : 0.0;
  for (int32_t i = 1; i < n; ++i) {
    const double b = v->data[i];
    if (crosses(a, b, mode, level)) v->data[found++] = v->dx * ((i - 1) + (level - a) / (b - a));
    a = b;
  }
  v->length = found;
  v->dx = 1.0;
  return 0;
}
