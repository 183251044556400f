#include "dsp/core/stream.h"

#include "dsp/core/scratch.h"

namespace dsp {

int32_t shape_state(dsp_vec *state, bool is_complex, int32_t length) {
  if ((is_complex ? dspi_rtoc(state) : dspi_real(state)) == 0 && dspi_zpad(state, length) == 0) return 0;
  state->length = 0;
  return -1;
}

int32_t dsp_output_prepare(stream_block *block, const dsp_vec *second, int32_t state_length, uint32_t flags) {
  if (block->state == nullptr && (flags & DSP_OUT_SHARED_STATE) != 0) block->state = scratch_state.obtain();
  if (block->state != nullptr) {
    block->state->dx = block->in.dx;
    if (shape_state(block->state, block->in.is_complex != 0, state_length) != 0) return -1;
  }
  const bool is_complex = block->in.is_complex != 0 || (second != nullptr && second->is_complex != 0);
  const int32_t length = (flags & DSP_OUT_KEEP_LENGTH) != 0 ? block->out->length : samples(block->in);
  if ((flags & DSP_OUT_ALIAS) != 0) block->out = output(block->out.get(), {&block->in});
  return block->out.shape(length, is_complex, block->in.dx);
}

int32_t dsp_output_commit(const stream_block &block) { return block.out.commit(); }

}  // namespace dsp
