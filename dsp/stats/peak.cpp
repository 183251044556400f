// The extreme of a signal, refined to a fraction of a sample.
#include <cmath>
#include <cstdint>

#include "dsp/core/sharing.h"
#include "dsp/core/sizing.h"
#include "dsp/dsp.h"
#include "dsp/stats/extremes_kernels.h"

namespace dsp::stats {
namespace {

struct peak {
  double value;
  double position;
  int32_t status;
};

// The values searched: real samples, or the squared magnitudes of complex ones.
class trace {
 public:
  explicit trace(const dsp_vec &v) : data_(v.data), length_(samples(v)), is_complex_(v.is_complex != 0) {}

  int32_t length() const { return length_; }

  double operator[](int32_t i) const {
    if (!is_complex_) return data_[i];
    const double *z = data_ + 2 * static_cast<int64_t>(i);
    return z[0] * z[0] + z[1] * z[1];
  }

  int32_t extreme(bool least) const {
    const auto search = least ? extremes_kernels().least : extremes_kernels().greatest;
    const int64_t at = search(data_, length_, is_complex_ ? 2 : 1);
    return at < 0 ? 0 : static_cast<int32_t>(at);
  }

 private:
  const double *data_;
  int32_t length_;
  bool is_complex_;
};

int32_t chosen_sample(const trace &y, int32_t flags, int32_t index) {
  const int32_t last = y.length() - 1;
  if ((flags & DSP_PEAK_AT_INDEX) != 0) return index < 0 ? 0 : index > last ? last : index;
  return y.extreme((flags & DSP_PEAK_MIN) != 0);
}

peak unrefined(const trace &y, int32_t i) { return {y[i], static_cast<double>(i), 0}; }

peak parabolic(const trace &y, int32_t i) {
  if (i == 0 || i == y.length() - 1) return unrefined(y, i);
  const double slope = (y[i + 1] - y[i - 1]) * 0.5;
  const double curvature = (y[i - 1] + y[i + 1] - 2 * y[i]) * 0.5;
  return {y[i] + slope * slope / (-4 * curvature), i + slope / (-2 * curvature), 0};
}

// A Gaussian of fixed width through the maximum and its larger neighbour. `sharpness` is the drop of the logarithm one
// sample from the centre; the logarithm of the ratio of the two samples gives the centre's distance from their middle.
peak gaussian(const trace &y, int32_t i, bool corrected) {
  constexpr double sharpness = 0.315563649157834;
  constexpr double ratio_per_sample = 1.262254596631336;
  const int32_t last = y.length() - 1;
  if (last < 1) return unrefined(y, i);
  const bool pair_to_the_left = i == last || (i > 0 && y[i - 1] > y[i + 1]);
  const int32_t k = pair_to_the_left ? i - 1 : i;
  const double a = y[k];
  double u = std::log(y[k + 1] / a) / ratio_per_sample;
  if (corrected) u *= 1 - (u * u - 0.25) * 0.02036;
  const double offset = u + 0.5;
  if (offset < -0.5) return {a * std::exp(0.0788909122894585), k - 0.5, -1};
  if (offset > 1.5) return {a * std::exp(0.7100182106051266), k + 1.5, -1};
  return {a * std::exp(sharpness * (offset * offset)), k + offset, 0};
}

int32_t size_result(dsp_vec *out) {
  out->length = 2;
  out->is_complex = 0;
  return dsp_alloc(out);
}

}  // namespace
}  // namespace dsp::stats

using namespace dsp;
using namespace dsp::stats;

int32_t dsps_peak(const dsp_vec *in, dsp_vec *out, int32_t flags, int32_t index) {
  const trace y(*in);
  peak found = {0.0, 0.0, 0};
  if (y.length() > 0) {
    const int32_t i = chosen_sample(y, flags, index);
    switch (flags & DSP_PEAK_INTERP_MASK) {
      case DSP_PEAK_NO_INTERP:
        found = unrefined(y, i);
        break;
      case DSP_PEAK_PARABOLIC:
        found = parabolic(y, i);
        break;
      case DSP_PEAK_GAUSS:
        found = gaussian(y, i, false);
        break;
      case DSP_PEAK_GAUSS_CORR:
        found = gaussian(y, i, true);
        break;
      default:  // an output on the input's buffer stays unchanged
        if (!shares_buffer(*in, *out)) size_result(out);
        return -1;
    }
  }
  if (size_result(out) != 0) return -1;
  out->data[0] = found.value;
  out->data[1] = found.position;
  return found.status;
}
