// Maximum and minimum.
#include "dsp/dsp.h"
#include "dsp/math/saturation.h"
#include "dsp/stats/extremes_kernels.h"
#include "dsp/stats/input.h"
#include "dsp/stats/result.h"

namespace dsp::stats {
namespace {

// Writes the sample at index `at`, or (re, im) when the search found none.
int32_t put_extreme(const stats_input &x, dsp_vec *out, int64_t at, double re, double im) {
  if (x.n < 1) return put_sample(out, x.is_complex, 0.0, 0.0);
  if (at < 0) return put_sample(out, x.is_complex, re, im);
  const double *sample = x.data + at * x.width;
  return put_sample(out, x.is_complex, sample[0], sample[x.width - 1]);
}

}  // namespace
}  // namespace dsp::stats

using namespace dsp;
using namespace dsp::stats;

int32_t dsps_max(const dsp_vec *in, dsp_vec *out) {
  const stats_input x(*in);
  const double nothing = x.is_complex ? 0.0 : -overflow_bound;
  return put_extreme(x, out, extremes_kernels().greatest(x.data, x.n, x.width), nothing, nothing);
}

int32_t dsps_min(const dsp_vec *in, dsp_vec *out) {
  const stats_input x(*in);
  return put_extreme(x, out, extremes_kernels().least(x.data, x.n, x.width), overflow_bound, overflow_bound);
}
