// Which samples of a block decimation keeps, and where that leaves the next block.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "dsp/core/sizing.h"
#include "dsp/dsp.h"

namespace dsp::filter {

struct decimation {
  int32_t first;      // sample kept first
  int32_t count;      // samples kept
  double next_phase;  // samples of the following blocks to skip

  decimation(const dsp_vec &in, int32_t factor, const dsp_vec *state) {
    const int64_t n = samples(in);
    const int64_t d = std::max(factor, 1);
    const double stored = state != nullptr ? state->data[0] : 0.0;
    const double phase = stored > 0.0 ? std::floor(stored + 0.5) : 0.0;  // a stored NaN is 0, too
    const double skipped = std::min(phase, static_cast<double>(n));
    const int64_t reached = n - static_cast<int64_t>(skipped) + d - 1;
    first = static_cast<int32_t>(skipped);
    count = static_cast<int32_t>(reached / d);
    next_phase = phase - skipped + static_cast<double>(d - 1 - reached % d);
  }
};

}  // namespace dsp::filter
