// Scaling a window to a mean or a mean square.
#pragma once

#include <cstdint>

#include "dsp/window/flags.h"

namespace dsp::window {

double mean(const double *w, std::int32_t n);
double rms(const double *w, std::int32_t n);

// Amplitude scale: mean `target`; power scale: mean square 1; raw, or nothing to scale: as it is.
void normalise(double *w, std::int32_t n, window_scale scale, double target = 1.0);

}  // namespace dsp::window
