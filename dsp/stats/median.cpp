// The median.
#include <algorithm>

#include "dsp/core/temporary.h"
#include "dsp/dsp.h"
#include "dsp/math/sort.h"
#include "dsp/stats/input.h"
#include "dsp/stats/result.h"

namespace dsp::stats {
namespace {

// Four independent maxima, so that comparisons do not wait for one another.
double greatest(const double *x, int64_t n) {
  const auto greater = [](double a, double b) { return a > b ? a : b; };
  double best[4] = {x[0], x[0], x[0], x[0]};
  int64_t i = 0;
  for (; i + 4 <= n; i += 4)
    for (int k = 0; k < 4; ++k) best[k] = greater(x[i + k], best[k]);
  for (; i < n; ++i) best[0] = greater(x[i], best[0]);
  return greater(greater(best[0], best[1]), greater(best[2], best[3]));
}

// The middle two of n >= 1 real samples, by selection instead of a full sort. NaN comes last, as in dspi_sort.
void select_middle(double *x, int64_t n, double *lower, double *upper) {
  const int64_t numbers = numbers_first(x, n);
  const int64_t middle = n / 2;
  if (middle < numbers) select(x, numbers, middle, [](double a, double b) { return a < b; });
  *upper = x[middle];
  *lower = middle < numbers && n > 1 ? greatest(x, middle) : x[middle];
}

}  // namespace
}  // namespace dsp::stats

using namespace dsp;
using namespace dsp::stats;

int32_t dsps_median(const dsp_vec *in, dsp_vec *out) {
  temporary copy;
  if (dsp_copy(copy.get(), in) != 0) return -1;
  const stats_input x(*copy);
  double lower[2] = {};
  double upper[2] = {};
  if (x.n > 0 && !x.is_complex) {
    select_middle(copy->data, x.n, lower, upper);
  } else if (x.n > 0) {
    dspi_sort(copy.get());
    std::copy_n(x.data + (x.n - 1) / 2 * 2, 2, lower);
    std::copy_n(x.data + x.n / 2 * 2, 2, upper);
  }
  const auto middle = [&](int part) { return x.n % 2 != 0 ? upper[part] : (lower[part] + upper[part]) * 0.5; };
  return put_sample(out, x.is_complex, middle(0), middle(1));
}
