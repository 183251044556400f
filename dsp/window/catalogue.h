// The cosine sums of the catalogue.
#pragma once

#include "dsp/dsp.h"
#include "dsp/window/cosine_sum.h"
#include "dsp/window/flags.h"

namespace dsp::window {

// The sum of a type in one of its normalisations; no terms for a type that is no cosine sum. In amplitude scale the
// mean is 1 (that of the flat-tops their first coefficient), in power scale the mean square, raw sums reach 1.
cosine_sum catalogued_sum(dsp_window_type type, window_scale scale);

}  // namespace dsp::window
