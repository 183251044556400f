#include <cmath>

#include "dsp/core/history.h"
#include "dsp/core/sizing.h"
#include "dsp/core/temporary.h"
#include "dsp/dsp.h"
#include "dsp/math/saturation.h"
#include "dsp/stats/input.h"

namespace dsp::stats {
namespace {

constexpr double upper_edge = 1.0 + 10.0 * 0x1p-52;  // values this little beyond the last bin belong to it

struct bins {
  double start;
  double width;
  double count;
};

double magnitude(double re, double im) {
  return overflows(re) || overflows(im) ? overflow_bound : std::sqrt(re * re + im * im);
}

// value(i) is what is counted of sample i.
template <class Value>
void count(std::int64_t n, const Value &value, const bins &b, double *counts) {
  for (std::int64_t i = 0; i < n; ++i) {
    double u = value(i) - b.start;
    if (b.width != 0.0)
      u /= b.width;
    else if (u != 0.0)
      u = overflow_bound;
    if (u >= 0.0 && u < b.count)
      counts[static_cast<int32_t>(u)] += 1.0;
    else if (u >= b.count && u < b.count * upper_edge)
      counts[static_cast<std::int64_t>(u) - 1] += 1.0;
  }
}

int32_t histogram(const stats_input &x, dsp_vec *out, const bins &b, int32_t length) {
  out->is_complex = 0;
  out->length = length;
  out->dx = b.width;
  if (dsp_alloc(out) != 0) return -1;
  dspi_zero(out);
  if (x.is_complex)
    count(
        x.n, [&](std::int64_t i) { return magnitude(x.data[2 * i], x.data[2 * i + 1]); }, b, out->data);
  else
    count(
        x.n, [&](std::int64_t i) { return x.data[i]; }, b, out->data);
  return 0;
}

}  // namespace
}  // namespace dsp::stats

using namespace dsp;
using namespace dsp::stats;

int32_t dsps_hist(const dsp_vec *in, dsp_vec *out, double start, double bin_width, int32_t bin_count) {
  const stats_input x(*in);
  const bins b = {start, bin_width, static_cast<double>(bin_count)};
  if (!same_signal(in, out)) return histogram(x, out, b, bin_count);
  temporary result;
  if (histogram(x, result.get(), b, bin_count) != 0) return -1;
  return dsp_copy(out, result.get());
}
