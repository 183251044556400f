#include "dsp/core/temporary.h"
#include "dsp/dsp.h"
#include "dsp/stats/input.h"
#include "dsp/stats/result.h"

using namespace dsp;

int32_t dsps_median(const dsp_vec *in, dsp_vec *out) {
  temporary sorted;
  if (dsp_copy(sorted.get(), in) != 0 || dspi_sort(sorted.get()) != 0) return -1;
  const stats_input x(*sorted);
  if (x.n < 1) return put_sample(out, x.is_complex, 0.0, 0.0);
  const double *low = x.data + (x.n - 1) / 2 * x.parts;
  const double *high = x.data + x.n / 2 * x.parts;
  const auto middle = [&](int part) { return low == high ? low[part] : (low[part] + high[part]) * 0.5; };
  return put_sample(out, x.is_complex, middle(0), middle(x.parts - 1));
}
