// Memory for tables and work areas, counted in 64 bits.
#pragma once

#include <cstddef>
#include <cstdint>

#include "dsp/core/heap.h"

namespace dsp::fft {

// Null: no memory, or more bytes than a pointer can address.
inline void *allocate(uint64_t bytes) {
  if (bytes > SIZE_MAX / 2) return nullptr;  // GCOVR_EXCL_LINE: where size_t has 32 bits
  return heap_allocate(static_cast<std::size_t>(bytes));
}

inline double *allocate_doubles(int64_t count) {
  return static_cast<double *>(allocate(static_cast<uint64_t>(count) * sizeof(double)));
}

}  // namespace dsp::fft
