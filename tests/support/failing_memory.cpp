#include "tests/support/heap.h"
#include "tests/support/record.h"

namespace support {

void sweep_failing_memory(const std::string &name, const std::function<int32_t(record *result)> &run) {
  dsp_free_internal();
  const long before = heap_live();
  record expected;
  ASSERT_EQ(run(&expected), 0) << name;
  const long kept = heap_live() - (expected.capacity > 0 ? 1 : 0);
  EXPECT_EQ((dsp_free_internal(), heap_live() - (expected.capacity > 0 ? 1 : 0)), before) << name << " leaks";
  EXPECT_GE(kept, before) << name;
  const long base = heap_live();
  for (const bool for_ever : {false, true}) {
    for (long k = 1;; ++k) {
      SCOPED_TRACE(name + ", request " + std::to_string(k) + (for_ever ? " and all later ones fail" : " fails"));
      ASSERT_LT(k, 10000);
      const long begin = heap_requests();
      heap_fail(k, for_ever);
      {
        record ignored;
        const int32_t status = run(&ignored);
        heap_fail(0);
        if (heap_requests() - begin < k) {
          EXPECT_EQ(status, 0);
          break;
        }
        EXPECT_EQ(status, -1);
      }
      {
        record again;
        ASSERT_EQ(run(&again), 0);
        EXPECT_TRUE(same(again, expected));
      }
      EXPECT_EQ(dsp_free_internal(), 0);
      EXPECT_EQ(heap_live(), base) << "leak";
    }
    dsp_free_internal();
  }
}

}  // namespace support
