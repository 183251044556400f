// The sample-rate converter: halvings, then any ratio below two at twice the output rate between two lowpasses.
#include <algorithm>
#include <cstdint>

#include "dsp/core/filter_and_halve.h"
#include "dsp/core/sizing.h"
#include "dsp/core/stream.h"
#include "dsp/core/temporary.h"
#include "dsp/dsp.h"
#include "dsp/resample/kernel_taps.h"

namespace dsp::resample {
namespace {

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

// Takes the filters' delay out of the front of a stream.
int32_t drop(dsp_vec *v, std::int32_t *delay) {
  const std::int32_t dropped = std::clamp(*delay, 0, samples(*v));
  *delay -= dropped;
  return dspi_shift(v, dropped);
}

struct cascade {
  const dsph_rsmp_coef &coef;
  dsph_rsmp_state &state;
  dsp_vec *scratch;
  bool carries_on;  // the state outlives the call

  int32_t halve(const dsp_vec *in, dsp_vec *out) const {
    for (std::int32_t i = 0; i < coef.halvings; ++i, in = out)
      if (filter::filter_and_halve(in, out, scratch, &coef.halfband, coef.halfband_odd != 0, &state.stage_hist[i],
                                   &state.stage_phase[i]) != 0)
        return -1;
    return drop(out, &state.delay1);
  }

  // `block` is the length of the converter's own input.
  int32_t convert_rest(const dsp_vec *in, dsp_vec *out, std::int64_t block) const {
    if (dspd_sfir(in, scratch, &coef.prefilter, coef.prefilter_odd, 0, &state.pre_hist) != 0) return -1;
    // At twice the output rate and a ratio of 1 or more, no more than this can come out.
    const std::int64_t most = carries_on ? 2 * (block + state.delay2) + kernel_taps(coef.kernel) - 1 : 2 * block - 1;
    out->length = static_cast<std::int32_t>(std::min<std::int64_t>(most, INT32_MAX));
    if (dspd_rsmp(scratch, out, coef.interp, &coef.kernel, coef.ratio * 0.5, &state.rsmp_state) != 0) return -1;
    if (filter::filter_and_halve(out, out, scratch, &coef.halfband, coef.halfband_odd != 0, &state.post_hist,
                                 &state.post_phase) != 0)
      return -1;
    return drop(out, &state.delay2);
  }

  int32_t run(const dsp_vec *in, dsp_vec *out) const {
    const std::int32_t block = samples(*in);
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
