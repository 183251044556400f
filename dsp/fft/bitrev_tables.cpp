#include "dsp/fft/bitrev_tables.h"

#include "dsp/core/caches.h"
#include "dsp/fft/table_cache.h"
#include "dsp/fft/transform.h"

namespace dsp::fft {
namespace {

table_cache<uint32_t> bitrev_pair_cache;
table_cache<uint32_t> bitrev_fixed_cache;

uint32_t reversed(uint32_t value, int bits) {
  uint32_t r = 0;
  for (int b = 0; b < bits; ++b, value >>= 1) r = r << 1 | (value & 1);
  return r;
}

// Calls visit(i, j) once for every pair of an index and its reversal, in either order. An index is (high, middle, low):
// two halves of equal width around one bit or none. The reversal of (a', middle, b) is (b', middle, a), where '
// reverses the bits of a half: the same index if a = b. Eight a with eight b at a time touch few pages of memory.
template <class Visit>
void visit_reversals(int bits, const Visit &visit) {
  const int half = bits / 2;
  const uint32_t size = 1u << half;
  const uint32_t middles = bits % 2 != 0 ? 2 : 1;
  const uint32_t side = size < 8 ? size : 8;
  const auto visit_square = [&](uint32_t first_a, uint32_t first_b, uint32_t middle) {
    for (uint32_t a = first_a; a < first_a + side; ++a)
      for (uint32_t b = a > first_b ? a : first_b; b < first_b + side; ++b)
        visit(((reversed(a, half) * middles + middle) << half) | b,
              ((reversed(b, half) * middles + middle) << half) | a);
  };
  for (uint32_t a = 0; a < size; a += side)
    for (uint32_t b = a; b < size; b += side)
      for (uint32_t middle = 0; middle < middles; ++middle) visit_square(a, b, middle);
}

}  // namespace

const uint32_t *bitrev_pairs(int bits) {
  return bitrev_pair_cache.find_or_build(bits, int64_t{1} << bits, [bits](uint32_t *table) {
    visit_reversals(bits, [&table](uint32_t i, uint32_t j) {
      if (i == j) return;
      *table++ = i;
      *table++ = j;
    });
    *table = 0;
    return true;
  });
}

const uint32_t *bitrev_fixed(int bits) {
  return bitrev_fixed_cache.find_or_build(bits, (int64_t{2} << bits / 2) + 2, [bits](uint32_t *table) {
    visit_reversals(bits, [&table](uint32_t i, uint32_t j) {
      if (i == j) *table++ = i;
    });
    *table = bitrev_fixed_end;
    return true;
  });
}

int32_t free_bitrev_tables() {
  forget_setups();
  bitrev_pair_cache.release();
  bitrev_fixed_cache.release();
  return 0;
}

}  // namespace dsp::fft
