// The sample-rate converter: halvings, then any ratio below two at twice the output rate between two lowpasses.
#include <algorithm>
#include <cstdint>

#include "dsp/core/caches.h"
#include "dsp/core/decimate_by_two.h"
#include "dsp/core/sizing.h"
#include "dsp/core/stream.h"
#include "dsp/core/temporary.h"
#include "dsp/core/work_signal.h"
#include "dsp/dsp.h"
#include "dsp/resample/fractional.h"
#include "dsp/resample/kernel_table.h"

namespace dsp::resample {
namespace {

constexpr int32_t piece_length = 2048;  // samples at twice the output rate
work_signal piece_store;

class temporary_state {
 public:
  temporary_state() { dsph_rsmp_state_init(&state_); }
  ~temporary_state() { dsph_rsmp_state_destroy(&state_); }
  temporary_state(const temporary_state &) = delete;
  temporary_state &operator=(const temporary_state &) = delete;

  dsph_rsmp_state *get() { return &state_; }

 private:
  dsph_rsmp_state state_;
};

// Takes the filters' delay out of the front of a stream. Cutting in place cannot fail.
void drop(dsp_vec *v, int32_t *delay) {
  const int32_t dropped = std::clamp(*delay, 0, samples(*v));
  *delay -= dropped;
  dspi_shift(v, dropped);
}

struct cascade {
  const dsph_rsmp_coef &coef;
  dsph_rsmp_state &state;
  dsp_vec *scratch;
  bool carries_on;  // the state outlives the call

  int32_t halve(const dsp_vec *in, dsp_vec *out) const {
    for (int32_t i = 0; i < coef.halvings; ++i, in = out)
      if (filter::decimate_by_two(in, out, scratch, &coef.halfband, coef.halfband_odd != 0, &state.stage_hist[i],
                                  &state.stage_phase[i]) != 0)
        return -1;
    drop(out, &state.delay1);
    return 0;
  }

  // `block` is the length of the converter's own input, and the most that comes out.
  int32_t convert_rest(const dsp_vec *in, dsp_vec *out, int32_t block) const {
    if (dspd_sfir(in, scratch, &coef.prefilter, coef.prefilter_odd, 0, &state.pre_hist) != 0) return -1;
    // At twice the output rate and a ratio of 1 or more, no more than this can come out.
    const int64_t most =
        carries_on ? 2 * (int64_t{block} + state.delay2) + kernel_taps(coef.kernel) - 1 : 2 * int64_t{block} - 1;
    kernel k;
    if (most > INT32_MAX || !k.read(coef.kernel)) return -1;
    fractional_stage stage(k, coef.interp != 0, coef.ratio * 0.5);
    if (stage.begin(*scratch, &state.rsmp_state) != 0) return -1;
    out->length = block;
    out->is_complex = scratch->is_complex;
    if (dsp_alloc(out) != 0 || collect(&stage, static_cast<int32_t>(most), out) != 0) return -1;
    out->dx = scratch->dx * coef.ratio;
    stage.end();
    return 0;
  }

  // In pieces that stay in the L1 cache, so that the work space is small for any ratio.
  int32_t collect(fractional_stage *stage, int32_t most, dsp_vec *out) const {
    dsp_vec *piece = piece_store.obtain();
    temporary aside;
    const int64_t width = out->is_complex != 0 ? 2 : 1;
    int32_t kept = 0;
    for (int32_t made = 1; made > 0; most -= made) {
      piece->length = std::min(most, piece_length);
      piece->is_complex = out->is_complex;
      if (dsp_alloc(piece) != 0) return -1;
      made = piece->length = stage->make(piece->length, piece->data);
      if (filter::decimate_by_two(piece, piece, aside.get(), &coef.halfband, coef.halfband_odd != 0, &state.post_hist,
                                  &state.post_phase) != 0)
        return -1;
      drop(piece, &state.delay2);
      const int32_t some = std::min(piece->length, out->length - kept);
      std::copy_n(piece->data, some * width, out->data + kept * width);
      kept += some;
    }
    out->length = kept;
    return 0;
  }

  int32_t run(const dsp_vec *in, dsp_vec *out) const {
    const int32_t block = samples(*in);
    if (dsph_rsmp_state_alloc(&coef, &state, in->is_complex) != 0) return -1;
    const bool halves = coef.halvings > 0;
    const bool fractional = coef.mode != 0 || coef.ratio != 1.0;
    if (halves && halve(in, out) != 0) return -1;
    if (fractional && convert_rest(halves ? out : in, out, block) != 0) return -1;
    if (!halves && !fractional && dsp_copy(out, in) != 0) return -1;
    out->length = std::min(out->length, block);
    return 0;
  }
};

}  // namespace

int32_t free_converter_work() { return piece_store.release(); }

}  // namespace dsp::resample

using namespace dsp;
using namespace dsp::resample;

int32_t dsph_rsmp(const dsp_vec *in, dsp_vec *out, dsp_vec *scratch, const dsph_rsmp_coef *coef,
                  dsph_rsmp_state *state) {
  temporary own_scratch;
  temporary_state own_state;
  if (scratch == nullptr || shares_buffer(scratch, in) || shares_buffer(scratch, out)) scratch = own_scratch.get();
  const bool carries_on = state != nullptr;
  if (!carries_on) state = own_state.get();
  if (cascade{*coef, *state, scratch, carries_on}.run(in, out) == 0) return 0;
  dsph_rsmp_state_reset(coef, state);
  return -1;
}
