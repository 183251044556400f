// Sample-rate conversion: kernels, the fractional stage against its definition, the cascade against masks, streams.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>

#include "dsp/dsp.h"
#include "tests/support/each_isa.h"
#include "tests/support/heap.h"
#include "tests/support/record.h"
#include "tests/support/stream.h"

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

constexpr struct { int32_t taps, length; } kinds[] = {{8, 8194}, {13, 13314}, {8, 2050}, {10, 10242}, {13, 13314}};

TEST(KernelTable, BuiltInKernelsInterpolate) {
  for (int32_t kind = 0; kind < 5; ++kind) {
    const auto [taps, length] = kinds[kind];
    const record t = table_of(kind, length);
    EXPECT_EQ(t.data[0], taps);
    const int32_t phases = (length - 2) / taps;
    for (int32_t j = 0; j < length / 2; ++j) ASSERT_EQ(t.data[length / 2 + j], t.data[length / 2 - j]);
    // One gain at every phase, and next to nothing at the ends.
    for (int32_t p = 0; p < phases; p += 97) {
      double sum = 0;
      for (int32_t i = 0; i < taps; ++i) sum += t.data[1 + p + i * phases];
      EXPECT_NEAR(sum, kind == 1 ? 0.971376934814 : 1.0, kind == 4 ? 3e-14 : 1e-3) << kind;
    }
    EXPECT_NEAR(t.data[1], 0.0, kind == 4 ? 1e-13 : 1e-3) << kind;
  }
  record t;
  t.length = 8194;
  for (const int32_t unknown : {5, -1}) EXPECT_EQ(dspc_rsmp(&t, unknown), -1);
  EXPECT_EQ(t.data, nullptr);
}

TEST(KernelTable, SumsTheStatedSeries) {
  const record c(reals{3, 0.5, 0.25, -0.125, 0.0625});
  for (const int32_t length : {2, 4, 8, 50, 302})
    for (const auto build : {dspc_rsmp_cos, dspc_rsmp_pcos}) {
      complexes expected(static_cast<std::size_t>(length));
      for (int32_t j = 0; j < length / 2; ++j) {
        const long double angle = length > 2 ? std::acos(-1.0L) * 2 * j / (length - 2) : 0;
        long double sum = 0;
        for (int k = 1; k < 5; ++k)
          sum += c.data[k] * (build == dspc_rsmp_pcos ? std::pow(std::cos(angle), k - 1) : std::cos((k - 1) * angle));
        expected[static_cast<std::size_t>(length / 2 + j)] = expected[static_cast<std::size_t>(length / 2 - j)] =
            static_cast<double>(sum);
      }
      expected[0] = 3;
      for (const bool is_complex : {false, true}) {
        record t(reals{}, 2.5);
        t.length = length;
        t.is_complex = is_complex;
        ASSERT_EQ(build(&t, &c), 0);
        EXPECT_TRUE(near(t, signal_of(expected, is_complex), 1e-15));
        EXPECT_EQ(t.dx, 2.5);
      }
    }
}

TEST(KernelTable, CornersAndRefusals) {
  const record c(reals{3, 0.5}), one(reals{7}), none, z(complexes{{3, 0}, {1, 0}});
  const struct {
    const record &coefficients;
    int32_t length, status;
    reals expected;
  } cases[] = {{c, 9, -1, {}},         {z, 8, -1, {}}, {one, 8, 0, {7, 0, 0, 0, 0, 0, 0, 0}},
               {none, 8, 0, reals(8)}, {c, 1, 0, {3}}, {c, -4, 0, {}}};
  for (const auto build : {dspc_rsmp_cos, dspc_rsmp_pcos}) {
    record t(reals(9, 1.0));
    EXPECT_EQ(build(&t, &t), -1);
    for (const auto &row : cases) {
      t.length = row.length;
      EXPECT_EQ(build(&t, &row.coefficients), row.status);
      if (row.status == 0) {
        EXPECT_EQ(doubles_of(t), row.expected);
      }
    }
  }
}

