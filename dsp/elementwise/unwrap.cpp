// Phases continued across the turns that the arc tangent hides.
#include <cmath>

#include "dsp/core/sizing.h"
#include "dsp/dsp.h"
#include "dsp/elementwise/polar.h"

namespace dsp {
namespace {

constexpr double turn = 2.0 * pi;
constexpr double turn_high = 0x1.921fb544p+2;  // 32 bits, so that its product with a count of turns is exact
constexpr double turn_low = turn - turn_high;
constexpr double most_turns = 0x1p20;

// Brings samples to within half a turn of a reference. The remainder that fmod would give is exact, and so is
// d - m turn with the high part first; neighbouring samples mostly are the same number m of turns away, so the last
// one is tried first.
class unwrapper {
 public:
  double operator()(double x, double reference) {
    const double d = x - reference;
    if (!(std::fabs(d) > pi)) return x;
    const double guess = (d - high_) - low_;
    return reference + (std::fabs(guess) < pi ? guess : remainder(d));
  }

 private:
  double remainder(double d) {
    const double turns = std::floor(std::fabs(d) / turn);
    double r = std::fmod(std::fabs(d), turn);
    const double m = r > pi ? turns + 1.0 : turns;
    if (r > pi) r -= turn;
    // A quotient rounded up to the next whole number only costs the next guess.
    if (m < most_turns) {
      high_ = std::copysign(m * turn_high, d);
      low_ = std::copysign(m * turn_low, d);
    }
    return std::copysign(1.0, d) * r;
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
