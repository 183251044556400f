// The fixed recursive lowpass: four times (0.25 + 0.5 z^-1 + 0.5 z^-2 + 0.25 z^-3) / (1 + 0.5 z^-2).
#include <cstdint>

#include "dsp/core/history.h"
#include "dsp/core/output.h"
#include "dsp/core/sizing.h"
#include "dsp/dsp.h"

namespace dsp {
namespace {

constexpr int sections = 4;
constexpr int section_values = 3;
constexpr std::int32_t state_length = sections * section_values;

// The last three inner values of a section, newest first.
struct section {
  double s0, s1, s2;

  double step(double v) {
    const double u = v - 0.5 * s1;
    const double w = 0.25 * u + 0.5 * s0 + 0.5 * s1 + 0.25 * s2;
    s2 = s1;
    s1 = s0;
    s0 = u;
    return w;
  }
};

// One channel: every `width`-th double, of the samples and of the state.
void run_channel(const double *in, double *out, std::int64_t n, double *state, std::int32_t width) {
  section cascade[sections];
  for (int i = 0; i < sections; ++i) {
    const double *s = state + section_values * i * width;
    cascade[i] = {s[0], s[width], s[2 * width]};
  }
  for (std::int64_t i = 0; i < n * width; i += width) {
    double v = in[i];
    for (section &s : cascade) v = s.step(v);
    out[i] = v;
  }
  for (int i = 0; i < sections; ++i) {
    double *s = state + section_values * i * width;
    s[0] = cascade[i].s0;
    s[width] = cascade[i].s1;
    s[2 * width] = cascade[i].s2;
  }
}

}  // namespace
}  // namespace dsp

using namespace dsp;

int32_t dspd_hwfilt(const dsp_vec *in, dsp_vec *out, const void *reserved, dsp_vec *state) {
  if (reserved != nullptr || same_signal(state, in) || same_signal(state, out)) return -1;
  const dsp_vec source = *in;  // out may be in, and change
  if (dsp_output_prepare(&source, &out, nullptr, &state, state_length, DSP_OUT_SHARED_STATE) != 0) return -1;
  const std::int32_t width = source.is_complex != 0 ? 2 : 1;
  for (std::int32_t channel = 0; channel < width; ++channel)
    run_channel(source.data + channel, out->data + channel, samples(source), state->data + channel, width);
  return 0;
}

int32_t dspi_hwfilt(dsp_vec *v, const void *reserved) { return dspd_hwfilt(v, v, reserved, nullptr); }
