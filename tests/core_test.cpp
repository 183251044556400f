// The signal record: sizing, ownership, hooks, copying, comparing; outputs that share buffers.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "dsp/core/operands.h"
#include "dsp/core/output.h"
#include "dsp/dsp.h"
#include "tests/support/heap.h"
#include "tests/support/record.h"

namespace {

using namespace support;

constexpr int32_t huge = std::numeric_limits<int32_t>::max();

int32_t allocate(dsp_vec *v, int32_t length) {
  v->length = length;
  return dsp_alloc(v);
}

int32_t resize(dsp_vec *v, int32_t old_length, int32_t length) {
  v->length = length;
  return dsp_realloc(v, old_length, v->is_complex);
}

TEST(Signal, SizesOnlyWhenTooSmall) {
  record v(reals(10, 1.0));
  double *const data = v.data;
  v.is_complex = 1;
  EXPECT_EQ(allocate(&v, 5), 0);
  EXPECT_EQ(v.data, data);
  EXPECT_EQ(allocate(&v, 6), 0);
  EXPECT_EQ(v.capacity, 12);
  EXPECT_EQ(resize(&v, 6, 1), 0);
  EXPECT_EQ(v.capacity, 12);
  for (const int32_t nothing : {0, -1, -huge - 1}) {
    record empty;
    empty.capacity = nothing;
    EXPECT_EQ(allocate(&empty, nothing), 0);
    EXPECT_EQ(empty.data, nullptr);
  }
}

TEST(Signal, BorrowedMemoryIsCopiedNeverReleased) {
  reals mine = {1, 2, 3};
  dsp_vec v = borrow(mine);
  ASSERT_EQ(resize(&v, 3, 5), 0);
  EXPECT_NE(v.data, mine.data());
  EXPECT_EQ(v.capacity, 5);
  v.length = 3;
  EXPECT_EQ(doubles_of(v), mine);
  dsp_destroy(&v);
  v = borrow(mine);
  dsp_destroy(&v);
  EXPECT_EQ(v.data, nullptr);
  EXPECT_EQ(v.dx, 1.0);
  EXPECT_EQ(mine[2], 3.0);
}

TEST(Signal, FailedSizingLeavesAnEmptyRecord) {
  const long before = heap_live(), lost = heap_lost();
  for (const int32_t length : {huge / 2 + 1, 8})  // doubles that cannot be counted, and memory that fails
    for (const bool keep : {false, true}) {
      record v(complexes(2));
      heap_fail(length == 8 ? 1 : 0);
      EXPECT_EQ(keep ? resize(&v, 2, length) : allocate(&v, length), -1);
      heap_fail(0);
      EXPECT_EQ(v.data, nullptr);
      EXPECT_EQ(v.capacity, 0);
      EXPECT_EQ(v.length, length);
      EXPECT_EQ(heap_lost() - lost, keep && length == 8 ? 1 : 0);
    }
  EXPECT_EQ(heap_live(), before);
  record a(reals(2));
  record b;
  b.length = huge - 1;
  EXPECT_EQ(dsp_append(&a, &b), -1);
  EXPECT_EQ(a.length, 2);
}

struct hook_calls {
  int allocs, reallocs, frees;
  int32_t old_length;
} calls;
reals hook_memory(64);

TEST(Signal, HooksReplaceTheHeap) {
  dsp_alloc_fn old_alloc = [](dsp_vec *) {};
  ASSERT_EQ(dsp_lib_alloc([](dsp_vec *v) { ++calls.allocs, v->data = v->length < 60 ? hook_memory.data() : nullptr; },
                          &old_alloc),
            0);
  EXPECT_EQ(old_alloc, nullptr);
  dsp_lib_realloc(
      [](dsp_vec *v, int32_t old_length, uint32_t) {
        ++calls.reallocs, calls.old_length = old_length;
        v->data = hook_memory.data();
      },
      nullptr);
  dsp_lib_free([](dsp_vec *) { ++calls.frees; }, nullptr);
  const long requests = heap_requests();
  dsp_vec v;
  dsp_init(&v);
  EXPECT_EQ(allocate(&v, 7), 0);
  EXPECT_EQ(v.capacity, 7);
  EXPECT_EQ(resize(&v, 7, 9), 0);
  EXPECT_EQ(calls.old_length, 7);
  EXPECT_EQ(allocate(&v, 60), -1);
  EXPECT_EQ(v.capacity, 0);
  EXPECT_EQ(calls.frees, 0);
  EXPECT_EQ(allocate(&v, 4), 0);
  v.is_complex = 1;
  EXPECT_EQ(allocate(&v, huge), -1);
  EXPECT_EQ(calls.frees, 1);
  v = {1.0, hook_memory.data(), 0, 2, 0, 0};
  EXPECT_EQ(resize(&v, 2, 3), 0);
  dsp_destroy(&v);
  EXPECT_EQ(calls.allocs, 3);
  EXPECT_EQ(calls.reallocs, 2);
  EXPECT_EQ(calls.frees, 2);
  EXPECT_EQ(heap_requests(), requests);
  dsp_lib_alloc(nullptr, &old_alloc);
  EXPECT_NE(old_alloc, nullptr);
  dsp_lib_realloc(nullptr, nullptr);
  dsp_lib_free(nullptr, nullptr);
  EXPECT_EQ(dsp_version(), 205);
  EXPECT_EQ(dsp_lib_init(), 0);
}

TEST(Copy, CutsClampedRuns) {
  for (const bool is_complex : {false, true}) {
    const record source = random_signal(6, is_complex, 1, 0.25);
    for (const int32_t start : {-3, 0, 2, 6, 9, huge})
      for (const int32_t count : {-1, 0, 3, 6, huge}) {
        const int32_t first = std::min(std::max(start, 0), 6);
        const int32_t n = std::min(std::max(count, 0), 6 - first);
        const complexes z = complexes_of(source);
        const complexes cut(z.begin() + first, z.begin() + first + n);
        record expected(cut, 0.25);
        if (!is_complex) dspi_real(&expected);
        record out(reals{9, 9});
        ASSERT_EQ(dspu_subvec(&source, &out, start, count), 0);
        EXPECT_TRUE(same(out, expected)) << start << " " << count;
      }
    record all, most, none;
    EXPECT_EQ(dsp_copy(&all, &source) | dsp_copy_at_most(&most, &source, 1000), 0);
    EXPECT_TRUE(same(all, source) && same(most, source));
    EXPECT_EQ(dsp_copy_at_most(&none, &source, -3), 0);
    EXPECT_EQ(none.length, 0);
  }
}

TEST(Copy, AppendsEveryMix) {
  for (const bool to_complex : {false, true})
    for (const bool from_complex : {false, true}) {
      record to = random_signal(3, to_complex, 1, 2.0);
      const record from = random_signal(4, from_complex, 2, 5.0);
      complexes expected = complexes_of(to);
      for (const complex z : complexes_of(from)) expected.push_back(z);
      ASSERT_EQ(dsp_append(&to, &from), 0);
      EXPECT_EQ(complexes_of(to), expected);
      EXPECT_EQ(to.is_complex, to_complex || from_complex);
      EXPECT_EQ(to.dx, 2.0);
    }
  record v(reals{1, 2});
  const dsp_vec on_it = view(v);
  EXPECT_EQ(dsp_append(&v, &v), -1);
  EXPECT_EQ(dsp_append(&v, &on_it), -1);
  EXPECT_EQ(doubles_of(v), (reals{1, 2}));
}

TEST(Compare, FirstDifferenceBeyondToleranceDecides) {
  const double nan = std::nan("");
  struct {
    record a, b;
    double tolerance;
    int32_t expected;
  } cases[] = {
      {record(reals{1, 2}), record(reals{1, 2}), 0, 0},
      {record(reals{1, 2}, 2.0), record(reals{1, 9}), 0.5, 1},
      {record(reals{1, 2}), record(reals{1.5, 1}), 0.5, 1},
      {record(reals{1, nan, 2}), record(reals{1, 5, 3}), 0, -1},
      {record(complexes{{1, 2}}), record(complexes{{1, 3}}), 0.5, -1},
      {record(complexes{{1, 0.5}, {2, -0.5}}), record(reals{1, 2}), 0.5, 0},
      {record(complexes{{1, 0}, {2, -0.6}}), record(reals{1, 2}), 0.5, -1},
      {record(reals{1, 2}), record(complexes{{1, 0}, {2, -0.6}}), 0.5, 1},
      {record(reals{1, 2}), record(complexes{{3, 0}, {2, 0}}), 0.5, -1},
      {record(), record(), 0, 0},
  };
  for (const auto &c : cases) {
    int32_t result = 7;
    EXPECT_EQ(dsp_cmp(&c.a, &c.b, c.tolerance, &result), 0);
    EXPECT_EQ(result, c.expected) << &c - cases;
  }
  for (std::size_t at = 0; at < 200; ++at) {
    reals x(200, 0.0);
    x[at] = 1.0;
    int32_t result = 7;
    const record a(x), zeros(reals(200, 0.0));
    dsp_cmp(&a, &zeros, 0.5, &result);
    EXPECT_EQ(result, 1);
  }
  int32_t untouched = 7;
  EXPECT_EQ(dsp_cmp(&cases[0].a, &cases[4].a, 0, &untouched), -1);
  EXPECT_EQ(untouched, 7);
}

TEST(Output, KeepsNoMoreThanTheOperandsHold) {
  // The same eight doubles as eight samples and, in the output's record, as four: nothing beyond them may be read.
  std::vector<double> eight = {0, 1, 2, 3, 4, 5, 6, 7};
  const record wide(complexes(8));
  dsp_vec out = borrow(eight);
  const dsp_vec a = out;
  out.length = 4;
  out.is_complex = 1;
  static uint32_t kept_complex;
  dsp_lib_realloc([](dsp_vec *v, int32_t, uint32_t is_complex) { kept_complex = is_complex, v->data = nullptr; },
                  nullptr);
  dsp::operands ready;
  EXPECT_EQ(dsp::dspb_prepare_output(a, wide, &out, &ready), -1);
  EXPECT_EQ(kept_complex, 0u);
  dsp_lib_realloc(nullptr, nullptr);
  EXPECT_EQ(dsp::mean_spacing(1.5e308, 1.7e308), 1.6e308);
  EXPECT_EQ(dsp::mean_spacing(5e-324, 5e-324), 5e-324);
}

TEST(Output, ScratchStandsInForASharedBuffer) {
  record in(reals{1, 2, 3}, 0.5);
  dsp_vec alias = view(in);
  dsp_vec *slot = &alias;
  record state(reals{7});
  dsp_vec *state_slot = &state;
  const record filter(complexes{{1, 0}});
  ASSERT_EQ(dsp::dsp_output_prepare(&in, &slot, &filter, &state_slot, 2, dsp::DSP_OUT_ALIAS), 0);
  EXPECT_NE(slot, &alias);
  EXPECT_EQ(slot->length, 3);
  EXPECT_EQ(slot->is_complex, 1u);
  EXPECT_EQ(doubles_of(state), (reals{7, 0}));
  EXPECT_EQ(state.dx, 0.5);
  for (int i = 0; i < 6; ++i) slot->data[i] = i;
  ASSERT_EQ(dsp::dsp_output_commit(slot), 0);
  EXPECT_EQ(doubles_of(alias), (reals{0, 1, 2, 3, 4, 5}));
  dsp_destroy(&alias);

  record out;
  out.length = 9;
  slot = &out;
  ASSERT_EQ(dsp::dsp_output_prepare(&in, &slot, nullptr, nullptr, 0, dsp::DSP_OUT_ALIAS | dsp::DSP_OUT_KEEP_LENGTH), 0);
  EXPECT_EQ(slot, &out);
  EXPECT_EQ(out.length, 9);
  EXPECT_EQ(out.is_complex, 0u);
  ASSERT_EQ(dsp::dsp_output_commit(slot), 0);
}

TEST(Output, SharedStateLastsUntilReleased) {
  const record in(complexes{{1, 2}});
  record out;
  dsp_vec *slot = &out;
  for (const double expected : {0.0, 42.0}) {
    dsp_vec *state = nullptr;
    ASSERT_EQ(dsp::dsp_output_prepare(&in, &slot, nullptr, &state, 3, dsp::DSP_OUT_SHARED_STATE), 0);
    ASSERT_NE(state, nullptr);
    EXPECT_EQ(state->length, 3);
    EXPECT_EQ(state->is_complex, 1u);
    EXPECT_EQ(state->data[0], expected);
    state->data[0] = 42.0;
  }
  EXPECT_EQ(dsp_free_internal(), 0);
  EXPECT_EQ(dsp_free_internal(), 0);
  dsp_vec *state = nullptr;
  ASSERT_EQ(dsp::dsp_output_prepare(&in, &slot, nullptr, &state, 3, dsp::DSP_OUT_SHARED_STATE), 0);
  EXPECT_EQ(state->data[0], 0.0);
  dsp_free_internal();
}

}  // namespace
