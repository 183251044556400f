// The parametric windows.
#pragma once

#include <cstdint>

#include "dsp/window/layout.h"

namespace dsp::window {

// Each fills w with at.n samples, normalised.
void kaiser(double *w, const window_layout &at, window_scale scale, double beta);
void gauss(double *w, const window_layout &at, window_scale scale, double sigma);
void sinc_lobe(double *w, const window_layout &at, window_scale scale, double lobe, double peak);
void tukey(double *w, const window_layout &at, window_scale scale, double alpha);

}  // namespace dsp::window
