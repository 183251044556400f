// Moving runs of doubles that may overlap.
#pragma once

#include <cstddef>
#include <cstring>

namespace dsp {

// Copies bytes / sizeof(double) doubles and returns `to`. Does nothing when either pointer is null.
inline double *dsp_move_doubles(double *to, const double *from, std::size_t bytes) {
  if (to != nullptr && from != nullptr && to != from) std::memmove(to, from, bytes / sizeof(double) * sizeof(double));
  return to;
}

}  // namespace dsp
