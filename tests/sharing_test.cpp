// Every routine of two or more signals, and those that work in place, under every sharing of records and buffers that
// is allowed: the same bits as with a buffer for each.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/each_isa.h"
#include "tests/support/scene.h"

namespace {

using namespace support;

// Whether signal i is an output with its own record on a buffer that others share.
bool is_another_view(const std::vector<part> &parts, const arrangement &a, std::size_t i) {
  return parts[i].role == 'o' && std::count(a.record.begin(), a.record.end(), a.record[i]) == 1 &&
         std::count(a.buffer.begin(), a.buffer.end(), a.buffer[i]) > 1;
}

// Changes the length and representation that an output has before the call. They must not matter.
void reshape(dsp_vec *v) {
  v->length = v->is_complex != 0 ? 2 * v->length : v->length / 2;
  v->is_complex = v->is_complex == 0;
}

void compare(const routine &r, int variant, const std::vector<part> &parts, const std::vector<record> &contents,
             const arrangement &a, bool reshaped) {
  SCOPED_TRACE(name_of(a) + (reshaped ? ", reshaped" : ""));
  scene expected(contents, separate(parts)), shared(contents, a);
  for (std::size_t i = 0; i < parts.size(); ++i)
    if (reshaped && is_another_view(parts, a, i)) reshape(&expected[i]), reshape(&shared[i]);
  const int32_t status = expected.run(r, variant);
  ASSERT_EQ(shared.run(r, variant), status);
  if (status == 0) {
    ASSERT_TRUE(same_results(parts, shared, expected));
  }
}

void share_all() {
  for (const routine &r : routines()) {
    const std::vector<arrangement> all = arrangements(parts_of(r));
    each_case(r, 64, false, [&](const std::vector<part> &parts, const std::vector<record> &contents, int variant) {
      for (const arrangement &a : all)
        for (const bool reshaped : {false, true}) {
          compare(r, variant, parts, shared_contents(contents, a), a, reshaped);
          if (testing::Test::HasFatalFailure()) return;
        }
    });
  }
  dsp_free_internal();
}

TEST(Sharing, GivesTheUnsharedResult) { on_each_isa(share_all); }

}  // namespace
