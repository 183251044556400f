// Resampling by any step: one output every `step` input samples, each a sum over T samples weighted by the kernel at
// the phase between them.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>

#include "dsp/core/caches.h"
#include "dsp/core/sizing.h"
#include "dsp/core/stream.h"
#include "dsp/core/temporary.h"
#include "dsp/core/work_signal.h"
#include "dsp/dsp.h"
#include "dsp/resample/fractional_kernels.h"
#include "dsp/resample/kernel_lists.h"
#include "dsp/resample/kernel_taps.h"
#include "dsp/resample/position.h"

namespace dsp::resample {
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

// The kernel's rows and, behind them, the marks of those that are filled. Process-wide; its contents last for one call.
work_signal row_store;

int32_t prepare_rows(const kernel &k, kernel_rows *rows) {
  const std::int64_t groups = (std::int64_t{k.phases} + points_in_group - 1) / points_in_group;
  const std::int64_t doubles = groups * rows_in_group * row_stride(k.taps);
  const std::int64_t marks = groups / static_cast<std::int64_t>(sizeof(double)) + 1;
  if (doubles + marks > INT32_MAX) return -1;  // GCOVR_EXCL_BR_LINE: takes gigabytes
  dsp_vec *store = row_store.obtain();
  store->length = static_cast<std::int32_t>(doubles + marks);
  if (dsp_alloc(store) != 0) return -1;
  double *filled = store->data + doubles;
  std::memset(filled, 0, static_cast<std::size_t>(marks) * sizeof(double));
  *rows = {k.points, k.taps, k.phases, store->data, reinterpret_cast<unsigned char *>(filled)};
  return 0;
}

// One channel of an output whose span may begin in the past, summed in the order of the kernels. A past that is not
// held adds nothing, however many taps reach into it.
double weigh_anywhere(const past_and_block &x, std::int32_t channel, std::int64_t start, const kernel &k,
                      const kernel_phase &at) {
  double lanes[5] = {};
  const std::int64_t silent = x.past == nullptr ? std::clamp<std::int64_t>(-start, 0, k.taps) : 0;
  for (auto i = static_cast<std::int32_t>(silent); i < k.taps; ++i) {
    const double *tap = k.points + at.point + std::int64_t{i} * k.phases;
    const double w = tap[0] + at.fraction * (tap[1] - tap[0]);
    const std::int64_t sample = start + i;
    const double *from = sample >= 0 ? x.block + sample * x.width : x.past + (k.taps + sample) * x.width;
    lanes[i < k.taps / 4 * 4 ? i % 4 : 4] += w * from[channel];
  }
  return ((lanes[0] + lanes[1]) + (lanes[2] + lanes[3])) + lanes[4];
}

// Fills y until the block is used up or `most` outputs are made, and leaves the position behind.
int32_t convert(const past_and_block &x, const kernel &k, bool linear, double step, std::int32_t most, double *y,
                position *at, std::int32_t *made) {
  const double newest = static_cast<double>(x.block_length) - k.taps;
  const bool by_rows = k.phases > 0 && step < 0x1p31;
  kernel_rows rows = {};
  if (by_rows && newest >= 0 && prepare_rows(k, &rows) != 0) return -1;
  for (*made = 0; *made < most;) {
    settle(at);
    at->start = std::max(at->start, -static_cast<double>(k.taps));  // nothing older is held
    if (at->start > newest) break;
    auto start = static_cast<std::int64_t>(at->start);
    if (by_rows && start >= 0) {
      const fractional_run run = {x.block, x.width, static_cast<std::int64_t>(newest), linear, step, y, most - *made};
      *made += fractional_kernels().interpolate(run, rows, &at->offset, &start);
      at->start = static_cast<double>(start);
      break;
    }
    const kernel_phase phase(at->offset, k.phases, linear);
    for (std::int32_t channel = 0; channel < x.width; ++channel) *y++ = weigh_anywhere(x, channel, start, k, phase);
    at->offset += step;
    ++*made;
  }
  return 0;
}

}  // namespace

std::int32_t free_kernel_rows() { return row_store.release(); }

}  // namespace dsp::resample

using namespace dsp;
using namespace dsp::resample;

int32_t dspd_rsmp(const dsp_vec *in, dsp_vec *out, int32_t interp, const dsp_vec *table, double step, dsp_vec *state) {
  if (!(step >= 0.0 && std::isfinite(step))) return -1;
  if (shares_buffer(state, out)) return -1;
  if (table->length < 2) return dsp_copy(out, in);
  kernel k;
  if (!k.read(*table)) return -1;
  if (shares_buffer(out, table) || shares_buffer(state, table) || shares_buffer(state, in)) return -1;
  const double dx = in->dx * step;
  stream_block block(in, out, state);
  if (dsp_output_prepare(&block, nullptr, k.taps + 2, DSP_OUT_ALIAS | DSP_OUT_KEEP_LENGTH) != 0) return -1;
  dsp_vec *result = block.out.get();
  const past_and_block x(block.in, state, k.taps);
  double *stored = state != nullptr ? state->data + std::int64_t{k.taps} * x.width : nullptr;
  position at = {0.0, -static_cast<double>(k.taps)};
  if (stored != nullptr) {
    at.offset = stored[0];
    at.start += stored[x.width];
    if (!(at.offset >= -1.0 && std::isfinite(at.offset) && std::isfinite(at.start))) return -1;
  }
  std::int32_t made = 0;
  if (convert(x, k, interp != 0, step, samples(*result), result->data, &at, &made) != 0) return -1;
  result->length = made;
  result->dx = dx;
  if (stored != nullptr) {
    x.remember(state);
    stored[0] = at.offset;
    stored[x.width] = at.start - static_cast<double>(x.block_length) + k.taps;
  }
  return dsp_output_commit(block);
}

int32_t dspd_rsmp2(const dsp_vec *in, dsp_vec *out, int32_t interp, int32_t kind, double step, dsp_vec *state) {
  const kernel_list *list = find_kernel_list(kind);
  if (list == nullptr) return -1;
  temporary table;
  table->length = list->table_length;
  return dspc_rsmp(table.get(), kind) == 0 ? dspd_rsmp(in, out, interp, table.get(), step, state) : -1;
}
