// The spectrum of the last filter that was transformed, kept for as long as the same taps come back.
#pragma once

#include <cstdint>

#include "dsp/dsp.h"

namespace dsp::filter {

// The spectrum of h for circular convolution of `size` samples, scaled such that inverse(forward(x) * spectrum) is the
// convolution; for real or for complex blocks. Null: no memory.
const dsp_vec *fir_spectrum(const dsp_vec &h, std::int32_t size, bool complex_block);

}  // namespace dsp::filter
