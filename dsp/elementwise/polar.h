// Samples by magnitude and phase.
#pragma once

#include <cmath>

#include "dsp/dsp.h"
#include "dsp/math/constants.h"

namespace dsp::elementwise {

inline dsp_complex from_polar(double m, double p) { return {m * std::cos(p), m * std::sin(p)}; }

}  // namespace dsp::elementwise
