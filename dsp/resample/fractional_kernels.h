// The inner loop of the fractional resampler, one for each instruction set.
#pragma once

#include <cstdint>

#include "dsp/simd/isa.h"

namespace dsp::resample {

// The weights of an output are the kernel's points `phases` apart: in the table these all fall on the same few lines of
// the cache. So they are copied, when first needed in a call, into rows, in groups of neighbouring points. A
// group also holds the point after its last.
constexpr std::int32_t points_in_group = 8;
constexpr std::int32_t rows_in_group = points_in_group + 1;

// From row to row. Vectors of four that begin at a row do not straddle lines of the cache.
static constexpr std::int64_t row_stride(std::int32_t taps) { return (std::int64_t{taps} + 3) / 4 * 4; }

struct kernel_rows {
  const double *points;
  std::int32_t taps;
  std::int32_t phases;
  double *rows;
  unsigned char *filled;  // by group
};

struct fractional_run {
  const double *block;
  std::int32_t width;   // doubles in a sample
  std::int64_t newest;  // the last sample at which a span may begin
  bool linear;
  double step;  // below 2^31
  double *y;
  std::int32_t most;
};

struct fractional_kernel_set {
  // Makes outputs while there are spans within the block and at most `most`, at least one; returns how many. `offset`
  // and `start` enter settled, with 0 <= start <= newest. They leave as they stand after the last output, or settled
  // when the block is used up.
  std::int32_t (*interpolate)(const fractional_run &run, const kernel_rows &kernel, double *offset,
                              std::int64_t *start);
};

DSP_DECLARE_KERNELS(fractional)

}  // namespace dsp::resample
