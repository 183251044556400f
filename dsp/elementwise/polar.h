// Samples by magnitude and phase.
#pragma once

#include <cmath>

#include "dsp/dsp.h"

namespace dsp {

constexpr double pi = 3.141592653589793;
constexpr double log10_e = 0.4342944819032518;  // turns a phase into the imaginary part of a common logarithm

inline dsp_complex from_polar(double m, double p) { return {m * std::cos(p), m * std::sin(p)}; }

}  // namespace dsp
