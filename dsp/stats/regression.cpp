// Straight lines through points.
#include <cmath>
#include <cstring>

#include "dsp/dsp.h"
#include "dsp/stats/blocked_sum.h"
#include "dsp/stats/input.h"
#include "dsp/stats/provisional_mean.h"
#include "dsp/stats/saturated_powers.h"

namespace dsp::stats {
namespace {

// Means, population variances and covariance of points (x, y).
struct scatter {
  double n;
  double mean_x, mean_y;
  double var_x, var_y, cov;
};

// Sums over a trace: y against its index, which restarts at 0 in every block of 2048 samples. dsp.h documents this
// restart, and results depend on it.
template <class Powers>
struct trace_points {
  static constexpr int sums = 5;
  static constexpr int square = 3;
  double step;
  double shift_x;
  double shift_y;
  void operator()(const widest &y, int at, widest *term) const {
    const widest x = step * counting_from(at) - shift_x;
    const powers p = Powers()(y - shift_y);
    term[0] = x;
    term[1] = p.d;
    term[2] = x * x;
    term[3] = p.square;
    term[4] = x * p.d;
  }
};

// Sums over points in the plane: pairs for x and for y. The sum of products appears twice.
template <class Powers>
struct plane_points {
  static constexpr int sums = 3;
  static constexpr int square = 1;
  widest shift;
  void operator()(const widest &z, int, widest *term) const {
    const powers p = Powers()(z - shift);
    term[0] = p.d;
    term[1] = p.square;
    term[2] = p.d * swap_pairs(p.d);
  }
};

double not_below_zero(double x) { return x < 0.0 ? 0.0 : x; }

// `sum` in the order of trace_points.
scatter scatter_about(double shift_x, double shift_y, int64_t points, const double *sum) {
  const auto n = static_cast<double>(points);
  const double mx = sum[0] / n;
  const double my = sum[1] / n;
  return {n,
          shift_x + mx,
          shift_y + my,
          not_below_zero(sum[2] / n - mx * mx),
          not_below_zero(sum[3] / n - my * my),
          sum[4] / n - mx * my};
}

scatter scatter_of_trace(const stats_input &y, double dx) {
  const double step = dx == 0.0 ? 1.0 : dx;
  const double shift_x = step * static_cast<double>(y.n - 1) * 0.5;
  const double shift_y = provisional_mean(y, 0);
  double sum[5];
  saturating_sum<trace_points>(y.data, y.n, 1, sum, step, shift_x, shift_y);
  return scatter_about(shift_x, shift_y, y.n, sum);
}

scatter scatter_of_points(const stats_input &z) {
  const double shift[2] = {provisional_mean(z, 0), provisional_mean(z, 1)};
  double sum[6];
  saturating_sum<plane_points>(z.data, z.n, 2, sum, alternating(shift[0], shift[1]));
  return scatter_about(shift[0], shift[1], z.n, sum);
}

// The regression of y on x: slope, intercept, residual variance, then variances, covariance and correlation of the
// estimates. `unexplained` is 1 - r^2.
void fit_line(const scatter &s, double unexplained, double *fit) {
  const double residual = not_below_zero(s.var_y * unexplained);
  const double freedom = s.n == 2.0 ? 0.0 : s.n / (s.n - 2.0);
  const double slope_variance = s.var_x == 0.0 ? overflow_bound : residual / (s.var_x * s.n);
  const double square_x = s.var_x + s.mean_x * s.mean_x;
  const double correlation = square_x == 0.0 ? 0.0 : -s.mean_x / std::sqrt(square_x);
  fit[0] = s.var_x == 0.0 ? overflow_bound : s.cov / s.var_x;
  fit[1] = s.var_x == 0.0 ? overflow_bound : s.mean_y - s.mean_x * s.cov / s.var_x;
  fit[2] = residual * freedom;
  fit[3] = freedom * slope_variance;
  fit[4] = freedom * slope_variance * square_x;
  fit[5] = freedom * slope_variance * -s.mean_x;
  fit[6] = correlation < -1.0 ? -1.0 : correlation > 1.0 ? 1.0 : correlation;
}

struct correlation {
  double r;
  double unexplained;
};

correlation correlate(const scatter &s) {
  if (s.var_x == 0.0 || s.var_y == 0.0) return {0.0, 1.0};
  const double r = s.cov / std::sqrt(s.var_x * s.var_y);
  if (r < -1.0) return {-1.0, 0.0};
  if (r > 1.0) return {1.0, 0.0};
  return {r, 1.0 - r * r};
}

constexpr int summary_length = 20;

void summarise(const scatter &s, double *summary) {
  const scatter mirrored = {s.n, s.mean_y, s.mean_x, s.var_y, s.var_x, s.cov};
  const correlation c = correlate(s);
  const double sample = s.n / (s.n - 1.0);
  fit_line(s, c.unexplained, summary);
  fit_line(mirrored, c.unexplained, summary + 7);
  summary[14] = s.mean_x;
  summary[15] = s.mean_y;
  summary[16] = s.var_x * sample;
  summary[17] = s.var_y * sample;
  summary[18] = s.cov * sample;
  summary[19] = c.r;
}

void summarise(const dsp_vec &in, double *summary) {
  const stats_input points(in);
  for (int i = 0; i < summary_length; ++i) summary[i] = 0.0;
  if (points.n == 1) {  // one point: the line passes through it
    summary[1] = summary[15] = points.data[points.width - 1];
    summary[8] = summary[14] = points.is_complex ? points.data[0] : 0.0;
  } else if (points.n > 1) {
    summarise(points.is_complex ? scatter_of_points(points) : scatter_of_trace(points, in.dx), summary);
  }
}

int32_t put_summary(const dsp_vec *in, dsp_vec *out, int32_t count) {
  double summary[summary_length];
  summarise(*in, summary);
  out->length = count;
  out->is_complex = 0;
  if (dsp_alloc(out) != 0) return -1;
  std::memcpy(out->data, summary, static_cast<std::size_t>(count) * sizeof(double));
  return 0;
}

}  // namespace
}  // namespace dsp::stats

using namespace dsp;
using namespace dsp::stats;

int32_t dsps_lin_regres(const dsp_vec *in, dsp_vec *out) { return put_summary(in, out, 2); }

int32_t dsps_lin_regres2(const dsp_vec *in, dsp_vec *out) {
  if (put_summary(in, out, summary_length) != 0) return -1;
  out->dx = 1.0;
  return 0;
}
