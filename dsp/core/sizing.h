// Sizes of signals, counted in 64 bits. Negative lengths and capacities count as 0.
#pragma once

#include <cstdint>

#include "dsp/dsp.h"

namespace dsp {

constexpr int32_t not_negative(int32_t n) { return n > 0 ? n : 0; }

inline int32_t samples(const dsp_vec &v) { return not_negative(v.length); }

constexpr int64_t doubles_of(int32_t length, bool is_complex) {
  return static_cast<int64_t>(not_negative(length)) * (is_complex ? 2 : 1);
}

inline int64_t doubles(const dsp_vec &v) { return doubles_of(v.length, v.is_complex != 0); }

// Whether `capacity` can hold this count of doubles and a pointer can address them.
constexpr bool countable(int64_t n) {
  constexpr uint64_t most = SIZE_MAX / sizeof(double);
  return n <= INT32_MAX && static_cast<uint64_t>(n) <= most;  // GCOVR_EXCL_BR_LINE: the latter in 64 bits
}

// The smallest power of two not below n; 1 for n < 2.
constexpr int64_t power_of_two_from(int64_t n) {
  int64_t p = 1;
  while (p < n) p *= 2;
  return p;
}

constexpr bool is_power_of_two(int64_t n) { return n > 0 && (n & (n - 1)) == 0; }

}  // namespace dsp
