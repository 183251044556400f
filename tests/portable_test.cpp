// Results that every platform and instruction set must agree on, for the whole interface; and values that no routine
// may stumble over.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/each_isa.h"
#include "tests/support/scene.h"

namespace {

using namespace support;

// FNV-1a over the bytes of the values; any NaN is the same NaN.
class hash {
 public:
  void add(uint64_t word) {
    for (int shift = 0; shift < 64; shift += 8) value_ = (value_ ^ (word >> shift & 0xff)) * 0x100000001b3;
  }
  void add(double x) {
    uint64_t word = 0x7ff8000000000000;
    if (!std::isnan(x)) std::memcpy(&word, &x, sizeof word);
    add(word);
  }
  void add(const dsp_vec &v) {
    add(static_cast<uint64_t>(v.length));
    add(static_cast<uint64_t>(v.is_complex != 0));
    add(v.dx);
    for (const double x : doubles_of(v)) add(x);
  }
  uint64_t value() const { return value_; }

 private:
  uint64_t value_ = 0xcbf29ce484222325;
};

void check_record(const dsp_vec &v, int32_t status) {
  EXPECT_TRUE(v.capacity <= 0 || v.data != nullptr);
  if (status == 0 && v.capacity > 0) {
    EXPECT_LE(int64_t{v.length} * (v.is_complex != 0 ? 2 : 1), v.capacity);
  }
}

// Calls step(place, hash so far) after each call and signal, so that two runs can be compared step by step.
template <class Step>
uint64_t results_of(const routine &r, const Step &step) {
  hash h;
  int call = 0;
  for (const bool hostile : {false, true})
    each_case(r, INT32_MAX, hostile,
              [&](const std::vector<part> &signals, const std::vector<record> &contents, int variant) {
                scene s(contents, separate(signals));
                const int32_t status = s.run(r, variant);
                EXPECT_TRUE(status == 0 || status == -1) << status;
                const std::string place = "call " + std::to_string(call++) + ", variant " + std::to_string(variant);
                h.add(static_cast<uint64_t>(status != 0));
                step(place + ", status", h.value());
                for (std::size_t i = 0; i < signals.size(); ++i) {
                  check_record(s[i], status);
                  if (status == 0 && signals[i].role != 'w') h.add(s[i]);
                  step(place + ", signal " + std::to_string(i), h.value());
                }
                for (const double x : s.numbers()) h.add(x);
                step(place + ", numbers", h.value());
              });
  return h.value();
}

void expect_negative_lengths_to_be_empty(const routine &r) {
  each_case(r, 0, false, [&](const std::vector<part> &signals, const std::vector<record> &contents, int variant) {
    scene empty(contents, separate(signals)), negative(contents, separate(signals));
    for (std::size_t i = 0; i < signals.size(); ++i)
      if (negative[i].length == 0) negative[i].length = -6;
    ASSERT_EQ(negative.run(r, variant), empty.run(r, variant));
    for (std::size_t i = 0; i < signals.size(); ++i) negative[i].length = std::max(negative[i].length, 0);
    EXPECT_TRUE(same_results(signals, negative, empty));
  });
}

// Set-up, names and release; and routines that rows of other routines call.
const char *const not_in_the_table =
    "dsp_lib_init dsp_version dsp_init dsp_destroy dsp_lib_alloc dsp_lib_realloc dsp_lib_free dsp_free_internal "
    "dsp_window_from_str dsp_window_to_str get_fpscr set_fpscr set_runfast dsph_rsmp_coef_init dsph_rsmp_coef_destroy "
    "dsph_rsmp_coef_setup dsph_rsmp_state_init dsph_rsmp_state_destroy dsph_rsmp_state_reset vfpdb_ScaleToInt2";

TEST(Table, HoldsEveryRoutineOfTheHeader) {
  const std::string here = __FILE__;
  std::ifstream header(here.substr(0, here.rfind("tests")) + "dsp/dsp.h");
  if (!header) GTEST_SKIP() << "no sources here";
  std::istringstream others(not_in_the_table);
  std::set<std::string> listed{std::istream_iterator<std::string>(others), {}}, declared;
  for (const routine &r : routines()) listed.insert(r.name);
  for (std::string line; std::getline(header, line);)
    if (line.rfind("DSP_API ", 0) == 0) {
      const std::size_t end = line.find('('), begin = line.rfind(' ', end) + 1;
      declared.insert(line.substr(begin, end - begin));
    }
  EXPECT_EQ(listed, declared);
}

TEST(Results, OfNegativeLengthsAreThoseOfNone) {
  for (const routine &r : routines())
    if (std::strncmp(r.name, "dsp", 3) == 0) expect_negative_lengths_to_be_empty(r);  // the rest has no records
  dsp_free_internal();
}

// Filters and rate conversion fuse products where the processor does, and are then right to rounding.
bool is_fused(const routine &r) {
#if defined(__FMA__) || defined(__ARM_FEATURE_FMA)
  constexpr bool baseline_fuses = true;
#else
  constexpr bool baseline_fuses = false;
#endif
  const std::set<std::string> routines = {"dspd_fir", "dspd_sfir", "dspd_rsmp", "dsph_rsmp"};
  return (baseline_fuses || dsp::active_isa() != dsp::isa::baseline) && routines.count(r.name) > 0;
}

// The first step whose result differs from the baseline's. If the baseline itself differs from the table, the step can
// only be found by a run on another platform: both write their steps to a file, to be compared by `diff`.
std::string first_difference(const routine &r) {
  const dsp::isa here = dsp::active_isa();
  std::vector<std::pair<std::string, uint64_t>> steps;
  dsp::force_isa(dsp::isa::baseline);
  const uint64_t baseline =
      results_of(r, [&](const std::string &place, uint64_t value) { steps.emplace_back(place, value); });
  dsp::force_isa(here);
  if (baseline != r.result) {
    std::ofstream file(std::string(r.name) + ".steps");
    for (const auto &[place, value] : steps) file << place << ": " << std::hex << value << std::dec << '\n';
    return ", on the baseline too: compare " + std::string(r.name) + ".steps with that of another platform";
  }
  std::string first;
  std::size_t at = 0;
  results_of(r, [&](const std::string &place, uint64_t value) {
    if (first.empty() && value != steps[at].second) first = ", from the baseline first at " + place;
    ++at;
  });
  return first;
}

TEST(Results, AreTheSameEverywhere) {
  on_each_isa([] {
    for (const routine &r : routines()) {
      const uint64_t result = results_of(r, [](const std::string &, uint64_t) {});
      if (r.result == of_functions || r.result == of_transforms || is_fused(r)) continue;
      EXPECT_EQ(result, r.result) << r.name << " of " << r.signals << std::hex << " gives 0x" << result
                                  << first_difference(r);
    }
  });
  dsp_free_internal();
}

}  // namespace
