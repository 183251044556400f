#include "dsp/window/cosine_sum.h"

#include <cmath>

#include "dsp/math/angle.h"

namespace dsp::window {
namespace {

// Adds c cos(2 pi k d / period). Angles at fixed steps are exact; between them a short exact table rotates by cos(a +
// b) = cos a - (cos a (1 - cos b) + sin a sin b), which loses almost no digits.
class harmonic {
 public:
  harmonic(double c, double k, double period, int32_t count) : c_(c), k_(k), period_(period) {
    while (stride_ * stride_ < count && stride_ < longest) stride_ *= 2;
    for (int r = 0; r < stride_ && r < count; ++r) {
      const root b = root_at(k * r, period);
      versine_[r] = b.cos > 0.5 ? b.sin * b.sin / (1.0 + b.cos) : 1.0 - b.cos;
      sine_[r] = b.sin;
    }
  }

  void add(double first, int32_t count, double *to) const {
    for (int32_t done = 0; done < count; done += stride_) {
      const root a = root_at(k_ * (first + done), period_);
      const double c = c_ * a.cos;
      const double s = c_ * a.sin;
      const int n = count - done < stride_ ? count - done : stride_;
      double *out = to + done;
      for (int r = 0; r < n; ++r) out[r] += c - (c * versine_[r] + s * sine_[r]);
    }
  }

 private:
  static constexpr int longest = 64;
  int stride_ = 8;
  double c_;
  double k_;
  double period_;
  double versine_[longest];
  double sine_[longest];
};

double mean_gain(const cosine_sum &sum, int64_t n) {
  double constant = 0.0;
  for (int64_t k = 0; k < sum.terms; k += n) constant += sum.c[k];
  return constant / sum.c[0];
}

double aliased_power(const cosine_sum &sum, int64_t n) {
  const double *c = sum.c;
  double x = 0.0;
  for (int64_t k = 0; k < sum.terms; ++k) {
    if (k > 0 && 2 * k % n == 0) x += c[k] * c[k] / 2;
    for (int64_t j = k + 1; j < sum.terms; ++j) x += c[k] * c[j] * (((j - k) % n == 0) + ((j + k) % n == 0));
  }
  return x;
}

}  // namespace

void evaluate(const cosine_sum &sum, double period, double first, int32_t count, double *to) {
  for (int32_t i = 0; i < count; ++i) to[i] = sum.terms > 0 ? sum.c[0] : 0.0;
  for (int64_t k = 1; k < sum.terms; ++k)
    harmonic(sum.c[k], static_cast<double>(k), period, count).add(first, count, to);
}

double coherent_gain(const cosine_sum &sum, window_scale scale, int64_t n) {
  // With as many samples no product of two terms aliases to a constant.
  if (scale == window_scale::raw || n >= 2 * sum.terms - 1) return 1.0;
  return scale == window_scale::amplitude ? mean_gain(sum, n) : std::sqrt(1.0 + aliased_power(sum, n));
}

}  // namespace dsp::window
