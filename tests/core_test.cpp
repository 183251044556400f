// The signal record: sizing, ownership, hooks, copying, comparing; outputs that share buffers.
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <string>

#include "dsp/core/sharing.h"
#include "dsp/core/stream.h"
#include "dsp/dsp.h"
#include "tests/support/heap.h"
#include "tests/support/record.h"

namespace {

using namespace support;

constexpr int32_t huge = std::numeric_limits<int32_t>::max();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

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
  EXPECT_EQ(allocate(&v, 6) | resize(&v, 6, 1), 0);
  EXPECT_EQ(v.capacity, 12);
  for (const int32_t nothing : {0, -1, -huge - 1}) {
    record empty;
    empty.capacity = nothing;
    EXPECT_EQ(allocate(&empty, nothing), 0);
    EXPECT_EQ(empty.data, nullptr);
  }
}

TEST(Signal, FailedSizingLeavesAnEmptyRecord) {
  const long before = heap_live(), lost = heap_lost();
  for (const int32_t length : {huge / 2 + 1, 8})  // doubles that cannot be counted, and memory that fails
    for (const bool keep : {false, true}) {
      record v(complexes(2));
      heap_fail(length == 8 ? 1 : 0);
      EXPECT_EQ(keep ? resize(&v, 2, length) : allocate(&v, length), -1);
      heap_fail(0);
      EXPECT_TRUE(v.data == nullptr && v.capacity == 0 && v.length == length);
      EXPECT_EQ(heap_lost() - lost, keep && length == 8 ? 1 : 0);
    }
  EXPECT_EQ(heap_live(), before);
}

std::string calls;
reals hook_memory(64);

TEST(Signal, HooksReplaceTheHeap) {
  dsp_alloc_fn previous = [](dsp_vec *) {};
  dsp_lib_alloc([](dsp_vec *v) { calls += 'a', v->data = v->length < 60 ? hook_memory.data() : nullptr; }, &previous);
  EXPECT_EQ(previous, nullptr);
  dsp_lib_realloc([](dsp_vec *v, int32_t old, uint32_t) { calls += std::to_string(old), v->data = hook_memory.data(); },
                  nullptr);
  dsp_lib_free([](dsp_vec *) { calls += 'f'; }, nullptr);
  const long requests = heap_requests();
  dsp_vec v, borrowed = {1.0, hook_memory.data(), 0, 2, 0, 0};
  dsp_init(&v);
  const std::vector<int32_t> did = {allocate(&v, 7),  v.capacity, resize(&v, 7, 9), v.capacity,
                                    allocate(&v, 60), v.capacity, allocate(&v, 4),  v.capacity};
  EXPECT_EQ(did, (std::vector<int32_t>{0, 7, 0, 9, -1, 0, 0, 4}));
  v.is_complex = 1;
  EXPECT_EQ(allocate(&v, huge), -1);
  EXPECT_EQ(resize(&borrowed, 2, 3), 0);
  dsp_destroy(&borrowed);
  EXPECT_EQ(calls, "a7aaf2f");
  EXPECT_EQ(heap_requests(), requests);
  dsp_lib_alloc(nullptr, &previous);
  EXPECT_NE(previous, nullptr);
  dsp_lib_realloc(nullptr, nullptr);
  dsp_lib_free(nullptr, nullptr);
  EXPECT_EQ(dsp_version(), 205);
  EXPECT_EQ(dsp_lib_init(), 0);
}

TEST(Copy, CutsClampedRuns) {
  for (const bool is_complex : {false, true}) {
    const record source = random_signal(6, is_complex, 1, 0.25);
    const complexes z = complexes_of(source);
    for (const int32_t start : {-3, 0, 2, 6, 9, huge})
      for (const int32_t count : {-1, 0, 3, 6, huge}) {
        const int32_t first = std::clamp(start, 0, 6);
        const complexes cut(z.begin() + first, z.begin() + first + std::clamp(count, 0, 6 - first));
        record out(reals{9, 9});
        ASSERT_EQ(dspu_subvec(&source, &out, start, count), 0);
        EXPECT_TRUE(same(out, signal_of(cut, is_complex, 0.25))) << start << " " << count;
        ASSERT_EQ(start == 0 ? dsp_copy_at_most(&out, &source, count) : dsp_copy(&out, &source), 0);
        EXPECT_TRUE(same(out, start == 0 ? signal_of(cut, is_complex, 0.25) : source));
      }
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
      EXPECT_TRUE(same(to, signal_of(expected, to_complex || from_complex, 2.0)));
    }
  record v(reals{1, 2}), endless;
  endless.length = huge - 1;
  const dsp_vec on_it = view(v);
  for (const dsp_vec *refused : {static_cast<const dsp_vec *>(&v), &on_it, static_cast<const dsp_vec *>(&endless)})
    EXPECT_EQ(dsp_append(&v, refused), -1);
  EXPECT_TRUE(same(v, record(reals{1, 2})));
}

