// The catalogued windows used last.
#pragma once

#include <cstdint>

#include "dsp/dsp.h"

namespace dsp::window {

// The window of n samples, n >= 1, of a type that these flags allow. Built if it is not among the 16 made last. It
// belongs to the cache and stays valid until the next call. Null when memory runs out.
const dsp_vec *cached_window(int32_t n, dsp_window_type type, int32_t flags, double active);

}  // namespace dsp::window