// The definition, counted sample by sample: output n lies n steps after the first, its span begins T samples before.
complexes resampled(const complexes &in, const record &table, int interp, double step, double pos, int32_t most) {
  const auto taps = static_cast<int64_t>(table.data[0] + 0.5);
  const int64_t phases = (table.length - 2) / taps;
  const auto n = static_cast<int64_t>(in.size());
  complexes out;
  for (int64_t start = -taps; static_cast<int32_t>(out.size()) < most; pos += step) {
    for (; pos > 0; pos -= 1) ++start;
    if (start > n - taps) break;
    const double f = -pos * static_cast<double>(phases);
    const auto p = static_cast<int64_t>(f);
    std::complex<long double> sum = 0;
    for (int64_t i = 0; i < taps; ++i) {
      if (start + i < 0) continue;
      const double *w = table.data + 1 + p + i * phases;
      const long double weight = interp != 0 && f > static_cast<double>(p)
                                     ? w[0] + (f - static_cast<double>(p)) * static_cast<long double>(w[1] - w[0])
                                     : w[0];
      sum += std::complex<long double>(in[static_cast<std::size_t>(start + i)]) * weight;
    }
    out.emplace_back(sum);
  }
  return out;
}

TEST(Rsmp, FollowsItsDefinition) {
  constexpr double steps[][2] = {{0, 0}, {0.3, 0}, {0.5, 0}, {1, 0}, {0.7071, 0}, {0.7071, -0.1}, {2.25, 0}, {40, 0}};
  record few_taps = random_signal(14, false, 12);
  few_taps.data[0] = 3;
  for (const bool is_complex : {false, true})
    for (int32_t kind = 0; kind < 6; ++kind)
      for (const int interp : {0, 1})
        for (const auto &[step, pos] : steps) {
          SCOPED_TRACE(::testing::Message() << "kind " << kind << ", step " << step << ", interp " << interp);
          const record table = kind < 5 ? table_of(kind, kinds[kind].length) : few_taps;
          record state(reals(static_cast<std::size_t>(table.data[0]) + 2));
          state.data[state.length - 2] = pos;
          const record in = random_signal(90, is_complex, 1, 0.5);
          const double limit = 2e-15 * std::max(1.0, table.data[table.length / 2]);
          record out;
          out.length = 500;
          ASSERT_EQ(dspd_rsmp(&in, &out, interp, &table, step, pos != 0 ? &state : nullptr), 0);
          const complexes expected = resampled(complexes_of(in), table, interp, step, pos, 500);
          EXPECT_TRUE(near(out, signal_of(expected, is_complex), limit));
          EXPECT_EQ(out.dx, 0.5 * step);
          if (kind == 5 || pos != 0) continue;
          record built;
          built.length = 500;
          ASSERT_EQ(dspd_rsmp2(&in, &built, interp, kind, step, nullptr), 0);
          EXPECT_TRUE(same(built, out));
        }
}

TEST(Rsmp, BlocksAreTheWholeBitForBit) {
  const record table = table_of(3, 10242);
  for (const bool is_complex : {false, true})
    for (const double step : {0.37, 0.5, 1.0, 1.7, 19.3}) {
      SCOPED_TRACE(step);
      const auto routine = [&](const dsp_vec *in, dsp_vec *out, dsp_vec *state) {
        record y;
        y.length = 2000;
        return dspd_rsmp(in, &y, 1, &table, step, state) == 0 ? dsp_copy(out, &y) : -1;
      };
      expect_blocks_to_be_the_whole(random_signal(400, is_complex, 2, 0.5), 11, 0, routine);
    }
}

