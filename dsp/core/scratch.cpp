#include "dsp/core/scratch.h"

#include "dsp/core/caches.h"

namespace dsp {

work_signal scratch_output;
work_signal scratch_state;

int32_t dsp_free_scratch() {
  scratch_output.release();
  return scratch_state.release();
}

}  // namespace dsp
