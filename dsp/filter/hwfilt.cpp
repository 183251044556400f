// The fixed recursive lowpass: four times (0.25 + 0.5 z^-1 + 0.5 z^-2 + 0.25 z^-3) / (1 + 0.5 z^-2).
#include <cstdint>

#include "dsp/core/sizing.h"
#include "dsp/core/stream.h"
#include "dsp/dsp.h"
#include "dsp/filter/hwfilt_kernels.h"

using namespace dsp;
using namespace dsp::filter;

int32_t dspd_hwfilt(const dsp_vec *in, dsp_vec *out, const void *reserved, dsp_vec *state) {
  if (reserved != nullptr || shares_buffer(state, in) || shares_buffer(state, out)) return -1;
  constexpr int32_t state_length = hwfilt_sections * hwfilt_section_values;
  stream_block block(in, out, state);
  if (dsp_output_prepare(&block, nullptr, state_length, DSP_OUT_SHARED_STATE) != 0) return -1;
  const dsp_vec &source = block.in;
  if (samples(source) == 0) return 0;
  const int32_t width = source.is_complex != 0 ? 2 : 1;
  for (int32_t channel = 0; channel < width; ++channel)
    hwfilt_kernels().run_channel(source.data + channel, out->data + channel, samples(source),
                                 block.state->data + channel, width);
  return 0;
}

int32_t dspi_hwfilt(dsp_vec *v, const void *reserved) { return dspd_hwfilt(v, v, reserved, nullptr); }
