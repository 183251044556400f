// Resampling by any step: one output every `step` input samples, each a sum over T samples weighted by the kernel at
// the phase between them.
#include <algorithm>
#include <cmath>
#include <cstdint>

#include "dsp/core/history.h"
#include "dsp/core/lanes.h"
#include "dsp/core/output.h"
#include "dsp/core/sizing.h"
#include "dsp/core/temporary.h"
#include "dsp/dsp.h"
#include "dsp/resample/kernel_lists.h"
#include "dsp/resample/kernel_taps.h"

namespace dsp {
namespace {

// A kernel table taken apart.
struct kernel {
  const double *points;  // phases * taps + 1 of them, or two alike
  std::int32_t taps;
  std::int32_t phases;  // points from tap to tap
  double alike[2];      // a table of one point, which weighs all samples the same

  bool read(const dsp_vec &table) {
    taps = kernel_taps(table);
    if (taps == 0 || table.is_complex != 0) return false;
    points = table.data + 1;
    phases = (table.length - 2) / taps;
    alike[0] = alike[1] = points[0];
    if (phases == 0) points = alike;
    return (table.length - 2) % taps == 0;
  }
};

// Where the next output lies: `offset` samples, in (-1, 0] once settled, from a span that begins at sample `start` of
// the block.
struct position {
  double offset;
  double start;

  void settle(double oldest) {
    if (offset > 0.0) {
      // Rounding up by way of an integer: std::ceil is a call where the processor has no instruction for it.
      double whole = offset < 0x1p31 ? static_cast<double>(static_cast<std::int32_t>(offset)) : std::ceil(offset);
      if (whole < offset) whole += 1.0;
      offset -= whole;
      start += whole;
    }
    if (start < oldest) start = oldest;
  }
};

// The kernel between two of its points: from `points`, `fraction` of the way to the next.
struct phase {
  const double *points;
  double fraction;

  phase(const kernel &k, double offset, bool linear) {
    const double f = -offset * k.phases;
    std::int32_t point = static_cast<std::int32_t>(f);
    fraction = linear ? f - point : 0.0;
    if (point > 0 && point == k.phases) {  // a whole sample: the table ends with this point, so come from the last one
      --point;
      fraction = 1.0;
    }
    points = k.points + point;
  }
};

// Adds a run of taps at two neighbouring points of the kernel at once.
inline void add_taps(lane_pair *sum, const double *x, std::int32_t width, const double *points, std::int64_t phases,
                     std::int64_t taps) {
  lane_pair s = *sum;
  for (std::int64_t i = 0; i < taps; ++i) s += x[i * width] * load<lane_pair>(points + i * phases);
  *sum = s;
}

// One channel of the output whose span begins at sample `start`, no earlier than -T.
inline double interpolate(const past_and_block &x, std::int32_t channel, std::int64_t start, const kernel &k,
                          const phase &at) {
  lane_pair sum = {0.0, 0.0};
  const std::int64_t old = start < 0 ? std::min<std::int64_t>(-start, k.taps) : 0;
  if (old > 0 && x.past != nullptr)
    add_taps(&sum, x.past + (k.taps + start) * x.width + channel, x.width, at.points, k.phases, old);
  if (old < k.taps)
    add_taps(&sum, x.block + (start + old) * x.width + channel, x.width, at.points + old * k.phases, k.phases,
             k.taps - old);
  return at.fraction == 0.0 ? sum[0] : sum[0] * (1.0 - at.fraction) + sum[1] * at.fraction;
}

// Fills y until the block is used up or `most` outputs are made; returns how many, and leaves the position behind.
template <int Width>
std::int32_t resample(const past_and_block &x, const kernel &k, bool linear, double step, std::int32_t most, double *y,
                      position *at) {
  const double oldest = -static_cast<double>(k.taps);
  const double newest = static_cast<double>(x.block_length) - k.taps;
  position now = *at;
  std::int32_t made = 0;
  for (; made < most; ++made) {
    now.settle(oldest);
    if (now.start > newest) break;
    const phase p(k, now.offset, linear);
    for (std::int32_t channel = 0; channel < Width; ++channel)
      *y++ = interpolate(x, channel, static_cast<std::int64_t>(now.start), k, p);
    now.offset += step;
  }
  *at = now;
  return made;
}

}  // namespace
}  // namespace dsp

using namespace dsp;

int32_t dspd_rsmp(const dsp_vec *in, dsp_vec *out, int32_t interp, const dsp_vec *table, double step, dsp_vec *state) {
  if (!(step >= 0.0 && std::isfinite(step))) return -1;
  if (table->length < 2) return dsp_copy(out, in);
  kernel k;
  if (!k.read(*table)) return -1;
  if (same_signal(out, table) || same_signal(state, table) || same_signal(state, in) || same_signal(state, out))
    return -1;
  const double dx = in->dx * step;
  if (dsp_output_prepare(in, &out, nullptr, &state, k.taps + 2, DSP_OUT_ALIAS | DSP_OUT_KEEP_LENGTH) != 0) return -1;
  const past_and_block x(*in, state, k.taps);
  double *stored = state != nullptr ? state->data + std::int64_t{k.taps} * x.width : nullptr;
  position at = {0.0, -static_cast<double>(k.taps)};
  if (stored != nullptr) {
    at.offset = stored[0];
    at.start += stored[x.width];
    if (!(at.offset >= -1.0 && std::isfinite(at.offset) && std::isfinite(at.start))) return -1;
  }
  const bool linear = interp != 0;
  const std::int32_t most = samples(*out);
  out->length = x.width == 2 ? resample<2>(x, k, linear, step, most, out->data, &at)
                             : resample<1>(x, k, linear, step, most, out->data, &at);
  out->dx = dx;
  if (stored != nullptr) {
    x.remember(state);
    stored[0] = at.offset;
    stored[x.width] = at.start - static_cast<double>(x.block_length) + k.taps;
  }
  return dsp_output_commit(out);
}

int32_t dspd_rsmp2(const dsp_vec *in, dsp_vec *out, int32_t interp, int32_t kind, double step, dsp_vec *state) {
  const kernel_list *list = find_kernel_list(kind);
  if (list == nullptr) return -1;
  temporary table;
  table->length = list->table_length;
  return dspc_rsmp(table.get(), kind) == 0 ? dspd_rsmp(in, out, interp, table.get(), step, state) : -1;
}
