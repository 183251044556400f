// The inner loop of the fractional resampler, one for each instruction set.
#pragma once

#include <cstdint>

#include "dsp/simd/isa.h"

namespace dsp::resample {

// The weights of an output are points of the kernel that lie `phases` apart. In the table they would compete for the
// same few sets of the cache, so they are copied into rows when first needed: row p holds the points p, p + phases, ...
// The weights of an output are interpolated between a row and the next.
static constexpr int64_t rows_of(int32_t phases) { return int64_t{phases} + 1; }

// Doubles from row to row: room for whole vectors, on cache lines of their own.
static constexpr int64_t row_stride(int32_t taps) { return (int64_t{taps} + 7) / 8 * 8; }

struct kernel_rows {
  const double *points;
  int32_t taps;
  int32_t phases;
  double *rows;
  unsigned char *ready;  // for each row: this row and the next one are filled
  int32_t fills;         // calls that filled rows so far
  int32_t missing;       // rows that are not ready
};

struct fractional_run {
  const double *block;
  int32_t width;   // doubles in a sample
  int64_t newest;  // the last sample at which a span may begin
  bool linear;
  double step;  // below 2^31
  double *y;
  int32_t most;
};

struct fractional_kernel_set {
  // Makes outputs while there are spans within the block and at most `most`, at least one; returns how many. `offset`
  // and `start` enter with whole samples carried, 0 <= start <= newest. They leave as they stand after the last output,
  // or with whole samples carried when the block is used up.
  int32_t (*interpolate)(const fractional_run &run, kernel_rows &kernel, double *offset, int64_t *start);
};

DSP_DECLARE_KERNELS(fractional)

}  // namespace dsp::resample
