// Memory that fails at every request of every routine: status -1, nothing lost, and the next call is right.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include "dsp/core/heap.h"
#include "tests/support/emulated.h"
#include "tests/support/heap.h"
#include "tests/support/scene.h"

namespace {

using namespace support;

std::size_t bytes(int64_t length, uint32_t is_complex) {
  return static_cast<std::size_t>(std::max<int64_t>(length, 0)) * (is_complex != 0 ? 2 : 1) * sizeof(double);
}

// Hooks of a program on the test heap. They lose no block when a resize fails.
class hooks {
 public:
  hooks() {
    dsp_lib_alloc(
        [](dsp_vec *v) {
          if (v->capacity > 0) dsp::heap_release(v->data);
          v->data = static_cast<double *>(dsp::heap_allocate(bytes(v->length, v->is_complex)));
        },
        nullptr);
    dsp_lib_realloc(
        [](dsp_vec *v, int32_t old_length, uint32_t old_is_complex) {
          void *fresh = dsp::heap_allocate(bytes(v->length, v->is_complex));
          const std::size_t kept = std::min(bytes(old_length, old_is_complex), bytes(v->capacity, 0));
          if (fresh != nullptr && v->data != nullptr) std::memcpy(fresh, v->data, kept);
          dsp::heap_release(v->data);
          v->data = static_cast<double *>(fresh);
        },
        nullptr);
    dsp_lib_free([](dsp_vec *v) { dsp::heap_release(v->data); }, nullptr);
  }
  ~hooks() {
    dsp_free_internal();
    dsp_lib_alloc(nullptr, nullptr);
    dsp_lib_realloc(nullptr, nullptr);
    dsp_lib_free(nullptr, nullptr);
  }
  hooks(const hooks &) = delete;
  hooks &operator=(const hooks &) = delete;
};

// A stream or an average, whose records the caller hands in again after a call that failed.
bool is_carried(const routine &r, const arrangement &a) {
  const std::vector<part> parts = parts_of(r);
  const bool has_state = std::any_of(parts.begin(), parts.end(), [](const part &p) { return p.role == 's'; });
  return (has_state || std::strcmp(r.name, "dsph_avg") == 0) && a.buffer == separate(parts).buffer;
}

// After a failed call a stream refuses the next block, or filters it with the state from before that call, after it, or
// with an empty one.
void goes_on(const routine &r, int variant, const std::vector<part> &parts, std::vector<record> contents,
             const arrangement &a, scene *failed) {
  if (failed->run(r, variant) != 0) return;
  scene before(contents, a), after(contents, a);
  before.run(r, variant);
  after.run(r, variant), after.run(r, variant);
  for (std::size_t i = 0; i < parts.size(); ++i)
    if (parts[i].role == 's') contents[i].length = 0;
  scene silence(contents, a);
  silence.run(r, variant);
  EXPECT_TRUE(same_results(parts, *failed, before) || same_results(parts, *failed, silence) ||
              same_results(parts, *failed, after));
}

// One call whose k-th request fails, then one that may succeed; true when there was no k-th request.
bool survives(const routine &r, int variant, const std::vector<part> &parts, const std::vector<record> &contents,
              const arrangement &a, const scene &expected, long k, bool for_ever) {
  const long live = heap_live();
  const long before = heap_requests();
  bool succeeded = false;
  {
    scene failing(contents, a);
    heap_fail(k, for_ever);
    const int32_t status = failing.run(r, variant);
    heap_fail(0);
    succeeded = heap_requests() - before < k;
    EXPECT_EQ(status, succeeded ? 0 : -1);
    if (!succeeded && is_carried(r, a)) goes_on(r, variant, parts, contents, a, &failing);
  }
  {
    scene again(contents, a);
    EXPECT_EQ(again.run(r, variant), 0);
    EXPECT_TRUE(same_results(parts, again, expected));
  }
  dsp_free_internal();
  EXPECT_EQ(heap_live(), live) << "leak";
  return succeeded;
}

void sweep(const routine &r, int variant, const std::vector<part> &parts, const std::vector<record> &contents,
           const arrangement &a) {
  scene expected(contents, a);
  if (expected.run(r, variant) != 0) return;
  dsp_free_internal();
  for (const bool for_ever : {false, true}) {
    if (for_ever && emulated) return;
    for (long k = 1;; ++k) {
      SCOPED_TRACE(name_of(a) + ", request " + std::to_string(k) + (for_ever ? " and all after it" : ""));
      const bool done = survives(r, variant, parts, contents, a, expected, k, for_ever);
      ASSERT_LT(k, 1000);
      if (done || testing::Test::HasFailure()) break;
    }
  }
}

// Whether at most two signals share a buffer. More sharing takes no other way when memory fails.
bool shares_little(const arrangement &a) {
  return std::max(*std::max_element(a.buffer.begin(), a.buffer.end()) + 2, 0) >= static_cast<int>(a.buffer.size());
}

void sweep_all() {
  for (const routine &r : routines()) {
    std::vector<arrangement> all = arrangements(parts_of(r));
    each_case(r, 64, false, [&](const std::vector<part> &parts, const std::vector<record> &contents, int variant) {
      for (const arrangement &a : all) {
        if (parts.empty() || shares_little(a)) sweep(r, variant, parts, shared_contents(contents, a), a);
        if (testing::Test::HasFailure()) return;
      }
    });
  }
}

TEST(FailingMemory, OfTheHeap) { sweep_all(); }

// The chirp of a length outlives the plan of the length it convolves on where fifteen others came between.
TEST(FailingMemory, OfAForgottenPlan) {
  std::vector<double> x(2 * 83, 1.0);
  const auto run = [&x](int32_t n) {
    dsp_vec v = {1.0, x.data(), 0, n, 1, 0};
    return dspi_dft(&v, 0);
  };
  EXPECT_EQ(run(83), 0);
  for (const int32_t n : {15, 18, 20, 21, 24, 25, 27, 28, 30, 35, 36, 40, 42, 45, 48, 50, 54}) EXPECT_EQ(run(n), 0);
  x.assign(x.size(), 1.0);
  heap_fail(1, true);
  EXPECT_EQ(run(83), -1);
  heap_fail(0);
  EXPECT_EQ(x, std::vector<double>(x.size(), 1.0));
  EXPECT_EQ(run(83), 0);
  dsp_free_internal();
}

TEST(FailingMemory, OfTheHooks) {
  const hooks installed;
  sweep_all();
}

}  // namespace
