// Phases continued across the turns that the arc tangent hides.
#include <cmath>

#include "dsp/core/sizing.h"
#include "dsp/dsp.h"
#include "dsp/elementwise/polar.h"

namespace dsp::elementwise {
namespace {

constexpr double turn = 2.0 * pi;
constexpr double turn_high = 0x1.921fb54p+2;  // 27 bits, so that its product with a count of turns is exact
constexpr double turn_low = turn - turn_high;

// Brings samples to within half a turn of a reference. The remainder that fmod would give is exact, and so is
// d - m turn with the high part first, for few enough turns. How many they are is guessed from the step between
// neighbouring samples, which waits for no result; that the guess was right shows in the remainder.
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

  // Of turns in a step, as a whole number; what a large step gives is no good guess.
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
}  // namespace dsp::elementwise

using namespace dsp;
using namespace dsp::elementwise;

int32_t dspi_unwrap(dsp_vec *v) {
  if (v->is_complex != 0) return -1;
  unwrapper unwrapped;
  double previous = 0.0;
  const int32_t n = samples(*v);
  double *x = v->data;
  for (int32_t i = 0; i < n; ++i)
    for (; i < n; ++i) {  // as far as there are numbers: a condition inside would be waited for
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
