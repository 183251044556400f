// Every routine of two or more signals, and those that work in place, under every sharing of records and buffers that
// is allowed: the same bits as with a buffer for each.
#include <gtest/gtest.h>

#include "tests/support/scene.h"

namespace {

using namespace support;

TEST(Sharing, GivesTheUnsharedResult) {
  for (const routine &r : routines()) {
    const std::vector<arrangement> all = arrangements(parts_of(r));
    each_case(r, 64, false, [&](const std::vector<part> &parts, const std::vector<record> &contents, int variant) {
      for (const arrangement &a : all) {
        const std::vector<record> held = shared_contents(contents, a);
        scene expected(held, separate(parts)), shared(held, a);
        const int32_t status = expected.run(r, variant);
        ASSERT_EQ(shared.run(r, variant), status) << name_of(a);
        if (status == 0) {
          ASSERT_TRUE(same_results(parts, shared, expected)) << name_of(a);
        }
      }
    });
  }
  dsp_free_internal();
}

}  // namespace
