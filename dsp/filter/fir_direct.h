// Filtering by the sum itself.
#pragma once

#include <cstdint>

#include "dsp/core/stream.h"
#include "dsp/dsp.h"
#include "dsp/filter/fir_kernels.h"

namespace dsp::filter {

// y[n] = sum of h[k] x[n - k] for every sample of the block. y is complex when the block or h is.
void filter_direct(const past_and_block &x, const dsp_vec &h, double *y);

// The same for a real filter given by its first half, of at most `folded_limit` taps.
void filter_folded(const past_and_block &x, const folded_filter &h, double *y);

// Turns the circular convolution y of `size` samples with the real filter h into the plain one. The samples were the
// block and, at the end, as much of the past as fitted; the outputs that need the rest of the past are corrected.
void unwrap_past(const past_and_block &x, int64_t size, const dsp_vec &h, double *y);

}  // namespace dsp::filter
