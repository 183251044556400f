// The catalogued windows used last.
#pragma once

#include <cstdint>

#include "dsp/dsp.h"

namespace dsp::window {

// The window of so many samples (at least 1), of a type available with these flags; built if it is not among the last
// 16. It is the cache's, valid until the next call. Null when memory runs out.
const dsp_vec *cached_window(std::int32_t n, dsp_window_type type, std::int32_t flags, double active);

}  // namespace dsp::window
