// Streaming convolution with any filter: the choice between the sum and transforms.
#include <algorithm>
#include <cstdint>

#include "dsp/core/sizing.h"
#include "dsp/core/stream.h"
#include "dsp/dsp.h"
#include "dsp/filter/fir_direct.h"
#include "dsp/filter/fir_transform.h"

namespace dsp::filter {
namespace {

// Short filters and complex ones are always summed.
partition parts_for(const past_and_block &x, const dsp_vec &h) {
  const int32_t longest_direct = x.width == 2 ? 35 : 45;
  if (h.is_complex != 0 || h.length <= longest_direct) return {0, 0, 0};
  return find_partition(x, h.length);
}

}  // namespace
}  // namespace dsp::filter

using namespace dsp;
using namespace dsp::filter;

int32_t dspd_fir(const dsp_vec *in, dsp_vec *out, const dsp_vec *h, dsp_vec *state) {
  if (shares_buffer(state, out)) return -1;
  if (h->length <= 0) return dsp_copy(out, in);
  if (shares_buffer(out, h) || shares_buffer(state, h) || shares_buffer(state, in)) return -1;
  const int32_t past = h->length - 1;
  stream_block block(in, out, state);
  if (dsp_output_prepare(&block, h, past, DSP_OUT_ALIAS) != 0) return -1;
  const past_and_block x(block.in, state, past);
  const partition p = parts_for(x, *h);
  if (p.parts == 0)
    filter_direct(x, *h, block.out->data);
  else if (filter_by_transforms(x, *h, p, block.out.get()) != 0)
    return -1;
  x.remember(state);
  return dsp_output_commit(block);
}
