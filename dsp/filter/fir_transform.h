// Filtering through transforms: a filter in one or more parts, each of which meets the samples that it reaches in a
// circular convolution.
#pragma once

#include "dsp/core/stream.h"
#include "dsp/dsp.h"
#include "dsp/filter/fir_spectrum.h"

namespace dsp::filter {

// The cheapest partition for a block and a real filter; no parts when the sum is cheaper still.
partition find_partition(const past_and_block &x, int32_t taps);

// A filter that is not tame is summed all the same.
int32_t filter_by_transforms(const past_and_block &x, const dsp_vec &h, const partition &p, dsp_vec *out);

}  // namespace dsp::filter
