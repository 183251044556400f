// The power-of-two transform behind every routine of the family.
#pragma once

#include <cstdint>

namespace dsp {

// x: 2^bits complex samples, bits >= 1, replaced by their transform times `scale`. -1: no memory for a table, x
// untouched.
std::int32_t transform(double *x, int bits, bool inverse, double scale);

// The exponent of a power of two.
int log2_of(std::int64_t n);

}  // namespace dsp
