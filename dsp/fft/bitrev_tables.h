// Lists of the indices that the bit reversal exchanges. An index counts samples or whole tiles of samples.
#pragma once

#include <cstdint>

namespace dsp::fft {

constexpr uint32_t bitrev_fixed_end = 0x12345678;

// For indices of `bits` bits: the pairs (i, j) of different indices that are each other's reversal, then a single 0;
// and the indices that are their own reversal, then bitrev_fixed_end. Null: no memory. The lists belong to the cache.
const uint32_t *bitrev_pairs(int bits);
const uint32_t *bitrev_fixed(int bits);

}  // namespace dsp::fft
