#include <algorithm>

#include "dsp/core/temporary.h"
#include "dsp/dsp.h"
#include "dsp/stats/input.h"
#include "dsp/stats/result.h"

namespace dsp {
namespace {

// The middle two of n >= 1 real samples, sorted no further than that takes. NaN comes last, as in dspi_sort; it is set
// aside first, so that the selection compares plainly.
void select_middle(double *x, std::int64_t n, double *lower, double *upper) {
  double *const end = std::partition(x, x + n, [](double v) { return v == v; });
  double *const middle = x + n / 2;
  if (middle < end) std::nth_element(x, middle, end);
  *upper = *middle;
  *lower = middle < end && n > 1 ? *std::max_element(x, middle) : *middle;
}

}  // namespace
}  // namespace dsp

using namespace dsp;

int32_t dsps_median(const dsp_vec *in, dsp_vec *out) {
  temporary copy;
  if (dsp_copy(copy.get(), in) != 0) return -1;
  const stats_input x(*copy);
  double lower[2] = {};
  double upper[2] = {};
  if (x.n > 0 && !x.is_complex) {
    select_middle(copy->data, x.n, lower, upper);
  } else if (x.n > 0) {
    if (dspi_sort(copy.get()) != 0) return -1;
    std::copy_n(x.data + (x.n - 1) / 2 * 2, 2, lower);
    std::copy_n(x.data + x.n / 2 * 2, 2, upper);
  }
  const auto middle = [&](int part) { return x.n % 2 != 0 ? upper[part] : (lower[part] + upper[part]) * 0.5; };
  return put_sample(out, x.is_complex, middle(0), middle(1));
}
