// The spacing of the result of a transform of n samples.
#pragma once

#include "dsp/math/saturation.h"

namespace dsp::fft {

inline double transformed_spacing(double dx, double n) { return dx != 0.0 ? 1.0 / (dx * n) : overflow_bound; }

}  // namespace dsp::fft
