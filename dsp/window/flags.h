// The flags word of the window generators, and the types that it can be combined with.
#pragma once

#include <cstdint>

#include "dsp/dsp.h"

namespace dsp::window {

constexpr dsp_window_type window_tukey = 24;  // not a public type

enum class window_scale : int32_t { amplitude = DSP_WND_AMPLITUDE, power = DSP_WND_POWER, raw = DSP_WND_RAW };

inline window_scale scale_of(int32_t flags) { return static_cast<window_scale>(flags & DSP_WND_SCALE_MASK); }

// The parametric generators take a scale and a form, but no active length.
inline bool parametric_flags(int32_t flags) {
  return (flags & DSP_WND_SCALE_MASK) != DSP_WND_SCALE_MASK && (flags & DSP_WND_ACTIVE) == 0;
}

}  // namespace dsp::window
