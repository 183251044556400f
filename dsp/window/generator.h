// The windows of the catalogue.
#pragma once

#include <cstdint>

#include "dsp/dsp.h"
#include "dsp/window/flags.h"

namespace dsp::window {

// Whether the flags and an active length are allowed for a type.
bool available(dsp_window_type type, int32_t flags, double active);

// Writes a window of n >= 1 samples; `active` is read with DSP_WND_ACTIVE only.
void generate(double *w, int32_t n, dsp_window_type type, int32_t flags, double active);

// The centre value of a triangle of n samples.
double triangle_peak(window_scale scale, int32_t n);

// The raw window of a type (no DSP_WND_ACTIVE) laid out for filter taps.
void generate_for_taps(double *w, int32_t n, dsp_window_type type);

}  // namespace dsp::window
