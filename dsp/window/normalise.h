// Scaling a window to a mean or a mean square.
#pragma once

#include <cstdint>

#include "dsp/window/flags.h"

namespace dsp::window {

double mean(const double *w, int32_t n);
double rms(const double *w, int32_t n);

// Scales to the mean `target` (amplitude scale) or the mean square 1 (power scale). Raw windows, and those whose mean
// is 0, stay as they are.
void normalise(double *w, int32_t n, window_scale scale, double target = 1.0);

}  // namespace dsp::window
