// Streaming convolution with a filter given by its first half.
#include <algorithm>
#include <cstdint>

#include "dsp/core/caches.h"
#include "dsp/core/sizing.h"
#include "dsp/core/stream.h"
#include "dsp/core/work_signal.h"
#include "dsp/dsp.h"
#include "dsp/filter/folded.h"

namespace dsp::filter {
namespace {

work_signal full_filter;

// The half and its mirror image, in a work signal.
const dsp_vec *expand(const dsp_vec &half, bool odd, bool anti) {
  const int64_t length = full_length(half, odd);
  if (length > INT32_MAX) return nullptr;
  dsp_vec *full = full_filter.obtain();
  full->dx = half.dx;
  full->is_complex = half.is_complex;
  full->length = static_cast<int32_t>(length);
  if (dsp_alloc(full) != 0) return nullptr;
  const int64_t width = half.is_complex != 0 ? 2 : 1;
  const int64_t given = doubles(half);
  std::copy_n(half.data, given, full->data);
  for (int64_t i = given; i < length * width; ++i) {
    const double mirrored = half.data[(length - 1 - i / width) * width + i % width];
    full->data[i] = anti ? -mirrored : mirrored;
  }
  return full;
}

}  // namespace

int32_t free_sfir_work() { return full_filter.release(); }

}  // namespace dsp::filter

using namespace dsp;
using namespace dsp::filter;

int32_t dspd_sfir(const dsp_vec *in, dsp_vec *out, const dsp_vec *half, int32_t odd, int32_t anti, dsp_vec *state) {
  if (shares_buffer(state, out)) return -1;
  if (half->length <= 0) return dsp_copy(out, in);
  if (shares_buffer(out, half) || shares_buffer(state, half)) return -1;
  if (!foldable(*half, odd != 0)) {
    const dsp_vec *full = expand(*half, odd != 0, anti != 0);
    return full != nullptr ? dspd_fir(in, out, full, state) : -1;
  }
  if (shares_buffer(state, in)) return -1;
  const folded_filter filter = fold(*half, odd != 0, anti != 0);
  const int32_t past = filter.length() - 1;
  stream_block block(in, out, state);
  if (dsp_output_prepare(&block, nullptr, past, DSP_OUT_ALIAS) != 0) return -1;
  const past_and_block x(block.in, state, past);
  filter_folded(x, filter, block.out->data);
  x.remember(state);
  return dsp_output_commit(block);
}
