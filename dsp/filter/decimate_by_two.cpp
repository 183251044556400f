#include "dsp/core/decimate_by_two.h"

#include <algorithm>
#include <cstdint>

#include "dsp/core/sizing.h"
#include "dsp/core/stream.h"
#include "dsp/filter/decimation.h"
#include "dsp/filter/folded.h"

namespace dsp::filter {
namespace {

// Outputs are written over the block's front, never over samples that the next ones need.
static_assert(halved_limit >= folded_limit);

constexpr int64_t span_limit = 2 * halved_limit + folded_limit;  // samples that a tile of outputs needs

// Output m is that of the block's sample first + 2 m.
void make_kept(const past_and_block &x, const folded_filter &h, const decimation &kept, double *y) {
  double joined[2 * span_limit];
  for (int64_t m = 0; m < kept.count; m += halved_limit) {
    const int64_t outputs = std::min<int64_t>(halved_limit, kept.count - m);
    const int64_t needed = 2 * (outputs + h.length() / 2);
    const int64_t first = kept.first + 2 * m;
    const double *span = x.contiguous(first, needed);
    if (span == nullptr) {
      x.copy(first, needed, joined);
      span = joined;
    }
    fir_kernels().halved_taps({y + m * x.width, span, outputs * x.width, x.width}, h);
  }
}

}  // namespace

int32_t decimate_by_two(const dsp_vec *in, dsp_vec *out, dsp_vec *scratch, const dsp_vec *half, bool odd,
                        dsp_vec *history, dsp_vec *phase) {
  if (!foldable(*half, odd))
    return dspd_sfir(in, scratch, half, odd, 0, history) == 0 ? dspd_deci(scratch, out, 2, phase) : -1;
  const folded_filter filter = fold(*half, odd, false);
  const int32_t past = filter.length() - 1;
  stream_block block(in, out, history);
  if (dsp_output_prepare(&block, nullptr, past, 0) != 0) return -1;
  phase->dx = block.in.dx;
  if (shape_state(phase, block.in.is_complex != 0, 1) != 0) return -1;
  const past_and_block x(block.in, history, past);
  const decimation kept(block.in, 2, phase);
  double newest[2 * folded_limit];  // read before outputs are written over it
  x.copy(x.block_length, past, newest);
  make_kept(x, filter, kept, out->data);
  std::copy_n(newest, past * x.width, history->data);
  phase->data[0] = kept.next_phase;
  out->length = kept.count;
  out->dx = block.in.dx * 2;
  return 0;
}

}  // namespace dsp::filter
