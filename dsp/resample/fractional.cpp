// Resampling by any step: one output every `step` input samples, each a sum over T samples weighted by the kernel at
// the phase between them.
#include "dsp/resample/fractional.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <utility>

#include "dsp/core/caches.h"
#include "dsp/core/sizing.h"
#include "dsp/core/temporary.h"
#include "dsp/core/work_signal.h"
#include "dsp/dsp.h"
#include "dsp/resample/kernel_lists.h"
#include "dsp/resample/kernel_rows.h"

namespace dsp::resample {
namespace {

// The samples where past and block meet, and the weights of a step whose phases repeat. Process-wide; its contents last
// for one stage.
work_signal work_store;

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

// The smallest q for which q steps come within q 2^-52 of a whole number of samples, found by the continued fraction of
// the step; 0 when it is above `most_slots`.
int32_t denominator_of(double step) {
  int64_t larger = int64_t{1} << 53;
  auto rest = static_cast<int64_t>(step * 0x1p53);
  int64_t before = 0, denominator = 1;
  while (rest > 2 * denominator) {
    const int64_t quotient = larger / rest;
    larger = std::exchange(rest, larger - quotient * rest);
    before = std::exchange(denominator, before + quotient * denominator);
    if (denominator > most_slots) return 0;
  }
  return static_cast<int32_t>(denominator);
}

// Slots for whole periods and, unless they become many, for whole cache lines of 8. 0 for a step that does not repeat.
int32_t slots_for(double step) {
  const int32_t period = step >= 0.5 && step < 1.0 ? denominator_of(step) : 0;
  const int32_t aligned = period * (8 / std::gcd(period, 8));
  return aligned <= most_slots / 4 ? aligned : period;
}

}  // namespace

fractional_stage::fractional_stage(const kernel &k, bool linear, double step)
    : k_(k),
      linear_(linear),
      step_(step),
      in_runs_(k.phases > 0 && step < 0x1p31),
      slots_(in_runs_ && linear && k.taps <= most_repeating_taps ? slots_for(step) : 0) {}

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
  return in_runs_ ? prepare() : 0;
}

int32_t fractional_stage::prepare() {
  const int64_t joined = 2 * int64_t{k_.taps} * x_.width;
  const int64_t needed = joined + (slots_ > 0 ? room_for_slots() : 0);
  if (!countable(needed)) return -1;  // GCOVR_EXCL_BR_LINE: takes gigabytes
  dsp_vec *store = work_store.obtain();
  store->length = static_cast<int32_t>(needed);
  if (dsp_alloc(store) != 0) return -1;
  joined_ = store->data + needed - joined;
  x_.copy(0, 2 * int64_t{k_.taps} - 1, joined_);
  if (slots_ > 0)
    empty_slots(store->data);
  else
    rows_ = obtain_rows(k_);
  return slots_ > 0 || rows_ != nullptr ? 0 : -1;
}

int64_t fractional_stage::room_for_slots() const { return k_.taps * slot_stride(slots_) + keys_of(slots_); }

void fractional_stage::empty_slots(double *room) {
  const int64_t stride = slot_stride(slots_);
  auto *keys = static_cast<int64_t *>(static_cast<void *>(room + k_.taps * stride));
  std::fill_n(keys, keys_of(slots_), -1);
  weights_ = {k_.points, k_.taps, k_.phases, slots_, 0, stride, room, keys};
}

int32_t fractional_stage::make(int32_t most, double *y) {
  int32_t made = 0;
  while (made < most) {
    carry_whole_samples(&at_);
    at_.start = std::max(at_.start, -static_cast<double>(k_.taps));  // nothing older is held
    if (at_.start > static_cast<double>(newest_)) break;
    made += in_runs_ ? make_run(most - made, y + int64_t{made} * x_.width) : make_one(y + int64_t{made} * x_.width);
  }
  return made;
}

// Spans that begin in the past lie in the joined samples, of which number 0 is the oldest of the past.
// NOLINTNEXTLINE(readability-non-const-parameter): the kernel writes to y
int32_t fractional_stage::make_run(int32_t most, double *y) {
  const bool in_past = at_.start < 0;
  const int64_t origin = in_past ? k_.taps : 0;
  const int64_t newest = (in_past ? std::min<int64_t>(newest_, -1) : newest_) + origin;
  const fractional_run run = {in_past ? joined_ : x_.block, x_.width, newest, linear_, step_, y, most};
  int64_t start = static_cast<int64_t>(at_.start) + origin;
  const int32_t made = slots_ > 0 ? repeating_kernels().interpolate(run, weights_, &at_.offset, &start)
                                  : fractional_kernels().interpolate(run, *rows_, &at_.offset, &start);
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

int32_t free_fractional_work() {
  free_rows();
  return work_store.release();
}

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
