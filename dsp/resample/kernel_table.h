// What a kernel table holds.
#pragma once

#include <cstdint>

#include "dsp/dsp.h"

namespace dsp::resample {

// The number of taps: the first sample, rounded. 0 when the table is empty or states a number that no table can have.
inline int32_t kernel_taps(const dsp_vec &table) {
  if (table.length < 1) return 0;
  const double rounded = table.data[0] + 0.5;
  return rounded >= 1.0 && rounded < INT32_MAX - 2 ? static_cast<int32_t>(rounded) : 0;
}

// A kernel table taken apart.
struct kernel {
  const double *points;  // phases * taps + 1 of them, or two alike
  int32_t taps;
  int32_t phases;   // points from tap to tap
  double alike[2];  // a table of one point, which weighs all samples the same

  // False when the table holds no kernel.
  bool read(const dsp_vec &table) {
    taps = kernel_taps(table);
    if (taps == 0 || table.length < 2 || table.is_complex != 0) return false;
    points = table.data + 1;
    phases = (table.length - 2) / taps;
    alike[0] = alike[1] = points[0];
    if (phases == 0) points = alike;
    return (table.length - 2) % taps == 0;
  }
};

}  // namespace dsp::resample
