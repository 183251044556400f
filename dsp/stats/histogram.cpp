// Counts of samples in bins of equal width.
#include <cmath>

#include "dsp/core/sharing.h"
#include "dsp/dsp.h"
#include "dsp/math/constants.h"
#include "dsp/math/saturation.h"
#include "dsp/stats/input.h"

namespace dsp::stats {
namespace {

// Relative: values this little above the last bin are counted in it.
constexpr double upper_edge = 1.0 + 10.0 * epsilon;

struct bins {
  double start;
  double width;
  double count;
};

double magnitude(double re, double im) {
  return overflows(re) || overflows(im) ? overflow_bound : std::sqrt(re * re + im * im);
}

// value(i) is the value of sample i.
template <class Value>
void count(int64_t n, const Value &value, const bins &b, double *counts) {
  for (int64_t i = 0; i < n; ++i) {
    double u = value(i) - b.start;
    if (b.width != 0.0)
      u /= b.width;
    else if (u != 0.0)
      u = overflow_bound;
    if (u >= 0.0 && u < b.count)
      counts[static_cast<int32_t>(u)] += 1.0;
    else if (u >= b.count && u < b.count * upper_edge)
      counts[static_cast<int64_t>(u) - 1] += 1.0;
  }
}

int32_t histogram(const stats_input &x, output *out, const bins &b, int32_t length) {
  if (out->shape(length, false, b.width) != 0) return -1;
  double *counts = (*out)->data;
  dspi_zero(out->get());
  if (x.is_complex)
    count(
        x.n, [&](int64_t i) { return magnitude(x.data[2 * i], x.data[2 * i + 1]); }, b, counts);
  else
    count(
        x.n, [&](int64_t i) { return x.data[i]; }, b, counts);
  return 0;
}

}  // namespace
}  // namespace dsp::stats

using namespace dsp;
using namespace dsp::stats;

int32_t dsps_hist(const dsp_vec *in, dsp_vec *out, double start, double bin_width, int32_t bin_count) {
  const stats_input x(*in);
  const bins b = {start, bin_width, static_cast<double>(bin_count)};
  output result(out, {in});
  return histogram(x, &result, b, bin_count) == 0 ? result.commit() : -1;
}
