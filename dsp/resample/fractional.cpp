// Resampling by any step: one output every `step` input samples, each a sum over T samples weighted by the kernel at
// the phase between them.
#include "dsp/resample/fractional.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>

#include "dsp/core/caches.h"
#include "dsp/core/sizing.h"
#include "dsp/core/temporary.h"
#include "dsp/core/work_signal.h"
#include "dsp/dsp.h"
#include "dsp/resample/kernel_lists.h"
#include "dsp/resample/kernel_taps.h"

namespace dsp::resample {
namespace {

// The kernel's rows, room for the samples where past and block meet, and the marks of the rows. Process-wide; its
// contents last for one stage.
work_signal row_store;

// One channel of an output whose span may begin in the past, summed without rows. A past that is not held adds
// nothing, however many taps reach into it.
double interpolate_anywhere(const past_and_block &x, int32_t channel, int64_t start, const kernel &k,
                            const kernel_phase &at) {
  double lanes[5] = {};
  const int64_t silent = x.past == nullptr ? std::clamp<int64_t>(-start, 0, k.taps) : 0;
  for (auto i = static_cast<int32_t>(silent); i < k.taps; ++i) {
    const double *tap = k.points + at.point + int64_t{i} * k.phases;
    const double w = tap[0] + at.fraction * (tap[1] - tap[0]);
    const int64_t sample = start + i;
    const double *from = sample >= 0 ? x.block + sample * x.width : x.past + (k.taps + sample) * x.width;
    lanes[i < k.taps / 4 * 4 ? i % 4 : 4] += w * from[channel];
  }
  return ((lanes[0] + lanes[1]) + (lanes[2] + lanes[3])) + lanes[4];
}

}  // namespace

bool kernel::read(const dsp_vec &table) {
  taps = kernel_taps(table);
  if (taps == 0 || table.length < 2 || table.is_complex != 0) return false;
  points = table.data + 1;
  phases = (table.length - 2) / taps;
  alike[0] = alike[1] = points[0];
  if (phases == 0) points = alike;
  return (table.length - 2) % taps == 0;
}

int32_t fractional_stage::begin(const dsp_vec &in, dsp_vec *state) {
  x_ = past_and_block(in, state, k_.taps);
  newest_ = x_.block_length - k_.taps;
  at_ = {0.0, -static_cast<double>(k_.taps)};
  state_ = state;
  if (state != nullptr) {
    const double *stored = state->data + int64_t{k_.taps} * x_.width;
    at_.offset = stored[0];
    at_.start += stored[x_.width];
    if (!(at_.offset >= -1.0 && std::isfinite(at_.offset) && std::isfinite(at_.start))) return -1;
  }
  return by_rows_ ? prepare_rows() : 0;
}

int32_t fractional_stage::prepare_rows() {
  const int64_t rows = rows_of(k_.phases) * row_stride(k_.taps);
  const int64_t joined = 2 * int64_t{k_.taps} * x_.width;
  const int64_t marks = rows_of(k_.phases) / static_cast<int64_t>(sizeof(double)) + 1;
  if (!countable(rows + joined + marks)) return -1;  // GCOVR_EXCL_BR_LINE: takes gigabytes
  dsp_vec *store = row_store.obtain();
  store->length = static_cast<int32_t>(rows + joined + marks);
  if (dsp_alloc(store) != 0) return -1;
  joined_ = store->data + rows;
  double *ready = joined_ + joined;
  std::memset(ready, 0, static_cast<std::size_t>(marks) * sizeof(double));
  rows_ = {k_.points, k_.taps, k_.phases, store->data, reinterpret_cast<unsigned char *>(ready), 0};
  x_.copy(0, 2 * int64_t{k_.taps} - 1, joined_);
  return 0;
}

int32_t fractional_stage::make(int32_t most, double *y) {
  int32_t made = 0;
  while (made < most) {
    carry_whole_samples(&at_);
    at_.start = std::max(at_.start, -static_cast<double>(k_.taps));  // nothing older is held
    if (at_.start > static_cast<double>(newest_)) break;
    made += by_rows_ ? make_by_rows(most - made, y + int64_t{made} * x_.width) : make_one(y + int64_t{made} * x_.width);
  }
  return made;
}

// Spans that begin in the past lie in the joined samples, of which number 0 is the oldest of the past.
// NOLINTNEXTLINE(readability-non-const-parameter): the kernel writes to y
int32_t fractional_stage::make_by_rows(int32_t most, double *y) {
  const bool in_past = at_.start < 0;
  const int64_t origin = in_past ? k_.taps : 0;
  const int64_t newest = (in_past ? std::min<int64_t>(newest_, -1) : newest_) + origin;
  const fractional_run run = {in_past ? joined_ : x_.block, x_.width, newest, linear_, step_, y, most};
  int64_t start = static_cast<int64_t>(at_.start) + origin;
  const int32_t made = fractional_kernels().interpolate(run, rows_, &at_.offset, &start);
  at_.start = static_cast<double>(start - origin);
  return made;
}

int32_t fractional_stage::make_one(double *y) {
  const kernel_phase phase(at_.offset, k_.phases, linear_);
  const auto start = static_cast<int64_t>(at_.start);
  for (int32_t channel = 0; channel < x_.width; ++channel)
    y[channel] = interpolate_anywhere(x_, channel, start, k_, phase);
  at_.offset += step_;
  return 1;
}

void fractional_stage::end() {
  if (state_ == nullptr) return;
  x_.remember(state_);
  double *stored = state_->data + int64_t{k_.taps} * x_.width;
  stored[0] = at_.offset;
  stored[x_.width] = at_.start - static_cast<double>(newest_);
}

int32_t free_kernel_rows() { return row_store.release(); }

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
  fractional_stage stage(k, interp != 0, step);
  if (stage.begin(block.in, state) != 0) return -1;
  result->length = stage.make(samples(*result), result->data);
  result->dx = dx;
  stage.end();
  return dsp_output_commit(block);
}

int32_t dspd_rsmp2(const dsp_vec *in, dsp_vec *out, int32_t interp, int32_t kind, double step, dsp_vec *state) {
  const kernel_list *list = find_kernel_list(kind);
  if (list == nullptr) return -1;
  temporary table;
  table->length = list->table_length;
  return dspc_rsmp(table.get(), kind) == 0 ? dspd_rsmp(in, out, interp, table.get(), step, state) : -1;
}
