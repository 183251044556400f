// A record sent through a routine in blocks.
#pragma once

#include <algorithm>
#include <functional>
#include <random>
#include <vector>

#include "tests/support/record.h"

namespace support {

// Filters one block into `out`, which may be `in`.
using block_routine = std::function<int32_t(const dsp_vec *in, dsp_vec *out)>;

// Block lengths that add up to n: mostly short, some 0 or 1, some longer than `around`.
inline std::vector<int32_t> random_blocks(int32_t n, int32_t around, unsigned seed) {
  std::mt19937_64 engine(seed);
  std::vector<int32_t> blocks;
  while (n > 0) {
    const int32_t most[] = {1, 2, around, 3 * around};
    const int32_t length = std::min(n, static_cast<int32_t>(engine() % static_cast<unsigned>(most[engine() % 4] + 1)));
    blocks.push_back(length);
    n -= length;
  }
  return blocks;
}

// The outputs of all blocks joined; -1 from the routine ends the test. Every block has its own record, which is also
// the output when `shared`.
inline record in_blocks(const record &in, const std::vector<int32_t> &blocks, bool shared,
                        const block_routine &routine) {
  record whole;
  int32_t start = 0;
  for (const int32_t length : blocks) {
    record block, out;
    dspu_subvec(&in, &block, start, length);
    start += length;
    record &result = shared ? block : out;
    EXPECT_EQ(routine(&block, &result), 0);
    whole.dx = result.dx;
    EXPECT_EQ(dsp_append(&whole, &result), 0);
  }
  return whole;
}

// Filters one block with the state of those before it.
using stream_routine = std::function<int32_t(const dsp_vec *in, dsp_vec *out, dsp_vec *state)>;

// Blocks against the whole, of a state that starts empty: the same bits, or, where routes differ, within `tolerance`.
inline void expect_blocks_to_be_the_whole(const record &in, int32_t around, double tolerance,
                                          const stream_routine &routine) {
  record whole, whole_state;
  ASSERT_EQ(routine(&in, &whole, &whole_state), 0);
  for (unsigned seed = 1; seed <= 6; ++seed) {
    record state;
    const auto blocks = random_blocks(in.length, around, seed);
    const record pieces = in_blocks(in, blocks, seed % 2 != 0, [&](const dsp_vec *block, dsp_vec *out) {
      if (seed == 3) dsp_free_internal();
      return routine(block, out, &state);
    });
    EXPECT_TRUE(tolerance == 0 ? same(pieces, whole) : near(pieces, whole, tolerance)) << seed;
    EXPECT_TRUE(same(state, whole_state)) << seed;
  }
}

}  // namespace support
