// Outputs that may share their input's buffer, and states that a caller may leave out, for routines that read their
// input while they write. The routine calls dsp_output_prepare, computes into the signal then in the output slot, and
// ends with dsp_output_commit; no other routine that uses the service may run in between.
#pragma once

#include <cstdint>

#include "dsp/dsp.h"

namespace dsp {

enum : std::uint32_t {
  DSP_OUT_ALIAS = 1,         // an output on the input's buffer is served through the scratch output
  DSP_OUT_SHARED_STATE = 2,  // an empty state slot receives the scratch state
  DSP_OUT_KEEP_LENGTH = 4    // the output keeps its length instead of taking the input's
};

// Shapes the state (dx and representation of the input, at least `state_length` samples, zeros behind) and sizes the
// output (complex when the input or `second` is). `second`, `state` and *state may be null.
int32_t dsp_output_prepare(const dsp_vec *in, dsp_vec **out, const dsp_vec *second, dsp_vec **state,
                           std::int32_t state_length, std::uint32_t flags);

// Copies a redirected result into the caller's output.
int32_t dsp_output_commit(dsp_vec *result);

}  // namespace dsp
