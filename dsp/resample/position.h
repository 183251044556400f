// The position of a fractional resampler and the phase of its kernel there. All functions are local to the file that
// includes this one, because kernels for several instruction sets do.
#pragma once

#include <cstdint>

namespace dsp::resample {

// The next output lies `offset` samples, in [-1, 0] once whole samples have been carried, from a span that begins at
// sample `start` of the block.
struct position {
  double offset;
  double start;
};

namespace {

// Moves whole samples from the offset to the start. Rounds up by way of an integer: not every processor has an
// instruction for it.
inline void carry_whole_samples(position *at) {
  if (!(at->offset > 0.0)) return;
  double whole =
      at->offset < 0x1p31 ? static_cast<double>(static_cast<int32_t>(at->offset)) : __builtin_ceil(at->offset);
  if (whole < at->offset) whole += 1.0;
  at->offset -= whole;
  at->start += whole;
}

// The kernel between two of its points: `fraction` of the way from `point` to the next.
struct kernel_phase {
  int32_t point;
  double fraction;

  kernel_phase(double offset, double phases, bool linear) {
    const double f = -offset * phases;
    point = static_cast<int32_t>(f);
    fraction = linear ? f - point : 0.0;
    // A whole sample: the kernel may end with this point, so come from the one before.
    const bool at_end = point > 0 && f == phases;
    point -= at_end ? 1 : 0;
    fraction = at_end ? 1.0 : fraction;
  }
};

}  // namespace

}  // namespace dsp::resample
