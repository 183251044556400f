#include "dsp/core/output.h"

#include "dsp/core/caches.h"
#include "dsp/core/operands.h"
#include "dsp/core/represent.h"
#include "dsp/core/sizing.h"
#include "dsp/core/work_signal.h"

namespace dsp {
namespace {

work_signal scratch_output;
work_signal scratch_state;
bool redirection_pending = false;
dsp_vec *callers_output = nullptr;

int32_t shape_state(dsp_vec *state, const dsp_vec &in, std::int32_t length) {
  state->dx = in.dx;
  if (represent(state, in.is_complex != 0) == 0 && dspi_zpad(state, length) == 0) return 0;
  state->length = 0;  // lost: the next block starts from silence
  return -1;
}

}  // namespace

int32_t dsp_output_prepare(const dsp_vec *in, dsp_vec **out, const dsp_vec *second, dsp_vec **state,
                           std::int32_t state_length, std::uint32_t flags) {
  if (state != nullptr && *state == nullptr && (flags & DSP_OUT_SHARED_STATE) != 0) *state = scratch_state.obtain();
  if (state != nullptr && *state != nullptr && shape_state(*state, *in, state_length) != 0) return -1;

  dsp_vec *o = *out;
  const std::int32_t length = (flags & DSP_OUT_KEEP_LENGTH) != 0 ? o->length : samples(*in);
  redirection_pending = (flags & DSP_OUT_ALIAS) != 0 && shares_buffer(*o, *in);
  if (redirection_pending) {
    callers_output = o;
    o = *out = scratch_output.obtain();
  }
  o->length = length;
  o->is_complex = in->is_complex != 0 || (second != nullptr && second->is_complex != 0);
  o->dx = in->dx;
  return dsp_alloc(o);
}

int32_t dsp_output_commit(dsp_vec *result) {
  if (!redirection_pending) return 0;
  redirection_pending = false;
  return dsp_copy(callers_output, result);
}

int32_t dsp_free_scratch() {
  scratch_output.release();
  return scratch_state.release();
}

}  // namespace dsp
