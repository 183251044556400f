// The coefficient and the state record of the sample-rate converter.
#include <algorithm>
#include <cmath>
#include <cstdint>

#include "dsp/core/heap.h"
#include "dsp/core/stream.h"
#include "dsp/dsp.h"
#include "dsp/resample/kernel_table.h"

namespace dsp::resample {
namespace {

constexpr int32_t kernel_kind = 4;
constexpr int32_t kernel_length = 13314;

// Samples by which the filters delay a stream. The ceiling forgives rounding noise just above an integer.
constexpr int32_t halving_delay = 33;
int32_t fractional_delay(double ratio) {
  const double delay = 19 + std::ceil(35 / ratio * 0.9999999999999956);
  return static_cast<int32_t>(std::min(delay, static_cast<double>(INT32_MAX)));
}

// Calls f with every signal of the state until one call fails.
template <class F>
int32_t for_each_signal(dsph_rsmp_state *s, F f) {
  for (int32_t i = 0; i < s->stages; ++i)
    if (f(&s->stage_hist[i]) != 0 || f(&s->stage_phase[i]) != 0) return -1;  // GCOVR_EXCL_BR_LINE: not every f fails
  for (dsp_vec *v : {&s->pre_hist, &s->rsmp_state, &s->post_hist, &s->post_phase})
    if (f(v) != 0) return -1;  // GCOVR_EXCL_BR_LINE: not every f fails
  return 0;
}

void free_stages(dsph_rsmp_state *s) {
  for (int32_t i = 0; i < s->stages; ++i) {
    dsp_destroy(&s->stage_hist[i]);
    dsp_destroy(&s->stage_phase[i]);
  }
  heap_release(s->stage_hist);
  heap_release(s->stage_phase);
  s->stages = 0;
  s->stage_hist = s->stage_phase = nullptr;
}

int32_t allocate_stages(dsph_rsmp_state *s, int32_t stages) {
  free_stages(s);
  if (stages <= 0) return 0;
  const std::size_t bytes = static_cast<std::size_t>(stages) * sizeof(dsp_vec);
  s->stage_hist = static_cast<dsp_vec *>(heap_allocate(bytes));
  s->stage_phase = static_cast<dsp_vec *>(heap_allocate(bytes));
  if (s->stage_hist == nullptr || s->stage_phase == nullptr) {
    free_stages(s);
    return -1;
  }
  for (int32_t i = 0; i < stages; ++i) {
    dsp_init(&s->stage_hist[i]);
    dsp_init(&s->stage_phase[i]);
  }
  s->stages = stages;
  return 0;
}

// Samples before the present one that a filter given by its half reaches.
int32_t past_of(const dsp_vec &half, int32_t odd) {
  const int64_t past = 2 * int64_t{half.length} - (odd != 0 ? 1 : 0) - 1;
  return static_cast<int32_t>(std::min<int64_t>(past, INT32_MAX));
}

}  // namespace
}  // namespace dsp::resample

using namespace dsp;
using namespace dsp::resample;

int32_t dsph_rsmp_coef_init(dsph_rsmp_coef *coef) {
  if (coef == nullptr) return 0;
  *coef = dsph_rsmp_coef{};
  for (dsp_vec *v : {&coef->halfband, &coef->prefilter, &coef->kernel}) dsp_init(v);
  return 0;
}

int32_t dsph_rsmp_coef_destroy(dsph_rsmp_coef *coef) {
  if (coef == nullptr) return 0;
  for (dsp_vec *v : {&coef->halfband, &coef->prefilter, &coef->kernel}) dsp_destroy(v);
  return dsph_rsmp_coef_init(coef);
}

int32_t dsph_rsmp_coef_alloc(dsph_rsmp_coef *coef, int32_t reserved) {
  if (reserved != 0) return -1;
  if (dspc_fir2(&coef->halfband, DSP_FIR2_TAPS20) != 0 || dspc_fir2(&coef->prefilter, DSP_FIR2_TAPS12) != 0) return -1;
  coef->halfband_odd = coef->prefilter_odd = 1;
  coef->kernel.dx = 1.0;
  coef->kernel.length = kernel_length;
  if (dspc_rsmp(&coef->kernel, kernel_kind) != 0) return -1;
  coef->interp = 1;
  return 0;
}

int32_t dsph_rsmp_coef_setup(dsph_rsmp_coef *coef, int32_t, double ratio, int32_t mode, int32_t reserved) {
  if (!std::isfinite(ratio) || reserved != 0) return -1;
  if (ratio <= 0.0) ratio = 1.0;
  int32_t halvings = 0;
  for (; ratio >= 2.0; ratio *= 0.5) ++halvings;
  coef->ratio = ratio;
  coef->halvings = halvings;
  coef->mode = mode;
  coef->delay1 = halvings > 0 ? halving_delay : 0;
  coef->delay2 = mode == 0 && ratio == 1.0 ? 0 : fractional_delay(ratio);
  return 0;
}

int32_t dsph_rsmp_state_init(dsph_rsmp_state *state) {
  *state = dsph_rsmp_state{};
  return for_each_signal(state, dsp_init);
}

int32_t dsph_rsmp_state_destroy(dsph_rsmp_state *state) {
  free_stages(state);
  for_each_signal(state, dsp_destroy);
  return dsph_rsmp_state_init(state);
}

int32_t dsph_rsmp_state_alloc(const dsph_rsmp_coef *coef, dsph_rsmp_state *state, uint32_t is_complex) {
  if (state->stages != coef->halvings && allocate_stages(state, coef->halvings) != 0) return -1;
  const bool complex_stream = is_complex != 0;
  const int32_t halving_past = past_of(coef->halfband, coef->halfband_odd);
  for (int32_t i = 0; i < state->stages; ++i)
    if (shape_state(&state->stage_hist[i], complex_stream, halving_past) != 0 ||
        shape_state(&state->stage_phase[i], complex_stream, 1) != 0)
      return -1;
  const int32_t rsmp_length = kernel_taps(coef->kernel) + 2;
  const bool shaped =
      shape_state(&state->pre_hist, complex_stream, past_of(coef->prefilter, coef->prefilter_odd)) == 0 &&
      shape_state(&state->rsmp_state, complex_stream, rsmp_length) == 0 &&
      shape_state(&state->post_hist, complex_stream, 0) == 0 && shape_state(&state->post_phase, complex_stream, 0) == 0;
  return shaped ? 0 : -1;
}

int32_t dsph_rsmp_state_reset(const dsph_rsmp_coef *coef, dsph_rsmp_state *state) {
  state->delay1 = coef->delay1;
  state->delay2 = coef->delay2;
  return for_each_signal(state, dspi_zero);
}
