// The sum over a window that slides along a trace.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

#include "dsp/math/double_double.h"
#include "dsp/trace/trace_kernels.h"

namespace dsp::trace {

// Numbers that might overflow are summed apart, scaled down; infinities and NaN are counted.
class window_sum {
 public:
  void add(double x) { change(x, 1); }
  void remove(double x) { change(x, -1); }

  double value() const {
    const double sum = numbers_.sum + numbers_.lost;
    return special_ == 0 ? sum : sum + (large_.sum + large_.lost) / scale + not_finite();
  }

  // As trace_kernels().slide; false, and nothing is done, also when a value in the window needs more care.
  bool slide(const double *enters, const double *leaves, int32_t n, double divisor, double *out) {
    return special_ == 0 && trace_kernels().slide(&numbers_, enters, leaves, n, divisor, out);
  }

 private:
  static constexpr double scale = 0x1p-64;

  static void add_to(compensated_sum *s, double x) {
    const double_double sum = double_double::sum(s->sum, x);
    s->sum = sum.hi;
    s->lost += sum.lo;
  }

  void change(double x, int32_t by) {
    if (std::fabs(x) <= 0x1p990)
      add_to(&numbers_, by * x);
    else
      change_special(x, by);
  }

  void change_special(double x, int32_t by) {
    special_ += by;
    if (std::isfinite(x))
      add_to(&large_, by * x * scale);
    else
      (std::isnan(x) ? nan_ : x > 0.0 ? plus_ : minus_) += by;
  }

  double not_finite() const {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    if (nan_ != 0) return std::numeric_limits<double>::quiet_NaN();
    return (plus_ != 0 ? infinity : 0.0) - (minus_ != 0 ? infinity : 0.0);
  }

  compensated_sum numbers_, large_;
  int32_t special_ = 0, nan_ = 0, plus_ = 0, minus_ = 0;
};

}  // namespace dsp::trace
