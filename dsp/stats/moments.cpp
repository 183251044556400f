// Skewness and excess kurtosis.
#include <cmath>

#include "dsp/dsp.h"
#include "dsp/stats/blocked_sum.h"
#include "dsp/stats/input.h"
#include "dsp/stats/provisional_mean.h"
#include "dsp/stats/result.h"
#include "dsp/stats/saturated_powers.h"

namespace dsp::stats {
namespace {

template <class Powers>
using up_to_cubes = differences<Powers, 3>;

template <class Powers>
struct squares_and_fourth_powers {
  static constexpr int sums = 2;
  static constexpr int square = 0;
  widest reference;
  void operator()(const widest &x, int, widest *term) const {
    const powers p = Powers()(x - reference);
    term[0] = p.square;
    term[1] = p.square * p.square;
  }
};

struct clamped {
  static constexpr int sums = 1;
  void operator()(const widest &x, int, widest *term) const {
    term[0] = saturated(x, x, overflow_bound, -overflow_bound);
  }
};

double clamped_mean(const stats_input &x) {
  double total;
  blocked_sum(x.data, x.n, 1, clamped(), &total);
  return total / static_cast<double>(x.n);
}

double skewness(const stats_input &x) {
  if (x.n < 1) return 0.0;
  const widest about = broadcast(provisional_mean(x, 0));
  double total[3];
  saturating_sum<up_to_cubes>(x.data, x.n, 1, total, about);
  const auto n = static_cast<double>(x.n);
  const double m1 = total[0] / n;
  const double m2 = total[1] / n;
  const double variance = m2 - m1 * m1;
  const double m3 = total[2] / n - 3.0 * m1 * m2 + 2.0 * m1 * m1 * m1;
  const double scale = variance * std::sqrt(variance);
  if (scale != 0.0) return m3 / scale;
  return m3 != 0.0 ? overflow_bound : 0.0;
}

// About the true mean: with fourth powers a provisional mean would cost digits.
double excess_kurtosis(const stats_input &x) {
  if (x.n < 1) return -3.0;
  const widest about = broadcast(clamped_mean(x));
  double total[2];
  saturating_sum<squares_and_fourth_powers>(x.data, x.n, 1, total, about);
  const auto n = static_cast<double>(x.n);
  const double variance = total[0] / n;
  const double m4 = total[1] / n;
  if (variance * variance != 0.0) return m4 / (variance * variance) - 3.0;
  return m4 != 0.0 ? overflow_bound : -3.0;
}

}  // namespace
}  // namespace dsp::stats

using namespace dsp;
using namespace dsp::stats;

int32_t dsps_skew(const dsp_vec *in, dsp_vec *out) {
  return in->is_complex != 0 ? -1 : put_number(out, skewness(stats_input(*in)));
}

int32_t dsps_excess(const dsp_vec *in, dsp_vec *out) {
  return in->is_complex != 0 ? -1 : put_number(out, excess_kurtosis(stats_input(*in)));
}
