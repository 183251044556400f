// The sum, the sum of squares and the root mean square.
#include <cmath>

#include "dsp/dsp.h"
#include "dsp/stats/input.h"
#include "dsp/stats/result.h"
#include "dsp/stats/sum_kernels.h"

namespace dsp::stats {
namespace {

double sum_of_squares(const stats_input &x) {
  double total[2] = {};
  sum_kernels().squares(x.data, x.n, x.width, total);
  return total[0] + total[1];
}

}  // namespace
}  // namespace dsp::stats

using namespace dsp;
using namespace dsp::stats;

int32_t dsps_sum(const dsp_vec *in, dsp_vec *out) {
  const stats_input x(*in);
  double total[2] = {};
  sum_kernels().values(x.data, x.n, x.width, total);
  return put_sample(out, x.is_complex, total[0], total[1]);
}

int32_t dsps_magsq_sum(const dsp_vec *in, dsp_vec *out) { return put_number(out, sum_of_squares(stats_input(*in))); }

int32_t dsps_rms(const dsp_vec *in, dsp_vec *out) {
  const stats_input x(*in);
  return put_number(out, x.n > 0 ? std::sqrt(sum_of_squares(x) / static_cast<double>(x.n)) : 0.0);
}
