// The number of taps of a kernel table: its first sample, rounded.
#pragma once

#include <cstdint>

#include "dsp/dsp.h"

namespace dsp::resample {

// 0 when the table is empty or states a number that no table can have.
inline int32_t kernel_taps(const dsp_vec &table) {
  if (table.length < 1) return 0;
  const double rounded = table.data[0] + 0.5;
  return rounded >= 1.0 && rounded < INT32_MAX - 2 ? static_cast<int32_t>(rounded) : 0;
}

}  // namespace dsp::resample
