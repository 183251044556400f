// The inner loop of the fractional resampler for steps p/q with a small q, such as 21/40: the phases of the kernel
// repeat after q outputs, so the weights of each phase are interpolated once and kept.
#pragma once

#include <cstdint>

#include "dsp/resample/fractional_kernels.h"
#include "dsp/simd/isa.h"

namespace dsp::resample {

static constexpr int32_t most_slots = 512;
static constexpr int32_t most_repeating_taps = 32;

// Outputs go round the slots, of which each has the weights of one phase: tap i of slot s is weights[i * stride + s].
// Vectors of outputs take the weights of neighbouring slots. They may begin at any slot, so the first slots are
// repeated behind the last.
static constexpr int32_t repeated_slots = 7;

struct repeating_weights {
  const double *points;  // of the kernel, as in kernel_rows
  int32_t taps;
  int32_t phases;
  int32_t slots;  // a multiple of q, at least 8
  int32_t next;   // the slot of the next output
  int64_t stride;
  double *weights;
  int64_t *key;  // of a slot's phase; negative while it has no weights
};

static constexpr int64_t keys_of(int32_t slots) { return int64_t{slots} + repeated_slots; }

// An odd number of cache lines, so that the taps of a slot fall into different sets of the cache.
static constexpr int64_t slot_stride(int32_t slots) { return ((keys_of(slots) + 7) / 8 | 1) * 8; }

struct repeating_kernel_set {
  // As in fractional_kernel_set, for steps in [0.5, 1) and linear interpolation. The weights of an output are those of
  // its position rounded to 2^-40 samples. Without rounding they would not come back: 0.525, for instance, is not quite
  // 21/40, so the phase of a slot drifts by some 1e-15 samples each time.
  int32_t (*interpolate)(const fractional_run &run, repeating_weights &w, double *offset, int64_t *start);
};

DSP_DECLARE_KERNELS(repeating)

}  // namespace dsp::resample
