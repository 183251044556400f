// What the streaming routines share: a block with its output and its state, and the past that the state holds.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "dsp/core/move_doubles.h"
#include "dsp/core/sharing.h"
#include "dsp/core/sizing.h"
#include "dsp/dsp.h"

namespace dsp {

// Gives a state the representation of its stream and at least `length` samples, zeros behind those it holds. When
// memory fails (-1) the state is left empty: the stream starts again from silence.
int32_t shape_state(dsp_vec *state, bool is_complex, int32_t length);

// A block on its way through a streaming routine: dsp_output_prepare() readies all three, the routine reads `in`,
// writes `out`, and ends with dsp_output_commit().
struct stream_block {
  const dsp_vec in;  // the input as it was before the output, which may be the same record, was sized
  output out;
  dsp_vec *state;  // null: none is kept

  stream_block(const dsp_vec *input, dsp_vec *result, dsp_vec *state_or_null)
      : in(*input), out(result, {}), state(state_or_null) {}
};

enum : uint32_t {
  DSP_OUT_ALIAS = 1,         // an output on the input's buffer is served through the scratch output
  DSP_OUT_SHARED_STATE = 2,  // an absent state is replaced by the scratch state
  DSP_OUT_KEEP_LENGTH = 4    // the output keeps its length instead of taking the input's
};

// Shapes the state (dx and representation of the input) and sizes the output (complex when the input or `second`, which
// may be null, is). -1: no memory.
int32_t dsp_output_prepare(stream_block *block, const dsp_vec *second, int32_t state_length, uint32_t flags);

// Copies a result that was made in the scratch signal to the caller's output.
int32_t dsp_output_commit(const stream_block &block);

// The past of a stream, the M - 1 most recent samples, oldest first, that a filter of M taps still reaches, and the
// block behind it. `past` may be null: silence.
struct past_and_block {
  const double *past;
  int64_t past_length;  // samples
  const double *block;
  int64_t block_length;
  int32_t width;  // doubles in a sample

  past_and_block(const dsp_vec &in, const dsp_vec *state, int64_t past_samples)
      : past(state != nullptr ? state->data : nullptr),
        past_length(past_samples),
        block(in.data),
        block_length(samples(in)),
        width(in.is_complex != 0 ? 2 : 1) {}

  // Taps of the filter that output n applies.
  int64_t taps_from(int64_t) const { return past_length + 1; }

  // Copies `count` samples from index `first` on; index 0 is the oldest sample of the past. Zeros where there are none.
  void copy(int64_t first, int64_t count, double *to) const {
    const int64_t end = first + count;
    const int64_t in_past = std::clamp<int64_t>(past_length - first, 0, count);
    const int64_t in_block = std::min(end - past_length, block_length) - (first + in_past - past_length);
    if (past != nullptr && in_past > 0)
      to = std::copy_n(past + first * width, in_past * width, to);
    else
      to = std::fill_n(to, in_past * width, 0.0);
    if (in_block > 0) to = std::copy_n(block + (first + in_past - past_length) * width, in_block * width, to);
    std::fill_n(to, (count - in_past - std::max<int64_t>(in_block, 0)) * width, 0.0);
  }

  // The same samples in place, without a copy; null when some of them lie outside the block.
  const double *contiguous(int64_t first, int64_t count) const {
    const bool inside = first >= past_length && first - past_length + count <= block_length;
    return inside ? block + (first - past_length) * width : nullptr;
  }

  // Stores the newest samples in the state, as the past of the next block.
  void remember(dsp_vec *state) const {
    if (state == nullptr) return;
    const int64_t fresh = std::min(block_length, past_length);
    const int64_t kept = past_length - fresh;
    const auto bytes = [this](int64_t n) { return static_cast<std::size_t>(n * width) * sizeof(double); };
    dsp_move_doubles(state->data, state->data + fresh * width, bytes(kept));
    dsp_move_doubles(state->data + kept * width, block + (block_length - fresh) * width, bytes(fresh));
  }
};

}  // namespace dsp
