// Variances and standard deviations.
#include <cmath>

#include "dsp/dsp.h"
#include "dsp/stats/input.h"
#include "dsp/stats/provisional_mean.h"
#include "dsp/stats/result.h"
#include "dsp/stats/sum_kernels.h"

namespace dsp::stats {
namespace {

// One pass about a provisional mean, so that the final subtraction loses few digits. Rounding may leave a small
// negative result, which is returned as it is.
double population_variance(const stats_input &x) {
  if (x.n < 1) return 0.0;
  const double about[2] = {provisional_mean(x, 0), provisional_mean(x, x.width - 1)};
  double total[4] = {};
  sum_kernels().spread(x.data, x.n, x.width, about, total);
  const auto n = static_cast<double>(x.n);
  const auto square = [](double v) { return v * v; };
  if (!x.is_complex) return total[1] / n - square(total[0] / n);
  return total[2] / n + total[3] / n - square(total[0] / n) - square(total[1] / n);
}

double sample_variance(const stats_input &x) {
  const auto n = static_cast<double>(x.n);
  const double variance = population_variance(x);
  return x.n < 2 ? variance : variance * (n / (n - 1.0));
}

}  // namespace
}  // namespace dsp::stats

using namespace dsp;
using namespace dsp::stats;

int32_t dsps_pop_var(const dsp_vec *in, dsp_vec *out) { return put_number(out, population_variance(stats_input(*in))); }

int32_t dsps_samp_var(const dsp_vec *in, dsp_vec *out) { return put_number(out, sample_variance(stats_input(*in))); }

int32_t dsps_pop_stddev(const dsp_vec *in, dsp_vec *out) {
  return put_number(out, std::sqrt(population_variance(stats_input(*in))));
}

int32_t dsps_samp_stddev(const dsp_vec *in, dsp_vec *out) {
  return put_number(out, std::sqrt(sample_variance(stats_input(*in))));
}
