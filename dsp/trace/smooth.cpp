// Centred moving averages whose window shrinks towards the ends of the trace.
#include <algorithm>
#include <cmath>
#include <cstdint>

#include "dsp/dsp.h"
#include "dsp/math/constants.h"
#include "dsp/trace/window_sum.h"

namespace dsp::trace {
namespace {

// Calls average(i, h, count) for the points of [start, stop) whose window [i - h, i + h] ends within the range: for
// `count` points from i on, all of whose windows have the same width. Neither end of the window moves back. Returns the
// number of points, or -1.
template <class Average>
int32_t smooth(int32_t n, int32_t start, int32_t stop, int32_t width, Average average) {
  if (start == stop) return 0;
  if (start < 0 || stop < start || width < 3 || width % 2 == 0) return -1;
  const int32_t last = stop - 1;
  int32_t i = start;
  while (i <= last && i < n) {
    const int32_t h = std::min({width / 2, i, n - 1 - i});
    if (h > last - i) break;
    const int32_t count = h == width / 2 ? std::min(n - 1, last) - h - i + 1 : 1;
    average(i, h, count);
    i += count;
  }
  return i - start;
}

double points(int32_t h) { return 2.0 * h + 1.0; }

// The window as it moves along a trace: calls enter(j) and leave(j) for the points that come and go.
class sliding_window {
 public:
  template <class Enter, class Leave>
  void move_to(int32_t first, int32_t last, Enter enter, Leave leave) {
    if (begin_ == end_) begin_ = end_ = first;
    while (end_ <= last) enter(end_++);
    while (begin_ < first) leave(begin_++);
  }

  void skip(int32_t count) {
    begin_ += count;
    end_ += count;
  }

 private:
  int32_t begin_ = 0, end_ = 0;
};

// The sum over the window.
class moving_sum {
 public:
  explicit moving_sum(const double *in) : in_(in) {}

  // Over `divisor`, for `count` points from i on.
  void over(double divisor, int32_t i, int32_t h, int32_t count, double *out) {
    const int32_t end = i + count;
    for (out[i] = at(i, h) / divisor, ++i; i < end;) {
      const int32_t block = std::min(end - i, slide_block);
      if (sum_.slide(in_ + i + h, in_ + i - h - 1, block, divisor, out + i))
        window_.skip(block);
      else
        for (int32_t k = i; k < i + block; ++k) out[k] = at(k, h) / divisor;
      i += block;
    }
  }

 private:
  double at(int32_t i, int32_t h) {
    if (h == 0) return in_[i];  // the first and the last point, exactly
    window_.move_to(
        i - h, i + h, [this](int32_t j) { sum_.add(in_[j]); }, [this](int32_t j) { sum_.remove(in_[j]); });
    return sum_.value();
  }

  const double *in_;
  sliding_window window_;
  window_sum sum_;
};

// The turns that unwrapping adds to the phases in a window, from the point before the window on.
class turns_in_window {
 public:
  explicit turns_in_window(const double *in) : in_(in) {}

  void enter(int32_t j) {
    newest_ += wrap(j);
    sum_ += newest_;
    ++count_;
  }

  // Unwrapping starts one point later from now on.
  void leave(int32_t j) {
    const int64_t turns = wrap(j);
    sum_ -= turns * count_;
    newest_ -= turns;
    --count_;
  }

  // The sum of all turns without whole turns for each point.
  double part() const { return static_cast<double>(sum_ > -count_ && sum_ < count_ ? sum_ : sum_ % count_); }

 private:
  // Turns that unwrapping adds from point j on.
  int64_t wrap(int32_t j) const {
    if (j == 0) return 0;
    const double step = in_[j] - in_[j - 1];
    return (step < -pi ? 1 : 0) - (step > pi ? 1 : 0);
  }

  const double *in_;
  int64_t count_ = 0;   // points
  int64_t newest_ = 0;  // turns added to the newest of them
  int64_t sum_ = 0;     // turns added to all of them
};

// The mean over the window of a phase that is unwrapped from the point before the window on, wrapped again.
class moving_phase {
 public:
  explicit moving_phase(const double *in) : sum_(in), turns_(in) {}

  void along(int32_t i, int32_t h, int32_t count, double *out) {
    sum_.over(1.0, i, h, count, out);
    window_.move_to(
        i - h, i + h, [this](int32_t j) { turns_.enter(j); }, [this](int32_t j) { turns_.leave(j); });
    window_.skip(count - 1);
    turns_in_window turns = turns_;
    out[i] = wrapped((out[i] + turns.part() * two_pi) / points(h));
    for (const int32_t end = i + count; ++i < end;) {
      turns.enter(i + h);
      turns.leave(i - h - 1);
      out[i] = wrapped((out[i] + turns.part() * two_pi) / points(h));
    }
    turns_ = turns;
  }

 private:
  static double wrapped(double mean) {
    if (mean > pi) return mean - (std::trunc((mean - pi) / two_pi) + 1.0) * two_pi;
    if (mean < -pi) return mean - (std::trunc((mean + pi) / two_pi) - 1.0) * two_pi;
    return mean;
  }

  moving_sum sum_;
  sliding_window window_;
  turns_in_window turns_;
};

// The means over the window of magnitude and phase, each for itself.
class moving_polar {
 public:
  explicit moving_polar(const dsp_complex *in) : in_(in) {}

  dsp_complex at(int32_t i, int32_t h) {
    const int32_t last = i + h;
    window_.move_to(
        i - h, last,
        [this](int32_t j) {
          const polar p = recent_[j % kept] = polar_of(j);
          magnitude_.add(p.magnitude);
          phase_.add(p.phase);
        },
        [this, last](int32_t j) {
          const polar p = last - j < kept ? recent_[j % kept] : polar_of(j);
          magnitude_.remove(p.magnitude);
          phase_.remove(p.phase);
        });
    const double magnitude = magnitude_.value() / points(h), phase = phase_.value() / points(h);
    return {magnitude * std::cos(phase), magnitude * std::sin(phase)};
  }

 private:
  struct polar {
    double magnitude, phase;
  };

  static constexpr int32_t kept = 256;

  polar polar_of(int32_t j) const { return {std::hypot(in_[j].re, in_[j].im), std::atan2(in_[j].im, in_[j].re)}; }

  const dsp_complex *in_;
  sliding_window window_;
  window_sum magnitude_, phase_;
  polar recent_[kept];  // of the newest points, point j at j % kept
};

}  // namespace
}  // namespace dsp::trace

using namespace dsp::trace;

int32_t vfpd_Smooth(const double *in, double *out, int32_t n, int32_t start, int32_t stop, int32_t width,
                    int32_t is_phase) {
  if (is_phase == 0) {
    moving_sum sum(in);
    return smooth(n, start, stop, width,
                  [&](int32_t i, int32_t h, int32_t count) { sum.over(points(h), i, h, count, out); });
  }
  moving_phase phase(in);
  return smooth(n, start, stop, width, [&](int32_t i, int32_t h, int32_t count) { phase.along(i, h, count, out); });
}

int32_t vfpd_SmoothCpx(const dsp_complex *in, dsp_complex *out, int32_t n, int32_t start, int32_t stop, int32_t width) {
  moving_polar mean(in);
  return smooth(n, start, stop, width, [&](int32_t i, int32_t h, int32_t count) {
    for (const int32_t end = i + count; i < end; ++i) out[i] = mean.at(i, h);
  });
}
