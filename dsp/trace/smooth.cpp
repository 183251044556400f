// Centred moving averages whose window shrinks towards the ends of the trace.
#include <algorithm>
#include <cmath>
#include <cstdint>

#include "dsp/dsp.h"
#include "dsp/math/constants.h"

namespace dsp::trace {
namespace {

// Calls average(i, h, same) for the points of [start, stop) whose window [i - h, i + h] ends within the range; `same`
// says that the window has only moved by one point. Returns the count of points, or -1.
template <class Average>
int32_t smooth(int32_t n, int32_t start, int32_t stop, int32_t width, Average average) {
  if (start == stop) return 0;
  if (start < 0 || stop < start || width < 3 || width % 2 == 0) return -1;
  const int32_t last = stop - 1;
  int32_t i = start;
  for (int32_t previous = -1; i <= last && i < n; ++i) {
    const int32_t h = std::min({width / 2, i, n - 1 - i});
    if (h > last - i) break;
    average(i, h, h == previous);
    previous = h;
  }
  return i - start;
}

// The sum over a window, carried from one window to the next of the same width.
template <class Value>
class running_sum {
 public:
  explicit running_sum(Value value) : value_(value) {}

  double over(int32_t i, int32_t h, bool same) {
    if (same) {
      sum_ = sum_ - value_(i - h - 1) + value_(i + h);
    } else {
      sum_ = 0.0;
      for (int32_t j = i - h; j <= i + h; ++j) sum_ += value_(j);
    }
    return sum_;
  }

 private:
  Value value_;
  double sum_ = 0.0;
};

double points(int32_t h) { return 2.0 * h + 1.0; }

// The phase unwrapped from the point before the window on, averaged, and wrapped again.
double mean_phase(const double *in, int32_t i, int32_t h) {
  double sum = 0.0;
  double turns = 0.0;
  for (int32_t j = i - h; j <= i + h; ++j) {
    if (j > 0) {
      const double step = in[j] - in[j - 1];
      turns += step < -pi ? 1.0 : step > pi ? -1.0 : 0.0;
    }
    sum += in[j] + turns * two_pi;
  }
  const double mean = sum / points(h);
  if (mean > pi) return mean - (std::trunc((mean - pi) / two_pi) + 1.0) * two_pi;
  if (mean < -pi) return mean - (std::trunc((mean + pi) / two_pi) - 1.0) * two_pi;
  return mean;
}

}  // namespace
}  // namespace dsp::trace

using namespace dsp;
using namespace dsp::trace;

int32_t vfpd_Smooth(const double *in, double *out, int32_t n, int32_t start, int32_t stop, int32_t width,
                    int32_t is_phase) {
  if (is_phase != 0)
    return smooth(n, start, stop, width, [=](int32_t i, int32_t h, bool) { out[i] = mean_phase(in, i, h); });
  running_sum sum([in](int32_t j) { return in[j]; });
  return smooth(n, start, stop, width,
                [&sum, out](int32_t i, int32_t h, bool same) { out[i] = sum.over(i, h, same) / points(h); });
}

int32_t vfpd_SmoothCpx(const dsp_complex *in, dsp_complex *out, int32_t n, int32_t start, int32_t stop, int32_t width) {
  running_sum magnitudes([in](int32_t j) { return std::hypot(in[j].re, in[j].im); });
  running_sum phases([in](int32_t j) { return std::atan2(in[j].im, in[j].re); });
  return smooth(n, start, stop, width, [&](int32_t i, int32_t h, bool same) {
    const double magnitude = magnitudes.over(i, h, same) / points(h);
    const double phase = phases.over(i, h, same) / points(h);
    out[i] = {magnitude * std::cos(phase), magnitude * std::sin(phase)};
  });
}
