// Phases without the jumps of a whole turn that the arc tangent leaves.
#include <cmath>

#include "dsp/core/sizing.h"
#include "dsp/dsp.h"
#include "dsp/elementwise/polar.h"

namespace dsp::elementwise {
namespace {

constexpr double turn = 2.0 * pi;
constexpr double turn_high = 0x1.921fb54p+2;  // 27 bits, so that its product with a count of turns is exact
constexpr double turn_low = turn - turn_high;

// Moves samples by whole turns to within half a turn of a reference. The remainder of fmod() is exact, and so is d - m
// turn with the high part of a turn first, while m is small. m is predicted from the step between neighbouring samples,
// which depends on no earlier result; the remainder shows whether the prediction was right, and fmod() is called when
// not.
class unwrapper {
 public:
  double operator()(double x, double reference) {
    const double step = x - neighbour_;
    neighbour_ = x;
    turns_ += nearest(step);
    const double d = x - reference;
    if (!(std::fabs(d) > pi)) {
      turns_ = 0.0;
      return x;
    }
    const double r = (d - turns_ * turn_high) - turns_ * turn_low;
    return reference + (std::fabs(r) < pi && std::fabs(turns_) < most_turns ? r : remainder(d));
  }

 private:
  static constexpr double most_turns = 0x1p25;

  // The whole turns in a step. Large steps give a poor prediction.
  static double nearest(double step) {
    constexpr double rounder = 0x1.8p52;
    return (step * (1.0 / turn) + rounder) - rounder;
  }

  double remainder(double d) {
    const double r = std::fmod(d, turn);
    const double half_turned = r > pi ? r - turn : r < -pi ? r + turn : r;
    turns_ = std::rint((d - half_turned) / turn);
    return half_turned;
  }

  double neighbour_ = 0.0;
  double turns_ = 0.0;  // between the last sample and its reference
};

// Sum and count of the finite outputs in a sliding window.
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
}  // namespace dsp::elementwise

using namespace dsp;
using namespace dsp::elementwise;

int32_t dspi_unwrap(dsp_vec *v) {
  if (v->is_complex != 0) return -1;
  unwrapper unwrapped;
  double previous = 0.0;
  const int32_t n = samples(*v);
  double *x = v->data;
  // The inner loop runs until a sample is not finite: choosing the reference of every sample would delay the next one.
  for (int32_t i = 0; i < n; ++i)
    for (; i < n; ++i) {
      x[i] = unwrapped(x[i], previous);
      if (!std::isfinite(x[i])) break;
      previous = x[i];
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
