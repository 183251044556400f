// Streaming filters: the sums they stand for, blocks against the whole, states, caches and sharing.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>

#include "dsp/dsp.h"
#include "tests/support/heap.h"
#include "tests/support/record.h"
#include "tests/support/stream.h"

namespace {

using namespace support;

constexpr double inf = std::numeric_limits<double>::infinity();
const double nan = std::nan("");

// The convolution itself, in long double.
record convolved(const dsp_vec &in, const dsp_vec &h, const complexes &past = {}) {
  complexes x = past;
  for (const complex z : complexes_of(in)) x.push_back(z);
  const complexes taps = complexes_of(h);
  complexes y;
  for (std::size_t n = past.size(); n < x.size(); ++n) {
    std::complex<long double> sum = 0;
    for (std::size_t k = 0; k < taps.size() && k <= n; ++k)
      sum += std::complex<long double>(taps[k]) * std::complex<long double>(x[n - k]);
    y.push_back(complex(sum));
  }
  return signal_of(y, in.is_complex != 0 || h.is_complex != 0, in.dx);
}

::testing::AssertionResult close(const dsp_vec &v, const record &expected, double relative) {
  double largest = 1e-300;
  for (const double x : doubles_of(expected)) largest = std::max(largest, std::fabs(x));
  return near(v, expected, relative * largest);
}

// The full filter of a half, as the routine is to see it.
record mirrored(const record &half, bool odd, bool anti) {
  complexes taps = complexes_of(half);
  for (std::size_t i = taps.size() - (odd ? 1 : 0); i-- > 0;) taps.push_back(anti ? -taps[i] : taps[i]);
  return signal_of(taps, half.is_complex != 0);
}

constexpr struct {
  bool signal, filter;
} all_representations[] = {{false, false}, {true, false}, {false, true}, {true, true}};

// Of 20 bits, so that the sums of their products are exact where long double is a double, too.
record coarse(int32_t n, bool is_complex, unsigned seed) {
  record v = random_signal(static_cast<std::size_t>(n), is_complex, seed, 0.5);
  for (int32_t i = 0; i < n * (is_complex ? 2 : 1); ++i) v.data[i] = std::nearbyint(v.data[i] * 0x1p20) * 0x1p-20;
  return v;
}

TEST(Fir, IsTheConvolution) {
  for (const auto [signal, filter] : all_representations)
    for (const int32_t m : {1, 2, 7, 16, 35, 36, 45, 46, 64, 65, 200, 257, 500})
      for (const int32_t n : {0, 1, 2, 15, 64, 100, 257, 512, 1000}) {
        SCOPED_TRACE(::testing::Message() << m << " taps, " << n << " samples, " << signal << filter);
        const record in = coarse(n, signal, 1), h = coarse(m, filter, 2), past = coarse(m - 1, signal, 3);
        record out, state(past);
        ASSERT_EQ(dspd_fir(&in, &out, &h, nullptr), 0);
        EXPECT_TRUE(close(out, convolved(in, h), 2e-15));
        EXPECT_EQ(out.dx, 0.5);
        ASSERT_EQ(dspd_fir(&in, &out, &h, &state), 0);
        EXPECT_TRUE(close(out, convolved(in, h, complexes_of(past)), 2e-15));
        record newest(past);
        dsp_append(&newest, &in);
        dspi_shift(&newest, n);
        EXPECT_TRUE(same(state, newest));
      }
}

TEST(Fir, NoTapsCopy) {
  const record in(reals{1, -2, 3}, 4.0), none;
  record out(complexes{{9, 9}}), state;
  ASSERT_EQ(dspd_fir(&in, &out, &none, &state), 0);
  EXPECT_TRUE(same(out, in));
  ASSERT_EQ(dspd_sfir(&in, &out, &none, 0, 0, &state), 0);
  EXPECT_TRUE(same(out, in));
  EXPECT_EQ(state.length, 0);
}

TEST(Fir, BlocksAreTheWhole) {
  for (const auto [signal, filter] : all_representations)
    for (const int32_t m : {1, 3, 16, 35, 45, 46, 100, 300}) {
      SCOPED_TRACE(::testing::Message() << m << " taps, " << signal << filter);
      const record h = random_signal(static_cast<std::size_t>(m), filter, 5);
      const bool direct_only = filter || m <= (signal ? 35 : 45);
      expect_blocks_to_be_the_whole(
          random_signal(1500, signal, 4), m, direct_only ? 0 : 1e-13,
          [&](const dsp_vec *in, dsp_vec *out, dsp_vec *state) { return dspd_fir(in, out, &h, state); });
    }
}

TEST(Sfir, IsTheMirroredFilterInBlocksToo) {
  for (const auto [signal, filter] : all_representations)
    for (const int32_t l : {1, 2, 8, 20, 30, 31, 60})
      for (const bool odd : {false, true})
        for (const bool anti : {false, true}) {
          SCOPED_TRACE(::testing::Message() << l << " of half, " << odd << anti << signal << filter);
          const record half = random_signal(static_cast<std::size_t>(l), filter, 6);
          const record full = mirrored(half, odd, anti);
          const record in = random_signal(700, signal, 7, 0.5);
          record out;
          ASSERT_EQ(dspd_sfir(&in, &out, &half, odd ? 5 : 0, anti ? -1 : 0, nullptr), 0);
          EXPECT_TRUE(close(out, convolved(in, full), 2e-15));
          const bool one_route = filter || full.length <= 60;
          expect_blocks_to_be_the_whole(in, l, one_route ? 0 : 1e-13,
                                        [&](const dsp_vec *block, dsp_vec *o, dsp_vec *state) {
                                          return dspd_sfir(block, o, &half, odd, anti, state);
                                        });
        }
}

TEST(Fir, CachedSpectraFollowFilterRouteAndSize) {
  const record real_in = random_signal(1024, false, 10, 0.0);
  const record complex_in = random_signal(256, true, 11, 0.0);
  const record filters[] = {random_signal(64, false, 12), random_signal(100, false, 13)};
  record nudged(filters[0]);
  nudged.data[5] += 1e-12;
  const record nearly(nudged);
  record respaced(nudged), within(filters[0]);  // the latter near enough to pass for the same
  respaced.dx = 9.0;
  within.data[5] = std::nextafter(within.data[5], 2.0);
  record with_nan(filters[1]);
  with_nan.data[50] = nan;
  const record spoilt[] = {record(with_nan), record(reals(64, inf))};
  for (int round = 0; round < 3; ++round)
    for (const record *h : std::vector<const record *>{&filters[0], &within, &nearly, &respaced, &filters[1],
                                                       &filters[0], &spoilt[0], &filters[1], &spoilt[1]})
      for (const record *in : {&real_in, &complex_in}) {
        record out, block;
        for (const int32_t n : {in->length, in->length / 2, in->length}) {
          dsp_copy_at_most(&block, in, n);
          ASSERT_EQ(dspd_fir(&block, &out, h, nullptr), 0);
          EXPECT_EQ(out.dx, 0.0);
          if (h != &spoilt[0] && h != &spoilt[1])
            EXPECT_TRUE(close(out, convolved(block, *h), 3e-15));
          else
            EXPECT_FALSE(std::isfinite(out.data[n / 2]));
        }
      }
}

TEST(Fir, StatesOfOtherLengthsAndRepresentations) {
  const record in = random_signal(50, true, 14, 0.5);
  const record h = random_signal(10, false, 15);
  record out, state(reals{1, 2, 3});
  ASSERT_EQ(dspd_fir(&in, &out, &h, &state), 0);
  EXPECT_TRUE(close(out, convolved(in, h, {1, 2, 3, 0, 0, 0, 0, 0, 0}), 2e-15));
  EXPECT_EQ(state.dx, 0.5);
  record longer = random_signal(20, true, 16);
  complexes past = complexes_of(longer);
  past.resize(9);
  ASSERT_EQ(dspd_fir(&in, &out, &h, &longer), 0);
  EXPECT_TRUE(close(out, convolved(in, h, past), 2e-15));
  EXPECT_EQ(longer.length, 20);
}

TEST(Stream, RefusesRecordsThatMustNotBeShared) {
  record a = random_signal(30, false, 19), h = random_signal(5, false, 20), out(reals(4)), state;
  const record before(h), in(a);
  const std::array<dsp_vec *, 2> shared[] = {{&out, &out}, {&out, &a}, {&out, &h}, {&h, &state}};
  for (const auto &[o, s] : shared) {
    EXPECT_EQ(dspd_fir(&a, o, &h, s), -1);
    EXPECT_EQ(dspd_sfir(&a, o, &h, 0, 0, s), -1);
    if (s != &a && s != &out) continue;
    EXPECT_EQ(dspd_deci(&a, o, 2, s), -1);
    EXPECT_EQ(dspd_hwfilt(&a, o, nullptr, s), -1);
  }
  EXPECT_TRUE(same(h, before));
  EXPECT_TRUE(same(a, in));
  dsp_vec huge = view(h);
  huge.length = 1 << 30;
  EXPECT_EQ(dspd_sfir(&a, &out, &huge, 0, 0, nullptr), -1) << "too long a filter";
}

TEST(Deci, KeepsEveryDthSample) {
  for (const bool is_complex : {false, true})
    for (const int32_t d : {1, 2, 3, 7, 1000})
      for (const double phase : {0.0, 1.0, 2.4, 12.0}) {
        const record in = random_signal(200, is_complex, 21, 0.5);
        complexes kept;
        const complexes z = complexes_of(in);
        for (std::size_t i = static_cast<std::size_t>(phase); i < 200; i += static_cast<std::size_t>(d))
          kept.push_back(z[i]);
        const record expected = signal_of(kept, is_complex, 0.5 * d);
        record out, state(reals{phase});
        ASSERT_EQ(dspd_deci(&in, &out, d, &state), 0);
        EXPECT_TRUE(same(out, expected));
        expect_blocks_to_be_the_whole(in, 9, 0,
                                      [&](const dsp_vec *b, dsp_vec *o, dsp_vec *s) { return dspd_deci(b, o, d, s); });
      }
}

TEST(Deci, WildArguments) {
  const record in = random_signal(10, false, 22, 0.5);
  const double cases[][4] = {{3, 0, 4, 2},
                             {3, 2, 3, 1},
                             {3, 12, 0, 2},
                             {0, 0, 10, 0},
                             {-5, 3, 7, 0},
                             {3, 1.6, 3, 1},
                             {3, -7, 4, 2},
                             {3, nan, 4, 2},
                             {3, 1e300, 0, 1e300},
                             {3, inf, 0, inf},
                             {INT32_MAX, 9, 1, 2147483646.0},
                             {INT32_MIN, 0, 10, 0}};
  for (const auto &[factor, phase, length, next] : cases) {
    record out, state(reals{phase});
    ASSERT_EQ(dspd_deci(&in, &out, static_cast<int32_t>(factor), &state), 0);
    EXPECT_EQ(out.length, length) << factor << ' ' << phase;
    EXPECT_EQ(state.data[0], next) << factor << ' ' << phase;
    EXPECT_EQ(out.dx, 0.5 * std::max(factor, 1.0));
  }
}

TEST(Hwfilt, IsFourSectionsOfTheRationalFilter) {
  // The impulse response of one section by long division, convolved with itself three times.
  reals section(80), u(80);
  for (std::size_t i = 0; i < 80; ++i) {
    u[i] = (i == 0) - (i >= 2 ? 0.5 * u[i - 2] : 0.0);
    const double b[] = {0.25, 0.5, 0.5, 0.25};
    for (std::size_t k = 0; k <= std::min<std::size_t>(i, 3); ++k) section[i] += b[k] * u[i - k];
  }
  const record one(section);
  record response(one);
  for (int i = 0; i < 3; ++i) response = convolved(response, one);
  for (const bool is_complex : {false, true}) {
    const record in = random_signal(80, is_complex, 23, 0.5);
    record out, state;
    ASSERT_EQ(dspd_hwfilt(&in, &out, nullptr, &state), 0);
    EXPECT_TRUE(close(out, convolved(in, response), 1e-15));
    EXPECT_EQ(state.length, 12);
    EXPECT_EQ(state.is_complex, is_complex);
    expect_blocks_to_be_the_whole(
        random_signal(500, is_complex, 24), 9, 0,
        [](const dsp_vec *block, dsp_vec *o, dsp_vec *s) { return dspd_hwfilt(block, o, nullptr, s); });
    record constant(reals(200, 3.0)), alternating(reals(200, 1.0)), fresh, fresh2;
    for (std::size_t i = 1; i < 200; i += 2) alternating.data[i] = -1.0;
    ASSERT_EQ(dspd_hwfilt(&constant, &constant, nullptr, &fresh), 0);
    ASSERT_EQ(dspd_hwfilt(&alternating, &alternating, nullptr, &fresh2), 0);
    EXPECT_NEAR(constant.data[199], 3.0, 1e-14);
    EXPECT_NEAR(alternating.data[199], 0.0, 1e-14);
  }
}

TEST(Hwfilt, WithoutAStateTheSharedOneGoesOn) {
  const record in = random_signal(60, false, 25);
  record expected, state, v(in);
  dspd_hwfilt(&in, &expected, nullptr, &state);
  EXPECT_EQ(dspi_hwfilt(&v, &v), -1);
  EXPECT_EQ(dspd_hwfilt(&in, &v, &v, &state), -1);
  EXPECT_TRUE(same(v, in));
  dsp_free_internal();
  const record pieces = in_blocks(in, {10, 0, 50}, true, [](const dsp_vec *block, dsp_vec *out) {
    return block == out ? dspi_hwfilt(out, nullptr) : -1;
  });
  EXPECT_TRUE(same(pieces, expected));
  dsp_free_internal();
}

TEST(Stream, SteadyStateAllocatesNothing) {
  for (const bool is_complex : {false, true}) {
    const record in = random_signal(256, is_complex, 26);
    const record filters[] = {random_signal(20, false, 27), random_signal(100, false, 28), random_signal(30, true, 29)};
    record out[6], state[6];
    const auto round = [&] {
      for (int i = 0; i < 3; ++i) EXPECT_EQ(dspd_fir(&in, &out[i], &filters[i], &state[i]), 0);
      EXPECT_EQ(dspd_sfir(&in, &out[3], &filters[0], 1, 0, &state[3]), 0);
      EXPECT_EQ(dspd_deci(&in, &out[4], 3, &state[4]), 0);
      EXPECT_EQ(dspd_hwfilt(&in, &out[5], nullptr, &state[5]), 0);
    };
    round();
    const long requests = heap_requests();
    for (int i = 0; i < 5; ++i) round();
    EXPECT_EQ(heap_requests(), requests);
  }
}

}  // namespace