TEST(Rsmp, OutputsThatDidNotFitComeWithTheNextBlock) {
  const record table = table_of(2, 2050);
  const record in = random_signal(40, false, 3), silence(reals{});
  record whole;
  whole.length = 200;
  ASSERT_EQ(dspd_rsmp(&in, &whole, 1, &table, 0.9, nullptr), 0);
  for (const int32_t missing : {1, 3}) {
    record state, first, rest;
    first.length = whole.length - missing;
    ASSERT_EQ(dspd_rsmp(&in, &first, 1, &table, 0.9, &state), 0);
    EXPECT_LE(state.data[9], 0);
    rest.length = 10;
    ASSERT_EQ(dspd_rsmp(&silence, &rest, 1, &table, 0.9, &state), 0);
    EXPECT_EQ(rest.length, 1);  // what would need more than T past samples is left out
    EXPECT_EQ(rest.data[0] == whole.data[whole.length - 1], missing == 1);
  }
  record empty;
  empty.length = -5;
  ASSERT_EQ(dspd_rsmp(&in, &empty, 1, &table, 0.9, nullptr), 0);
  EXPECT_EQ(empty.length, 0);
}

TEST(Rsmp, CornersAndRefusals) {
  const record table = table_of(2, 2050), in(reals{1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
  record out;
  const auto status = [&](const dsp_vec *t, double step, double pos, double offset) {
    record state(reals{1, 1, 1, 1, 1, 1, 1, 1, pos, offset});
    out.length = 50;
    return dspd_rsmp(&in, &out, 1, t, step, &state);
  };
  for (const double bad : {-0.1, nan, inf, -inf}) EXPECT_EQ(status(&table, bad, 0, 0), -1);
  for (const double bad : {-1.0001, nan, inf, -inf}) EXPECT_EQ(status(&table, 1, bad, 0), -1);
  for (const double bad : {nan, inf, -inf}) EXPECT_EQ(status(&table, 1, 0, bad), -1);
  EXPECT_EQ(status(&table, 1, 1e300, 0), 0);
  EXPECT_EQ(out.length, 0);
  EXPECT_EQ(status(&table, 1e300, 0, -1e300), 0);
  EXPECT_EQ(out.length, 1);
  // A whole sample before: the points one sample further on.
  EXPECT_EQ(status(&table, 1, -1, 6), 0);
  const double last = out.data[0];
  EXPECT_EQ(status(&table, 1, 0, 5), 0);
  EXPECT_NEAR(last, out.data[0], 1e-6);
  for (const reals &bad : {reals{3, 1, 1, 1}, reals{0, 1}, reals{-2, 1}, reals{nan, 1}, reals{1e300, 1}}) {
    const record t(bad);
    EXPECT_EQ(status(&t, 1, 0, 0), -1);
  }
  const record z(complexes(10, {1, 0})), tiny(reals{3}), flat(reals{2, 0.5});
  EXPECT_EQ(status(&z, 1, 0, 0), -1);
  EXPECT_EQ(status(&tiny, 1, 0, 0), 0);
  EXPECT_TRUE(same(out, in));
  record y;
  y.length = 50;
  ASSERT_EQ(dspd_rsmp(&in, &y, 1, &flat, 2.5, nullptr), 0);
  EXPECT_TRUE(near(y, reals{0, 2.5, 4.5, 7.5, 9.5}, 0.0));
  record aliased(table);
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
    EXPECT_EQ(dsph_rsmp_coef_init(&coef), 0);
    EXPECT_EQ(dsph_rsmp_coef_alloc(&coef, 0), 0);
    EXPECT_EQ(dsph_rsmp_coef_setup(&coef, 17, ratio, mode, 0), 0);
    EXPECT_EQ(dsph_rsmp_state_init(&state), 0);
    EXPECT_EQ(dsph_rsmp_state_alloc(&coef, &state, is_complex), 0);
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
  // Ratio, mode; halvings, what is left of the ratio, delays.
  const double below = std::nextafter(1.75, 0.0);
  const double cases[][6] = {{5, 0, 2, 1.25, 33, 47},
                             {1, 0, 0, 1, 0, 0},
                             {1, 1, 0, 1, 0, 54},
                             {-3, 0, 0, 1, 0, 0},
                             {2, 0, 1, 1, 33, 0},
                             {0.5, 0, 0, 0.5, 0, 89},
                             {1.75, 0, 0, 1.75, 0, 39},
                             {below, 0, 0, below, 0, 39},
                             {1e300, 1, 996, 1e300 / 0x1p996, 33, 43},
                             {1e-300, 0, 0, 1e-300, 0, INT32_MAX}};
  converter k(1.0);
  for (const auto &[ratio, mode, halvings, rest, delay1, delay2] : cases) {
    ASSERT_EQ(dsph_rsmp_coef_setup(&k.coef, 0, ratio, static_cast<int32_t>(mode), 0), 0);
    const reals got = {double(k.coef.halvings), k.coef.ratio, double(k.coef.delay1), double(k.coef.delay2)};
    EXPECT_EQ(got, (reals{halvings, rest, delay1, delay2})) << ratio;
  }
  for (const double bad : {nan, inf, -inf}) EXPECT_EQ(dsph_rsmp_coef_setup(&k.coef, 0, bad, 3, 0), -1);
  EXPECT_EQ(dsph_rsmp_coef_setup(&k.coef, 0, 2.0, 3, 1), -1);
  EXPECT_EQ(dsph_rsmp_coef_alloc(&k.coef, 1), -1);
  EXPECT_EQ(k.coef.ratio, 1e-300);
  EXPECT_EQ(k.coef.mode, 0);
  converter reused(5.0, 0, true);
  dsph_rsmp_state &s = reused.state;
  const std::vector<int32_t> lengths = {s.stages, s.stage_hist[1].length, s.stage_phase[1].length, s.pre_hist.length,
                                        s.rsmp_state.length};
  EXPECT_EQ(lengths, (std::vector<int32_t>{2, 38, 1, 22, 15}));
  // The same state for another ratio and representation, and for filters of other lengths.
  k.coef.prefilter_odd = 0;
  k.coef.kernel.length = 0;
  ASSERT_EQ(dsph_rsmp_coef_setup(&k.coef, 0, 1.0, 0, 0), 0);
  ASSERT_EQ(dsph_rsmp_state_alloc(&k.coef, &s, 0), 0);
  EXPECT_EQ(s.stages, 0);
  EXPECT_EQ(s.pre_hist.length, 23);
  EXPECT_EQ(s.pre_hist.is_complex, 0u);
  heap_fail(1);
  EXPECT_EQ(dsph_rsmp_state_alloc(&k.coef, &s, 1), -1);
  heap_fail(0);
  EXPECT_EQ(dsph_rsmp_coef_init(nullptr), 0);
  EXPECT_EQ(dsph_rsmp_coef_destroy(nullptr), 0);
}

constexpr double ratios[] = {1.0, 1.1, 1.5, 1.999, 2.0, 2.7, 4.0, 5.0, 8.0};

TEST(Converter, BlocksAreTheWholeBitForBit) {
  for (const bool is_complex : {false, true})
    for (const double ratio : ratios)
      for (const int32_t mode : {0, 1}) {
        const record in = random_signal(1200, is_complex, 4, 0.5);
        converter at_once(ratio, mode, is_complex);
        record whole;
        ASSERT_EQ(at_once.run(&in, &whole), 0);
        for (unsigned seed = 1; seed <= 4; ++seed) {
          converter piecewise(ratio, mode, is_complex);
          record scratch;
          // One whose outputs are not cut at the block's own length: a ratio of 1 in blocks of 1 has no room to catch
          // up.
          const auto blocks = random_blocks(1200, 100, seed);
          const record pieces = in_blocks(in, blocks, seed % 2 != 0, [&](const dsp_vec *b, dsp_vec *o) {
            return piecewise.run(b, o, seed > 2 ? &scratch : nullptr);
          });
          EXPECT_TRUE(same(pieces, whole)) << ratio << " " << mode << " " << seed;
        }
      }
}

TEST(Converter, EveryInstructionSetGivesTheSameBits) {
  for (const bool is_complex : {false, true})
    for (const double ratio : {1.3, 0.7, 5.3}) {
      const record in = random_signal(700, is_complex, 11);
      record expected, out;
      ASSERT_EQ(converter(ratio, 0, is_complex).run(&in, &expected), 0);
      on_each_isa([&] {
        ASSERT_EQ(converter(ratio, 0, is_complex).run(&in, &out), 0);
        EXPECT_TRUE(same(out, expected));
      });
    }
}

// Two halves of one thing: halving in one go equals filtering, then dropping every second sample.
TEST(Converter, HalvingIsFilteringAndDecimation) {
  for (const bool is_complex : {false, true}) {
    const record in = random_signal(500, is_complex, 5, 0.5);
    converter k(2.0, 0, is_complex);
    dsph_rsmp_state_destroy(&k.state);  // nothing to drop
    record filtered, expected, out, scratch, hist;
    for (int round = 0; round < 2; ++round) {
      ASSERT_EQ(dspd_sfir(&in, &filtered, &k.coef.halfband, 1, 0, &hist), 0);
      ASSERT_EQ(dspd_deci(&filtered, &expected, 2, nullptr), 0);
      ASSERT_EQ(k.run(&in, &out, &scratch), 0);
      EXPECT_TRUE(same(out, expected));
      EXPECT_TRUE(same(k.state.stage_hist[0], hist));
    }
    // A lowpass too long, complex or empty, not for the short way.
    for (const record &half : {random_signal(40, false, 6), random_signal(20, true, 6), record()}) {
      dsp_copy(&k.coef.halfband, &half);
      dsph_rsmp_state_destroy(&k.state);
      ASSERT_EQ(dspd_sfir(&in, &filtered, &half, 1, 0, nullptr), 0);
      ASSERT_EQ(dspd_deci(&filtered, &expected, 2, nullptr), 0);
      ASSERT_EQ(k.run(&in, &out), 0);
      EXPECT_TRUE(same(out, expected));
      heap_fail(1);
      EXPECT_EQ(k.run(&in, &out), -1);
      heap_fail(0);
    }
  }
}

TEST(Converter, WithoutAStateNothingIsDropped) {
  for (const double ratio : {1.0, 1.3, 2.0, 6.1}) {
    const record in = random_signal(300, false, 7);
    record expected, out, scratch, as_scratch(in);
    converter k(ratio);
    k.state.delay1 = k.state.delay2 = 0;
    ASSERT_EQ(k.run(&in, &expected, &scratch), 0);
    EXPECT_EQ(dsph_rsmp(&as_scratch, &out, &as_scratch, &k.coef, nullptr), 0);
    EXPECT_TRUE(same(out, expected)) << ratio;
    EXPECT_TRUE(same(as_scratch, in));
  }
}

// The sine of `frequency` that fits best, and the rms of what remains relative to it.
struct fit {
  double amplitude, residue;
};

fit fit_sine(const dsp_vec &v, double frequency, int32_t first, int32_t last) {
  double cc = 0, cs = 0, ss = 0, xc = 0, xs = 0;
  const auto cosine = [=](int32_t i, double phase) {
    return std::cos(two_pi * (std::fmod(frequency * i, 1.0) - phase));
  };
  for (int32_t i = first; i < last; ++i) {
    const double c = cosine(i, 0), s = cosine(i, 0.25);
    cc += c * c, cs += c * s, ss += s * s, xc += v.data[i] * c, xs += v.data[i] * s;
  }
  const double det = cc * ss - cs * cs;
  const double a = (xc * ss - xs * cs) / det, b = (xs * cc - xc * cs) / det;
  double rest = 0;
  for (int32_t i = first; i < last; ++i) rest += std::pow(v.data[i] - a * cosine(i, 0) - b * cosine(i, 0.25), 2);
  const double amplitude = std::hypot(a, b);
  return {amplitude, std::sqrt(2 * rest / (last - first)) / amplitude};
}

double decibels(double x) { return 20 * std::log10(std::max(x, 1e-300)); }

// A tone of `frequency` cycles per output sample through the converter, without the ends where it sets in and stops.
record converted_tone(converter &k, double ratio, double frequency) {
  const auto n = static_cast<int32_t>(1500 * ratio);
  record in(reals(static_cast<std::size_t>(n))), out, middle;
  EXPECT_EQ(dspc_cos(&in, frequency / ratio, 0.3), 0);
  EXPECT_EQ(dsph_rsmp(&in, &out, nullptr, &k.coef, nullptr), 0);
  dspu_subvec(&out, &middle, 200, out.length - 400);
  return middle;
}

TEST(Converter, PassesTheBandAndStopsWhatWouldFallIntoIt) {
  // What is reached is in docs/filters.md; the limits are 1 dB (ripple: 0.005 dB) short of it.
  const struct {
    double ratio, lowest, highest, residue, rejection;
  } reached[] = {
      {1.0001, -0.027, 0.028, -130.9, 400}, {1.25, -0.042, 0.020, -122.4, 400}, {1.5, -0.028, 0.029, -122.4, 97.5},
      {1.999, -0.026, 0.028, -116.6, 94.7}, {2.0, -0.037, 0.013, -255, 94.4},   {2.7, -0.037, 0.025, -120.5, 84.6},
      {3.3, -0.058, 0.029, -118.7, 94.4},   {4.0, -0.026, 0.025, -254, 94.4},   {5.3, -0.052, 0.034, -121.5, 78.2},
      {7.9, -0.024, 0.044, -116.2, 94.4},   {8.0, -0.023, 0.029, -254, 94.4}};
  for (const auto &r : reached) {
    const double ratio = r.ratio;
    converter k(ratio);
    double residue = -400, lowest = 0, highest = 0, alias = -400;
    for (double f = 0.005; f <= 0.3951; f += 0.01) {
      const record y = converted_tone(k, ratio, f);
      const fit sine = fit_sine(y, f, 0, y.length);
      residue = std::max(residue, decibels(sine.residue));
      lowest = std::min(lowest, decibels(sine.amplitude));
      highest = std::max(highest, decibels(sine.amplitude));
    }
    for (double f = 0.625; f < 0.5 * ratio; f += 0.0173) {
      const record y = converted_tone(k, ratio, f);
      double power = 0;
      for (const double x : doubles_of(y)) power += x * x;
      alias = std::max(alias, decibels(std::sqrt(2 * power / y.length)));
    }
    EXPECT_GE(lowest, r.lowest - 0.005) << ratio;
    EXPECT_LE(highest, r.highest + 0.005) << ratio;
    EXPECT_LE(residue, std::max(r.residue + 1, -250.0)) << ratio;
    EXPECT_LE(alias, -r.rejection + 1) << ratio;
  }
}

TEST(Converter, OutputsStandForTheStatedSamples) {
  for (const double ratio : {1.25, 1.9, 2.0, 3.3, 8.0}) {
    converter k(ratio);
    const double stage = std::ldexp(1.0, k.coef.halvings), rest = k.coef.ratio;
    const double first = (k.coef.halvings > 0 ? 14 * stage + 19 : 0.0) +
                         (k.coef.delay2 > 0 ? stage * (rest * (k.coef.delay2 - 9.5) - 17.5) : 0.0);
    const double frequency = 0.02 / ratio;
    record in(reals(2000)), out;
    ASSERT_EQ(dspc_cos(&in, frequency, 0), 0);
    ASSERT_EQ(k.run(&in, &out), 0);
    for (int32_t m = 0; m < out.length; ++m)
      ASSERT_NEAR(out.data[m], std::cos(two_pi * frequency * (ratio * m + first)), 3e-3) << ratio << " " << m;
  }
}

TEST(Stream, SteadyConversionAllocatesNothing) {
  for (const double ratio : ratios) {
    const record in = random_signal(256, true, 8);
    converter k(ratio, 0, true);
    record out, scratch;
    for (int round = 0; round < 2; ++round) ASSERT_EQ(k.run(&in, &out, &scratch), 0);
    const long requests = heap_requests();
    for (int round = 0; round < 5; ++round) ASSERT_EQ(k.run(&in, &out, &scratch), 0);
    EXPECT_EQ(heap_requests(), requests) << ratio;
  }
}

}  // namespace
