// Sample-rate conversion: kernels, the fractional stage against its definition, the cascade against masks, streams.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

#include "dsp/dsp.h"
#include "tests/support/each_isa.h"
#include "tests/support/heap.h"
#include "tests/support/record.h"
#include "tests/support/stream.h"
#include "tests/support/wide.h"

namespace {

using namespace support;

constexpr double inf = std::numeric_limits<double>::infinity();
const double nan = std::nan("");
constexpr double two_pi = 6.283185307179586;

record table_of(int32_t kind, int32_t length) {
  record t;
  t.length = length;
  EXPECT_EQ(dspc_rsmp(&t, kind), 0);
  return t;
}

constexpr struct {
  int32_t taps, length;
  double centre;
} kinds[] = {{8, 8194, 0.429685378586},
             {13, 13314, 0.7900097070973848},
             {8, 2050, 0.43262740264724636},
             {10, 10242, 0.897778114402032},
             {13, 13314, 5.229825197120959}};

// The same gain at every phase, and almost 0 at the ends.
TEST(KernelTable, BuiltInKernelsInterpolate) {
  for (int32_t kind = 0; kind < 5; ++kind) {
    const auto [taps, length, centre] = kinds[kind];
    const record t = table_of(kind, length);
    EXPECT_EQ(t.data[0], taps);
    EXPECT_NEAR(t.data[length / 2], centre, 1e-14) << kind;
    const int32_t phases = (length - 2) / taps;
    for (int32_t p = 0; p < phases; p += 97) {
      double sum = 0;
      for (int32_t i = 0; i < taps; ++i) sum += t.data[1 + p + i * phases];
      EXPECT_NEAR(sum, kind == 1 ? 0.971376934814 : 1.0, kind == 4 ? 3e-14 : 1e-3) << kind;
    }
    EXPECT_NEAR(t.data[1], 0.0, kind == 4 ? 1e-13 : 1e-3) << kind;
  }
}

TEST(KernelTable, SumsTheStatedSeries) {
  reals c = {3, 0.5, 0.25, -0.125, 0.0625};
  dsp_vec list = borrow(c);
  for (const int32_t count : {5, 2, 1, 0})
    for (const int32_t length : {-4, 0, 1, 2, 4, 8, 50, 302})
      for (const auto build : {dspc_rsmp_cos, dspc_rsmp_pcos})
        for (const bool is_complex : {false, true}) {
          const int32_t centre = length > 1 && count > 1 ? length / 2 : 0;
          complexes expected(static_cast<std::size_t>(std::max(length, 0)));
          for (int32_t j = 0; j < centre; ++j) {
            const wide angle = length > 2 ? 2 * wide_pi * j / (length - 2) : wide(0);
            wide sum = 0;
            for (int k = 1; k < count; ++k)
              sum += list.data[k] * (build == dspc_rsmp_pcos ? pow(cos(angle), k - 1) : cos((k - 1) * angle));
            for (const int32_t at : {centre - j, centre + j})
              expected[static_cast<std::size_t>(at)] = static_cast<double>(sum);
          }
          if (length > 0 && count > 0) expected[0] = c[0];
          record t(reals{}, 2.5);
          t.length = length;
          t.is_complex = is_complex;
          list.length = count;
          ASSERT_EQ(build(&t, &list), 0);
          EXPECT_TRUE(near(t, signal_of(expected, is_complex), 1e-15));
          EXPECT_EQ(t.dx, 2.5);
        }
}

TEST(KernelTable, Refusals) {
  const record c(reals{3, 0.5}), z(complexes{{3, 0}, {1, 0}});
  for (const auto build : {dspc_rsmp_cos, dspc_rsmp_pcos}) {
    record odd(reals(9)), even(reals(8));
    EXPECT_EQ(build(&odd, &c), -1);
    EXPECT_EQ(build(&even, &z), -1);
    EXPECT_EQ(build(&even, &even), -1);
  }
  record t;
  t.length = 8194;
  for (const int32_t unknown : {5, -1}) EXPECT_EQ(dspc_rsmp(&t, unknown), -1);
  EXPECT_EQ(t.data, nullptr);
}

// Interpolation for steps p/q of a small q between 0.5 and 1 takes the weights of positions rounded to 2^-40.
double position_weighed(double step, double pos) {
  const bool repeats = step == 0.5 || step == 0.7 || step == 80.0 / 147;
  return repeats ? -std::floor(-pos * 0x1p40 + 0.5) * 0x1p-40 : pos;
}

// The definition, counted sample by sample: output n lies n steps after the first, whose span begins at `start`.
complexes resampled(const complexes &in, const record &table, int interp, double step, double pos, int64_t start) {
  const auto taps = static_cast<int64_t>(table.data[0] + 0.5);
  const int64_t phases = (table.length - 2) / taps;
  const auto n = static_cast<int64_t>(in.size());
  complexes out;
  for (; out.size() < 500; pos += step) {
    for (; pos > 0; pos -= 1) ++start;
    if (start > n - taps) break;
    const double at = interp != 0 && taps <= 32 ? position_weighed(step, pos) : pos;
    const double f = -at * static_cast<double>(phases);
    const auto p = static_cast<int64_t>(f);
    std::complex<long double> sum = 0;
    for (int64_t i = std::max<int64_t>(0, -start); i < taps; ++i) {
      const double *w = table.data + 1 + p + i * phases;
      const long double rest = f - static_cast<double>(p);
      const long double weight = interp != 0 && rest > 0 ? w[0] + rest * static_cast<long double>(w[1] - w[0]) : w[0];
      sum += std::complex<long double>(in[static_cast<std::size_t>(start + i)]) * weight;
    }
    out.emplace_back(sum);
  }
  return out;
}

TEST(Rsmp, FollowsItsDefinitionInBlocksToo) {
  // Steps, and offsets and starts at which a state stands.
  constexpr double cases[][3] = {
      {0},           {0.3}, {0.5},       {1}, {0.7071}, {2.25}, {40}, {0.7071, -0.1, 0}, {0.7, -0.1, 20},
      {1.7, -1, 15}, {0.7}, {80.0 / 147}};
  record few_taps = random_signal(14, false, 12), many_taps = random_signal(162, false, 12);
  few_taps.data[0] = 3;
  many_taps.data[0] = 40;
  for (const bool is_complex : {false, true})
    for (int32_t kind = 0; kind < 7; ++kind)
      for (const int interp : {0, 1})
        for (const auto &[step, offset, start] : cases) {
          SCOPED_TRACE(::testing::Message() << "kind " << kind << ", step " << step << ", interp " << interp);
          const record table = kind < 5 ? table_of(kind, kinds[kind].length) : kind == 5 ? few_taps : many_taps;
          const auto taps = static_cast<int32_t>(table.data[0]);
          record state(reals(static_cast<std::size_t>(taps + 2))), out, built;
          state.data[taps] = offset;
          state.data[taps + 1] = start;
          const record in = random_signal(150, is_complex, 1, 0.5);
          out.length = built.length = 500;
          ASSERT_EQ(dspd_rsmp(&in, &out, interp, &table, step, offset != 0 ? &state : nullptr), 0);
          const complexes expected =
              resampled(complexes_of(in), table, interp, step, offset, static_cast<int64_t>(start) - taps);
          const double limit = 2e-15 * std::max({1.0, table.data[table.length / 2], taps / 8.0});
          EXPECT_TRUE(near(out, signal_of(expected, is_complex), limit));
          EXPECT_EQ(out.dx, 0.5 * step);
          if (kind >= 5 || offset != 0) continue;
          ASSERT_EQ(dspd_rsmp2(&in, &built, interp, kind, step, nullptr), 0);
          EXPECT_TRUE(same(built, out));
          if (kind < 3 || step == 0) continue;
          expect_blocks_to_be_the_whole(in, 11, 0, [&, step = step](auto *b, auto *o, auto *s) {
            record y;
            y.length = 2000;
            return dspd_rsmp(b, &y, interp, &table, step, s) == 0 ? dsp_copy(o, &y) : -1;
          });
        }
}

// Weights are kept from call to call, but those of long tables.
TEST(Rsmp, AChangedTableIsNoticed) {
  const record in = random_signal(150, false, 6);
  for (const int32_t length : {2050, 65538}) {
    record table = table_of(2, length);
    for (const double change : {1.0, 2.0, -1.0}) {
      for (int32_t i = length / 4; i < length / 2; ++i) table.data[i] *= change;
      on_each_isa([&] {
        for (int call = 0; call < 2; ++call) {
          record out;
          out.length = 500;
          ASSERT_EQ(dspd_rsmp(&in, &out, 1, &table, 0.7071, nullptr), 0);
          const complexes expected = resampled(complexes_of(in), table, 1, 0.7071, 0, -8);
          EXPECT_TRUE(near(out, signal_of(expected, false), 5e-15)) << length << " " << change;
        }
      });
    }
  }
}

// The phases of this step repeat but drift: the weights of each are computed anew some seven times.
TEST(Rsmp, LongStreamsAreTheirBlocks) {
  const record table = table_of(2, 2050), in = random_signal(30000, true, 2);
  on_each_isa([&] {
    expect_blocks_to_be_the_whole(in, 3000, 0, [&](auto *b, auto *o, auto *s) {
      record y;
      y.length = 50000;
      return dspd_rsmp(b, &y, 1, &table, 0.7 - 0x1p-53, s) == 0 ? dsp_copy(o, &y) : -1;
    });
  });
}

TEST(Rsmp, WildSamplesStayWithTheOutputsThatWeighThem) {
  const record table = table_of(4, 13314);
  for (const bool is_complex : {false, true})
    for (const double step : {0.7, 0.7071, 1.3})
      on_each_isa([&] {
        record in = random_signal(200, is_complex, 5), clean, out;
        clean.length = out.length = 500;
        ASSERT_EQ(dspd_rsmp(&in, &clean, 1, &table, step, nullptr), 0);
        in.data[100 * (is_complex ? 2 : 1)] = nan;
        ASSERT_EQ(dspd_rsmp(&in, &out, 1, &table, step, nullptr), 0);
        const complexes got = complexes_of(out), expected = complexes_of(clean);
        for (std::size_t m = 0; m < got.size(); ++m) {
          const int64_t first = static_cast<int64_t>(std::ceil(static_cast<double>(m) * step)) - 13;
          const bool weighed = first <= 100 && 100 < first + 13;
          EXPECT_TRUE(weighed ? std::isnan(got[m].real()) : got[m].real() == expected[m].real()) << m;
          EXPECT_EQ(got[m].imag(), expected[m].imag()) << m;
        }
      });
}

TEST(Rsmp, OutputsThatDidNotFitComeWithTheNextBlock) {
  const record table = table_of(2, 2050), in = random_signal(40, false, 3), silence(reals{});
  const auto resample = [&](const record &block, record *out, int32_t most, record *state) {
    out->length = most;
    ASSERT_EQ(dspd_rsmp(&block, out, 1, &table, 0.9, state), 0);
  };
  record whole;
  resample(in, &whole, 200, nullptr);
  for (const int32_t missing : {1, 3}) {
    record state, first, rest;
    resample(in, &first, whole.length - missing, &state);
    EXPECT_LE(state.data[9], 0);
    resample(silence, &rest, 10, &state);
    EXPECT_EQ(rest.length, 1);  // what would need more than T past samples is left out
    EXPECT_EQ(rest.data[0] == whole.data[whole.length - 1], missing == 1);
  }
  resample(in, &whole, -5, nullptr);
  EXPECT_EQ(whole.length, 0);
}

TEST(Rsmp, CornersAndRefusals) {
  const record table = table_of(2, 2050), in(reals{1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
  record out;
  const auto made = [&](const dsp_vec &t, double step, double pos, double offset) {
    record state(reals{1, 1, 1, 1, 1, 1, 1, 1, pos, offset});
    out.length = 50;
    return dspd_rsmp(&in, &out, 1, &t, step, &state) == 0 ? out.length : -1;
  };
  for (const double bad : {-1.0001, nan, inf, -inf}) {
    EXPECT_EQ(made(table, bad, 0, 0), -1);
    EXPECT_EQ(made(table, 1, bad, 0), -1);
    EXPECT_EQ(made(table, 1, 0, bad) < 0, !std::isfinite(bad));
  }
  EXPECT_EQ(made(table, 1, 1e300, 0), 0);
  EXPECT_EQ(made(table, 1e300, 0, -1e300), 1);
  for (const reals &bad : {reals{3, 1, 1, 1}, {0, 1}, {-2, 1}, {nan, 1}, {1e300, 1}})
    EXPECT_EQ(made(record(bad), 1, 0, 0), -1);
  EXPECT_EQ(made(record(complexes(10, {1, 0})), 1, 0, 0), -1);
  EXPECT_EQ(made(record(reals{3}), 1, 0, 0), 10);
  EXPECT_TRUE(same(out, in));
  const record flat(reals{2, 0.5}), flat_and_long(reals{2e9, 0.5});
  record y, aliased(table);
  y.length = 3;
  ASSERT_EQ(dspd_rsmp(&in, &y, 1, &flat_and_long, 1.0, nullptr), 0);  // at once: a silent past takes no time
  EXPECT_TRUE(near(y, reals{0, 0.5, 1.5}, 0.0));
  y.length = 50;
  ASSERT_EQ(dspd_rsmp(&in, &y, 1, &flat, 2.5, nullptr), 0);
  EXPECT_TRUE(near(y, reals{0, 2.5, 4.5, 7.5, 9.5}, 0.0));
  const std::array<dsp_vec *, 2> shared[] = {{&aliased, nullptr}, {&out, &aliased}, {&out, &out}, {&out, &y}};
  for (const auto &[o, state] : shared) EXPECT_EQ(dspd_rsmp(&y, o, 1, &aliased, 1, state), -1);
  EXPECT_EQ(dspd_rsmp2(&in, &out, 1, 5, 1, nullptr), -1);
}

// Coefficients and state of a stream, released with the scope.
struct converter {
  dsph_rsmp_coef coef;
  dsph_rsmp_state state;

  explicit converter(double ratio, int32_t mode = 0, bool is_complex = false) {
    const exempt building;
    EXPECT_TRUE(dsph_rsmp_coef_init(&coef) == 0 && dsph_rsmp_coef_alloc(&coef, 0) == 0);
    EXPECT_EQ(dsph_rsmp_coef_setup(&coef, 17, ratio, mode, 0), 0);
    EXPECT_TRUE(dsph_rsmp_state_init(&state) == 0 && dsph_rsmp_state_alloc(&coef, &state, is_complex) == 0);
    EXPECT_EQ(dsph_rsmp_state_reset(&coef, &state), 0);
  }
  converter(const converter &) = delete;
  converter &operator=(const converter &) = delete;
  ~converter() {
    dsph_rsmp_state_destroy(&state);
    dsph_rsmp_coef_destroy(&coef);
  }
  int32_t run(const dsp_vec *in, dsp_vec *out, dsp_vec *scratch = nullptr) {
    return dsph_rsmp(in, out, scratch, &coef, &state);
  }
};

TEST(Converter, SetUp) {
  const double below = std::nextafter(1.75, 0.0), most = INT32_MAX;
  const struct {
    double ratio;
    int32_t mode, halvings;
    double delay;  // after the halvings
  } cases[] = {{5, 0, 2, 47},   {1, 0, 0, 0},     {1, 1, 0, 54},     {-3, 0, 0, 0},       {2, 0, 1, 0},
               {0.5, 0, 0, 89}, {1.75, 0, 0, 39}, {below, 0, 0, 39}, {1e300, 1, 996, 43}, {1e-300, 0, 0, most}};
  converter k(1.0);
  for (const auto &c : cases) {
    ASSERT_EQ(dsph_rsmp_coef_setup(&k.coef, 0, c.ratio, c.mode, 0), 0);
    const reals got = {double(k.coef.halvings), k.coef.ratio, double(k.coef.delay1), double(k.coef.delay2)};
    const double rest = c.ratio > 0 ? std::ldexp(c.ratio, -c.halvings) : 1.0;
    EXPECT_EQ(got, (reals{double(c.halvings), rest, c.halvings > 0 ? 33.0 : 0.0, c.delay})) << c.ratio;
  }
  for (const double bad : {nan, inf, -inf}) EXPECT_EQ(dsph_rsmp_coef_setup(&k.coef, 0, bad, 3, 0), -1);
  EXPECT_EQ(dsph_rsmp_coef_setup(&k.coef, 0, 2.0, 3, 1), -1);
  EXPECT_EQ(dsph_rsmp_coef_alloc(&k.coef, 1), -1);
  EXPECT_EQ(k.coef.ratio, 1e-300);
  EXPECT_EQ(k.coef.mode, 0);
  // A state of another ratio and representation, and for filters of other lengths.
  converter other(5.0, 0, true);
  dsph_rsmp_state &s = other.state;
  k.coef.prefilter_odd = k.coef.kernel.length = 0;
  ASSERT_EQ(dsph_rsmp_coef_setup(&k.coef, 0, 1.0, 0, 0), 0);
  EXPECT_EQ(s.stage_hist[1].length, 38);
  ASSERT_EQ(dsph_rsmp_state_alloc(&k.coef, &s, 0), 0);
  EXPECT_EQ(s.stages, 0);
  EXPECT_EQ(s.pre_hist.length, 23);
  EXPECT_EQ(s.pre_hist.is_complex, 0u);
  heap_fail(1);
  EXPECT_EQ(dsph_rsmp_state_alloc(&k.coef, &s, 1), -1);
  heap_fail(0);
  EXPECT_EQ(dsph_rsmp_coef_init(nullptr) + dsph_rsmp_coef_destroy(nullptr), 0);
}

TEST(Converter, BlocksAreTheWholeBitForBit) {
  for (const bool is_complex : {false, true})
    for (const double ratio : {1.0, 1.1, 1.5, 1.999, 2.0, 2.7, 4.0, 5.0, 8.0})
      for (const int32_t mode : {0, 1}) {
        const record in = random_signal(1200, is_complex, 4, 0.5);
        record whole;
        ASSERT_EQ(converter(ratio, mode, is_complex).run(&in, &whole), 0);
        for (unsigned seed = 1; seed <= 4; ++seed) {
          converter piecewise(ratio, mode, is_complex);
          record scratch;
          // Blocks long enough: a ratio of 1 in blocks of 1 has no room to catch up.
          const record pieces = in_blocks(
              in, random_blocks(1200, 100, seed), seed % 2 != 0,
              [&](const dsp_vec *b, dsp_vec *o) { return piecewise.run(b, o, seed > 2 ? &scratch : nullptr); });
          EXPECT_TRUE(same(pieces, whole)) << ratio << " " << mode << " " << seed;
        }
      }
}

// Halving in one go, or with lowpasses that are too long for that, complex or empty: filtering, then dropping every
// second sample.
TEST(Converter, HalvingIsFilteringAndDecimation) {
  std::vector<record> halves = {record(doubles_of(converter(2.0).coef.halfband)), random_signal(40, false, 6),
                                random_signal(20, true, 6), record()};
  for (const std::size_t length : std::initializer_list<std::size_t>{1, 2, 3, 5, 6, 7, 10, 14, 20, 24, 28, 30})
    halves.push_back(random_signal(length, false, 6));
  for (const bool is_complex : {false, true})
    for (const record &half : halves)
      on_each_isa([&] {
        const record whole = random_signal(500, is_complex, 5, 0.5);
        converter k(2.0, 0, is_complex);
        dsph_rsmp_state_destroy(&k.state);  // nothing to drop
        dsp_copy(&k.coef.halfband, &half);
        record in, filtered, expected, out, scratch, hist;
        for (const auto &[odd, n] : {std::pair(1, 500), {1, 500}, {0, 500}, {1, 6}, {0, 6}, {0, 2}, {1, 500}}) {
          k.coef.halfband_odd = odd;
          dsp_copy_at_most(&in, &whole, n);
          ASSERT_EQ(dspd_sfir(&in, &filtered, &half, odd, 0, &hist), 0);
          ASSERT_EQ(dspd_deci(&filtered, &expected, 2, nullptr), 0);
          ASSERT_EQ(k.run(&in, &out, &scratch), 0);
          EXPECT_TRUE(near(out, expected, 1e-14)) << half.length << " on " << n;
          EXPECT_TRUE(half.length == 0 || same(k.state.stage_hist[0], hist));
        }
        const bool in_one_go = half.length > 0 && half.length <= 30 && half.is_complex == 0;
        heap_fail(1);  // this way needs no memory of its own
        EXPECT_EQ(k.run(&in, &out), in_one_go ? 0 : -1);
        heap_fail(0);
      });
}

TEST(Converter, DropsNothingWithoutAStateAndAllocatesNothingWithOne) {
  for (const bool is_complex : {false, true})
    for (const double ratio : {0.7, 1.0, 1.3, 2.0, 5.3, 8.0}) {
      SCOPED_TRACE(ratio);
      const record in = random_signal(700, is_complex, 7);
      record expected, out, scratch, as_scratch(in);
      converter k(ratio, 0, is_complex);
      k.state.delay1 = k.state.delay2 = 0;
      ASSERT_EQ(k.run(&in, &expected, &scratch), 0);
      on_each_isa([&] {
        ASSERT_EQ(dsph_rsmp(&as_scratch, &out, &as_scratch, &k.coef, nullptr), 0);
        EXPECT_TRUE(near(out, expected, 1e-13));
        EXPECT_TRUE(same(as_scratch, in));
      });
      long requests = 0;
      for (int round = 0; round < 6; ++round) {
        ASSERT_EQ(k.run(&in, &out, &scratch), 0);
        if (round < 2) requests = heap_requests();
      }
      EXPECT_EQ(heap_requests(), requests);
    }
}

// The k-th request fails, in a stream that turns complex: -1, and the stream begins anew.
TEST(Converter, BeginsAnewWhenMemoryFails) {
  const record real = random_signal(300, false, 8), in = random_signal(300, true, 9);
  for (const double ratio : {2.7, 4.0})
    for (const bool complex_before : {false, true})
      for (long k = 1;; ++k) {
        converter k_fails(ratio), fresh(ratio, 0, true);
        record out, expected, scratch;
        ASSERT_EQ(k_fails.run(complex_before ? &in : &real, &out, &scratch), 0);
        dsp_free_internal();
        heap_fail(k);
        const int32_t status = k_fails.run(&in, &out, &scratch);
        heap_fail(0);
        if (status == 0) break;
        ASSERT_EQ(k_fails.run(&in, &out, &scratch), 0);
        ASSERT_EQ(fresh.run(&in, &expected), 0);
        EXPECT_TRUE(same(out, expected)) << ratio << " " << k;
      }
}

TEST(Converter, NeedsLittleMemoryForAnyRatio) {
  const record in = random_signal(1, false, 10);
  converter tiny(1e-6);
  record out, scratch;
  ASSERT_EQ(tiny.run(&in, &out, &scratch), 0);
  dsp_free_internal();
  heap_limit(1 << 18);
  EXPECT_EQ(tiny.run(&in, &out, &scratch), 0);
  heap_limit(SIZE_MAX);
  converter none(1e-9);
  EXPECT_EQ(none.run(&in, &out), -1);
  converter hollow(1.3);
  hollow.coef.kernel.length = 1;
  EXPECT_EQ(hollow.run(&in, &out), -1);
}

double decibels(double x) { return 20 * std::log10(std::max(x, 1e-300)); }

complex turned(double turns) { return std::polar(1.0, two_pi * std::fmod(turns, 1.0)); }

// The output for a tone of `frequency` cycles per output sample, without its beginning and end.
record converted_tone(converter &k, double ratio, double frequency) {
  record in(reals(static_cast<std::size_t>(1500 * ratio))), out, middle;
  EXPECT_EQ(dsph_rsmp_state_reset(&k.coef, &k.state), 0);
  EXPECT_EQ(dspc_cos(&in, frequency / ratio, 0.3), 0);
  EXPECT_EQ(k.run(&in, &out), 0);
  dspu_subvec(&out, &middle, 200, 1000);
  return middle;
}

TEST(Converter, PassesTheBandInTimeAndStopsWhatWouldFallIntoIt) {
  // What is reached is in docs/filters.md; the limits are 1 dB (rejection: 1.5 dB, ripple: 0.005 dB) short of it.
  const struct {
    double ratio, lowest, highest, residue, rejection;
  } reached[] = {
      {1.0001, -0.027, 0.028, -130.9, 400}, {1.25, -0.042, 0.020, -122.4, 104.1}, {1.5, -0.028, 0.029, -122.4, 94.9},
      {1.999, -0.026, 0.028, -116.6, 94.4}, {2.0, -0.037, 0.013, -255, 93.2},     {2.7, -0.037, 0.025, -120.5, 94.4},
      {3.3, -0.058, 0.029, -118.7, 94.4},   {4.0, -0.026, 0.025, -254, 94.4},     {5.3, -0.052, 0.034, -121.5, 94.4},
      {7.9, -0.024, 0.044, -116.2, 94.4},   {8.0, -0.023, 0.029, -254, 91.0}};
  for (const auto &r : reached) {
    SCOPED_TRACE(r.ratio);
    converter k(r.ratio);
    const double stage = std::ldexp(1.0, k.coef.halvings), rest = k.coef.ratio;
    const double first = (k.coef.halvings > 0 ? 14 * stage + 19 : 0.0) +
                         (k.coef.delay2 > 0 ? stage * (rest * (k.coef.delay2 - 9.5) - 17.5) : 0.0);
    double residue = -400, lowest = 0, highest = 0, alias = -400;
    for (double f = 0.005; f <= 0.3951; f += 0.01) {  // whole numbers of cycles
      const record y = converted_tone(k, r.ratio, f);
      complex phasor = 0;
      for (int32_t i = 0; i < y.length; ++i) phasor += 2.0 / y.length * y.data[i] * turned(-f * i);
      double square = 0;
      for (int32_t i = 0; i < y.length; ++i) square += std::pow(y.data[i] - (phasor * turned(f * i)).real(), 2);
      residue = std::max(residue, decibels(std::sqrt(2 * square / y.length) / std::abs(phasor)));
      lowest = std::min(lowest, decibels(std::abs(phasor)));
      highest = std::max(highest, decibels(std::abs(phasor)));
      EXPECT_NEAR(std::arg(phasor * turned(-f * (200 + first / r.ratio))), 0.3, 1e-3) << f;
    }
    for (double f = 0.61; f < 0.5 * r.ratio; f += 0.0037) {
      record y = converted_tone(k, r.ratio, f);
      ASSERT_EQ(dspi_window(&y, DSP_WINDOW_BLACKMAN_HARRIS4, DSP_WND_POWER), 0);
      ASSERT_EQ(dspi_rdft(&y), 0);
      double power = 0;
      for (int32_t i = 0; i < 2 * 391; ++i) power += y.data[i] * y.data[i];
      alias = std::max(alias, decibels(2 * std::sqrt(power)));
    }
    EXPECT_GE(lowest, r.lowest - 0.005);
    EXPECT_LE(highest, r.highest + 0.005);
    EXPECT_LE(residue, std::max(r.residue + 1, -250.0));
    EXPECT_LE(alias, -r.rejection + 1.5);
  }
}

}  // namespace
