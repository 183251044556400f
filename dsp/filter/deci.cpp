// Keeping every D-th sample of a stream.
#include "dsp/core/stream.h"
#include "dsp/dsp.h"
#include "dsp/filter/decimation.h"

using namespace dsp;
using namespace dsp::filter;

int32_t dspd_deci(const dsp_vec *in, dsp_vec *out, int32_t factor, dsp_vec *state) {
  if (shares_buffer(state, in) || shares_buffer(state, out)) return -1;
  stream_block block(in, out, state);
  if (dsp_output_prepare(&block, nullptr, 1, 0) != 0) return -1;
  const dsp_vec &source = block.in;
  const decimation kept(source, factor, state);
  const int64_t d = std::max(factor, 1);
  if (source.is_complex != 0) {
    const double *from = source.data + 2 * int64_t{kept.first};
    for (int64_t i = 0; i < kept.count; ++i) {
      out->data[2 * i] = from[2 * i * d];
      out->data[2 * i + 1] = from[2 * i * d + 1];
    }
  } else {
    const double *from = source.data + kept.first;
    for (int64_t i = 0; i < kept.count; ++i) out->data[i] = from[i * d];
  }
  out->length = kept.count;
  out->dx = source.dx * static_cast<double>(d);
  if (state != nullptr) state->data[0] = kept.next_phase;
  return 0;
}