TEST(Compare, FirstDifferenceBeyondToleranceDecides) {
  const struct {
    record a, b;
    double tolerance;
    int32_t expected;
  } cases[] = {
      {reals{1, 2}, reals{1, 2}, 0, 0},
      {record(reals{1, 2}, 2.0), reals{1, 9}, 0.5, 1},
      {reals{1, 2}, reals{1.5, 1}, 0.5, 1},
      {reals{1, nan, 2}, reals{1, 5, 3}, 0, -1},
      {complexes{{1, 2}}, complexes{{1, 3}}, 0.5, -1},
      {complexes{{1, 0.5}, {2, -0.5}}, reals{1, 2}, 0.5, 0},
      {complexes{{1, 0}, {2, -0.6}}, reals{1, 2}, 0.5, -1},
      {reals{1, 2}, complexes{{3, 0}, {2, 0}}, 0.5, -1},
      {record(), record(), 0, 0},
  };
  int32_t result = 7;
  EXPECT_EQ(dsp_cmp(&cases[0].a, &cases[4].a, 0, &result), -1);
  EXPECT_EQ(result, 7);
  for (const auto &c : cases)
    for (const int32_t sign : {1, -1}) {
      EXPECT_EQ(sign > 0 ? dsp_cmp(&c.a, &c.b, c.tolerance, &result) : dsp_cmp(&c.b, &c.a, c.tolerance, &result), 0);
      EXPECT_EQ(result, sign * c.expected) << &c - cases;
    }
  const record nothing[] = {reals{0}, complexes{0}};
  for (const record &a : nothing)
    for (const record &b : nothing) {  // a difference of 0 is above a negative tolerance
      dsp_cmp(&a, &b, -1, &result);
      EXPECT_EQ(result, 1);
    }
  for (std::size_t at = 0; at < 200; ++at) {
    record a(reals(200, 0.0)), zeros(a);
    a.data[at] = 1.0;
    dsp_cmp(&a, &zeros, 0.5, &result);
    EXPECT_EQ(result, 1);
  }
}

TEST(Output, KeepsNoMoreThanTheOperandsHold) {
  // The same eight doubles as eight samples and, in the output's record, as four: nothing beyond them may be read.
  reals eight = {0, 1, 2, 3, 4, 5, 6, 7};
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
  reals three = {1, 2, 3};  // the output's own record states only the first of them
  dsp_vec part = {1.0, three.data(), 3, 1, 0, 0};
  const dsp_vec operand_on_it = {1.0, three.data(), 0, 3, 0, 0};
  static int32_t kept_length;
  dsp_lib_realloc([](dsp_vec *v, int32_t length, uint32_t) { kept_length = length, v->data = nullptr; }, nullptr);
  EXPECT_EQ(dspb_ritoc(&operand_on_it, &operand_on_it, &part), -1);
  EXPECT_EQ(kept_length, 3);
  dsp_lib_realloc(nullptr, nullptr);
  EXPECT_EQ(dsp::mean_spacing(1.5e308, 1.7e308), 1.6e308);
  EXPECT_EQ(dsp::mean_spacing(5e-324, 5e-324), 5e-324);
}

TEST(Output, ScratchStandsInForASharedBuffer) {
  record in(reals{1, 2, 3}, 0.5), out;
  dsp_vec alias = view(in);
  const record filter(complexes{{1, 0}});
  dsp::stream_block shared(&in, &alias, nullptr);
  ASSERT_EQ(dsp::dsp_output_prepare(&shared, &filter, 0, dsp::DSP_OUT_ALIAS), 0);
  dsp_vec *written = shared.out.get();
  EXPECT_NE(written, &alias);
  EXPECT_TRUE(written->length == 3 && written->is_complex == 1u && written->dx == 0.5);
  for (int i = 0; i < 6; ++i) written->data[i] = i;
  ASSERT_EQ(dsp::dsp_output_commit(shared), 0);
  EXPECT_EQ(doubles_of(alias), (reals{0, 1, 2, 3, 4, 5}));
  dsp_destroy(&alias);

  out.length = 9;
  dsp::stream_block apart(&in, &out, nullptr);
  ASSERT_EQ(dsp::dsp_output_prepare(&apart, nullptr, 0, dsp::DSP_OUT_ALIAS | dsp::DSP_OUT_KEEP_LENGTH), 0);
  EXPECT_TRUE(apart.out.get() == &out && out.length == 9 && out.is_complex == 0u);
  ASSERT_EQ(dsp::dsp_output_commit(apart), 0);
}

TEST(Output, StatesTakeTheInputsShape) {
  const record real(reals{1}, 0.5), wide(complexes{1}, 0.25);
  record out, state(reals{7, 8});
  const auto shaped = [&](const record &in, int32_t length) -> const record & {
    dsp::stream_block block(&in, &out, &state);
    EXPECT_EQ(dsp::dsp_output_prepare(&block, nullptr, length, 0), 0);
    return state;
  };
  EXPECT_TRUE(same(shaped(real, 2), record(reals{7, 8}, 0.5)));
  EXPECT_TRUE(same(shaped(wide, 3), record(complexes{7, 8, 0}, 0.25)));
  state.data[1] = 9;
  EXPECT_TRUE(same(shaped(real, 1), record(reals{7, 8, 0}, 0.5)));

  // The shared state lasts until it is released.
  for (const double expected : {0.0, 42.0, 0.0}) {
    dsp::stream_block block(&wide, &out, nullptr);
    ASSERT_EQ(dsp::dsp_output_prepare(&block, nullptr, 3, dsp::DSP_OUT_SHARED_STATE), 0);
    ASSERT_NE(block.state, nullptr);
    EXPECT_TRUE(same(*block.state, record(complexes{expected, 0, 0}, 0.25)));
    block.state->data[0] = 42.0;
    for (int twice = 0; expected != 0.0 && twice < 2; ++twice) EXPECT_EQ(dsp_free_internal(), 0);
  }
  dsp_free_internal();
}

}  // namespace
