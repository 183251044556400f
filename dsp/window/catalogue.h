// The cosine sums of the catalogue.
#pragma once

#include "dsp/dsp.h"
#include "dsp/window/cosine_sum.h"
#include "dsp/window/flags.h"

namespace dsp::window {

// The cosine sum of a type in one of its normalisations; no terms for a type that is not a cosine sum. Amplitude scale
// has the mean 1 (flat-tops: their first coefficient), power scale the mean square 1, raw sums the maximum 1.
cosine_sum catalogued_sum(dsp_window_type type, window_scale scale);

}  // namespace dsp::window
