// A number that tells results apart; any NaN counts as any other.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace fuzz {

inline uint64_t mix(uint64_t digest, double value) {
  uint64_t bits = 0x7ff8000000000000u;
  if (!std::isnan(value)) std::memcpy(&bits, &value, sizeof bits);
  digest = (digest ^ bits) * 0x9e3779b97f4a7c15u;
  return digest ^ digest >> 29;
}

inline uint64_t mix(uint64_t digest, const double *values, std::size_t n) {
  for (std::size_t i = 0; i < n; ++i) digest = mix(digest, values[i]);
  return digest;
}

}  // namespace fuzz
