// The fractional stage on one block, whose outputs may be taken in pieces.
#pragma once

#include <cstdint>

#include "dsp/core/stream.h"
#include "dsp/dsp.h"
#include "dsp/resample/fractional_kernels.h"
#include "dsp/resample/kernel_table.h"
#include "dsp/resample/position.h"
#include "dsp/resample/repeating_kernels.h"

namespace dsp::resample {

// Call begin(), make() as often as wanted, end(). Only one stage at a time: its work space is process-wide.
class fractional_stage {
 public:
  fractional_stage(const kernel &k, bool linear, double step);

  // `state` may be null, or holds T samples of the stream's representation, the offset and the start. -1: no position
  // or no memory; nothing has changed.
  int32_t begin(const dsp_vec &in, dsp_vec *state);
  // The next outputs, at most `most`; fewer when the block is used up. Returns how many.
  int32_t make(int32_t most, double *y);
  // Leaves the state for the next block.
  void end();

 private:
  int32_t prepare();
  int64_t room_for_slots() const;
  void empty_slots(double *room);
  int32_t make_run(int32_t most, double *y);
  int32_t make_one(double *y);

  const kernel &k_;
  bool linear_;
  double step_;
  bool in_runs_;   // the kernels for this processor make the outputs
  int32_t slots_;  // for a step whose phases repeat, else 0
  past_and_block x_ = {{}, nullptr, 0};
  int64_t newest_ = 0;  // the last sample at which a span may begin
  position at_ = {0.0, 0.0};
  dsp_vec *state_ = nullptr;
  repeating_weights weights_ = {};  // for a step whose phases repeat
  kernel_rows *rows_ = nullptr;     // for any other
  double *joined_ = nullptr;        // the past and the first taps - 1 samples of the block
};

}  // namespace dsp::resample
