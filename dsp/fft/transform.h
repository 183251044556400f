// The complex transforms behind every routine of the family.
#pragma once

#include <cstdint>
#include <cstring>

namespace dsp::fft {

// x: 2^bits complex samples, bits >= 1, replaced by their transform times `scale`. -1: no memory for a table, x
// untouched.
int32_t transform(double *x, int bits, bool inverse, double scale);

// The same for n >= 3 samples, no power of two, by the cheapest way.
int32_t transform_of_any_length(double *x, int32_t n, bool inverse, double scale);

// The octant_table of 2^bits, bits >= 3. Null: no memory.
const double *octant_setup(int bits);

// The exponent of a power of two.
inline int log2_of(int64_t n) { return 63 - __builtin_clzll(static_cast<unsigned long long>(n)); }

// 2^-bits without a division.
inline double reciprocal_power_of_two(int bits) {
  const uint64_t pattern = static_cast<uint64_t>(1023 - bits) << 52;
  double value;
  std::memcpy(&value, &pattern, sizeof value);
  return value;
}

// To be called before tables are released.
void forget_setups();

}  // namespace dsp::fft
