// What reversing the bits of an index exchanges, as lists. They serve single samples and whole tiles of samples.
#pragma once

#include <cstdint>

namespace dsp::fft {

constexpr uint32_t bitrev_fixed_end = 0x12345678;

// For indices of `bits` bits: pairs (i, j) of indices that are each other's reversal, closed by a single 0; and
// the indices that are their own, closed by bitrev_fixed_end. Null when memory runs out. The cache keeps the lists.
const uint32_t *bitrev_pairs(int bits);
const uint32_t *bitrev_fixed(int bits);

}  // namespace dsp::fft
