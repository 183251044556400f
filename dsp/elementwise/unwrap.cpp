// Phases continued across the turns that the arc tangent hides.
#include <cmath>

#include "dsp/core/sizing.h"
#include "dsp/dsp.h"
#include "dsp/elementwise/kernels.h"

namespace dsp {
namespace {

constexpr double turn = 2.0 * pi;

// x brought to within half a turn of the reference.
double unwrapped(double x, double reference) {
  const double d = x - reference;
  if (!(d > pi || d < -pi)) return x;
  const double r = std::fmod(d, turn);
  return reference + (r > pi ? r - turn : r < -pi ? r + turn : r);
}

void unwrap_to_mean(double *x, int32_t n, int32_t window) {
  double sum = 0.0;  // of the outputs in the window that are numbers
  int32_t count = 0;
  double reference = 0.0;
  for (int32_t i = 0; i < n; ++i) {
    if (count > 0) reference = sum / count;
    x[i] = unwrapped(x[i], reference);
    const auto weigh = [&](double y, int32_t times) {
      if (!std::isfinite(y)) return;
      sum += times * y;
      count += times;
    };
    if (window == 0) continue;
    weigh(x[i], 1);
    if (i >= window) weigh(x[i - window], -1);
  }
}

}  // namespace
}  // namespace dsp

using namespace dsp;

int32_t dspi_unwrap(dsp_vec *v) {
  if (v->is_complex != 0) return -1;
  double previous = 0.0;
  for (int32_t i = 0; i < samples(*v); ++i) {
    v->data[i] = unwrapped(v->data[i], previous);
    if (std::isfinite(v->data[i])) previous = v->data[i];
  }
  return 0;
}

int32_t dspi_unwrap_wnd(dsp_vec *v, int32_t window) {
  if (v->is_complex != 0 || window < 0) return -1;
  if (window == 1) return dspi_unwrap(v);
  unwrap_to_mean(v->data, samples(*v), window);
  return 0;
}
