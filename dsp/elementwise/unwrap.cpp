// Phases continued across the turns that the arc tangent hides.
#include <cmath>

#include "dsp/core/sizing.h"
#include "dsp/dsp.h"
#include "dsp/elementwise/polar.h"

namespace dsp {
namespace {

constexpr double turn = 2.0 * pi;
constexpr double turn_high = 0x1.921fb54p+2;  // 27 bits, so that its product with a count of turns is exact
constexpr double turn_low = turn - turn_high;
constexpr double countable = 0x1p25 * turn;

// Brings samples to within half a turn of a reference. The remainder that fmod would give is exact, and so is
// d - m turn with the high part first; neighbouring samples mostly are the same number m of turns away, or one more or
// less.
class unwrapper {
 public:
  double operator()(double x, double reference) {
    const double d = x - reference;
    if (!(std::fabs(d) > pi)) return x;
    const double r = beyond(d);
    return reference + (std::fabs(r) < pi ? r : remainder(d));
  }

 private:
  double beyond(double d) const { return (d - high_) - low_; }

  double remainder(double d) {
    const double r = beyond(d);
    if (std::fabs(r) < 3.0 * pi && std::fabs(d) < countable) {
      high_ += std::copysign(turn_high, r);
      low_ += std::copysign(turn_low, r);
      if (std::fabs(beyond(d)) < pi) return beyond(d);
    }
    return far_remainder(d);
  }

  double far_remainder(double d) {
    const double r = std::fmod(d, turn);
    const double half_turned = r > pi ? r - turn : r < -pi ? r + turn : r;
    if (std::fabs(d) < countable) {
      const double m = std::rint((d - half_turned) / turn);
      high_ = m * turn_high;
      low_ = m * turn_low;
    }
    return half_turned;
  }

  double high_ = 0.0, low_ = 0.0;  // of m turns
};

// The outputs in a sliding window that are numbers.
struct window_sum {
  double sum = 0.0;
  int32_t count = 0;
  void add(double y) {
    if (!std::isfinite(y)) return;
    sum += y;
    ++count;
  }
  void remove(double y) {
    if (!std::isfinite(y)) return;
    sum -= y;
    --count;
  }
};

}  // namespace
}  // namespace dsp

using namespace dsp;

int32_t dspi_unwrap(dsp_vec *v) {
  if (v->is_complex != 0) return -1;
  unwrapper unwrapped;
  double previous = 0.0;
  for (int32_t i = 0; i < samples(*v); ++i) {
    const double y = unwrapped(v->data[i], previous);
    v->data[i] = y;
    if (std::isfinite(y)) previous = y;
  }
  return 0;
}

int32_t dspi_unwrap_wnd(dsp_vec *v, int32_t window) {
  if (v->is_complex != 0 || window < 0) return -1;
  if (window == 1) return dspi_unwrap(v);
  unwrapper unwrapped;
  window_sum recent;
  double reference = 0.0;
  double *x = v->data;
  for (int32_t i = 0; i < samples(*v); ++i) {
    if (recent.count > 0) reference = recent.sum / recent.count;
    x[i] = unwrapped(x[i], reference);
    if (window == 0) continue;
    recent.add(x[i]);
    if (i >= window) recent.remove(x[i - window]);
  }
  return 0;
}
