#include "dsp/core/filter_and_halve.h"

#include <algorithm>
#include <cstdint>

#include "dsp/core/sizing.h"
#include "dsp/core/stream.h"
#include "dsp/filter/decimation.h"
#include "dsp/filter/folded.h"

namespace dsp::filter {
namespace {

// Outputs made at a time. More than the past of any folded filter, so that outputs written over the block's front
// never reach the samples that the next ones need.
constexpr std::int64_t tile = 64;
static_assert(tile >= folded_limit);

constexpr std::int64_t span_limit = 2 * tile + folded_limit;  // samples that a tile of outputs needs

void part_even_from_odd(const double *samples, std::int64_t pairs, std::int32_t width, double *even, double *odd) {
  if (width == 1) {
    for (std::int64_t i = 0; i < pairs; ++i) {
      even[i] = samples[2 * i];
      odd[i] = samples[2 * i + 1];
    }
    return;
  }
  for (std::int64_t i = 0; i < 2 * pairs; i += 2) {
    even[i] = samples[2 * i];
    even[i + 1] = samples[2 * i + 1];
    odd[i] = samples[2 * i + 2];
    odd[i + 1] = samples[2 * i + 3];
  }
}

// Output m is that of the block's sample first + 2 m.
void filter_halved(const past_and_block &x, const folded_filter &h, const decimation &kept, double *y) {
  double joined[2 * span_limit];
  double parted[2 * span_limit];
  for (std::int64_t m = 0; m < kept.count; m += tile) {
    const std::int64_t outputs = std::min(tile, kept.count - m);
    const std::int64_t pairs = outputs + h.length() / 2;
    const std::int64_t first = kept.first + 2 * m;
    const double *span = x.contiguous(first, 2 * pairs);
    if (span == nullptr) {
      x.copy(first, 2 * pairs, joined);
      span = joined;
    }
    double *odd = parted + pairs * x.width;
    part_even_from_odd(span, pairs, x.width, parted, odd);
    fir_kernels().halved_taps({y + m * x.width, parted, outputs * x.width, x.width}, odd, h);
  }
}

}  // namespace

std::int32_t filter_and_halve(const dsp_vec *in, dsp_vec *out, dsp_vec *scratch, const dsp_vec *half, bool odd,
                              dsp_vec *history, dsp_vec *phase) {
  if (!foldable(*half, odd))
    return dspd_sfir(in, scratch, half, odd, 0, history) == 0 ? dspd_deci(scratch, out, 2, phase) : -1;
  const folded_filter filter = fold(*half, odd, false);
  const std::int32_t past = filter.length() - 1;
  stream_block block(in, out, history);
  if (dsp_output_prepare(&block, nullptr, past, 0) != 0) return -1;
  phase->dx = block.in.dx;
  if (shape_state(phase, block.in.is_complex != 0, 1) != 0) return -1;
  const past_and_block x(block.in, history, past);
  const decimation kept(block.in, 2, phase);
  double newest[2 * folded_limit];  // read before outputs are written over it
  x.copy(x.block_length, past, newest);
  filter_halved(x, filter, kept, out->data);
  std::copy_n(newest, past * x.width, history->data);
  phase->data[0] = kept.next_phase;
  out->length = kept.count;
  out->dx = block.in.dx * 2;
  return 0;
}

}  // namespace dsp::filter
