// The spectra of the last filter that was transformed, kept for as long as the same taps come back.
#pragma once

#include <cstdint>

#include "dsp/dsp.h"
#include "dsp/filter/fir_kernels.h"

namespace dsp::filter {

// A filter cut into parts, each for circular convolutions of `size` samples.
struct partition {
  int32_t size;
  int32_t taps;  // of each part but the last
  int32_t parts;

  // Complex numbers in the spectrum of a part.
  int64_t bins(bool complex_block) const { return complex_block ? size : size / 2 + 1; }
};

// The parts' spectra one after the other, scaled such that inverse(forward(x) * spectrum) is the convolution; for real
// or for complex blocks. Null for a filter that is not tame. -1: no memory.
int32_t fir_spectra(const dsp_vec &h, const partition &p, bool complex_block, const double **found);

// Whether no value is a NaN, infinite or beyond `wild`. A transform would spread such a value, or the rounding of a
// huge one, over its whole block; the sum keeps it to the outputs that weigh it.
constexpr double wild = 1e50;
inline bool is_tame(const double *x, int64_t count) { return x == nullptr || fir_kernels().within(x, count, wild); }

void free_fir_spectra();

}  // namespace dsp::filter
