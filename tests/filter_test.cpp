// Streaming filters: the sums they stand for, blocks against the whole, states, caches and sharing.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>

#include "dsp/dsp.h"
#include "tests/support/each_isa.h"
#include "tests/support/emulated.h"
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

// The full filter of a half.
record mirrored(const record &half, bool odd, bool anti) {
  complexes taps = complexes_of(half);
  for (std::size_t i = taps.size() - (odd ? 1 : 0); i-- > 0;) taps.push_back(anti ? -taps[i] : taps[i]);
  return signal_of(taps, half.is_complex != 0);
}

// Which of signal and filter are complex.
constexpr struct representations {
  bool signal, filter;
} all_representations[] = {{false, false}, {true, false}, {false, true}, {true, true}};

// Samples of 20 bits: sums of their products are exact even where long double is no wider than double.
record coarse(int32_t n, bool is_complex, unsigned seed) {
  record v = random_signal(static_cast<std::size_t>(n), is_complex, seed, 0.5);
  for (int32_t i = 0; i < n * (is_complex ? 2 : 1); ++i) v.data[i] = std::nearbyint(v.data[i] * 0x1p20) * 0x1p-20;
  return v;
}

TEST(Fir, IsTheConvolutionInBlocksToo) {
  for (const representations complex : all_representations)
    for (const int32_t m : {1, 2, 3, 5, 7, 12, 16, 21, 29, 35, 36, 45, 46, 64, 65, 200, 257, 500}) {
      if (emulated && m > 200) continue;
      const record h = coarse(m, complex.filter, 2), past = coarse(m - 1, complex.signal, 3);
      for (const int32_t n : {0, 1, 2, 7, 15, 30, 64, 100, 257, 512, 1000}) {
        const record in = coarse(n, complex.signal, 1);
        const record from_silence = convolved(in, h), expected = convolved(in, h, complexes_of(past));
        record newest(past);
        dsp_append(&newest, &in);
        dspi_shift(&newest, n);
        on_each_isa([&] {
          SCOPED_TRACE(::testing::Message() << m << " taps on " << n << ", " << complex.signal << complex.filter);
          record out, state(past);
          ASSERT_EQ(dspd_fir(&in, &out, &h, nullptr), 0);
          EXPECT_TRUE(close(out, from_silence, 2e-15));
          EXPECT_EQ(out.dx, 0.5);
          ASSERT_EQ(dspd_fir(&in, &out, &h, &state), 0);
          EXPECT_TRUE(close(out, expected, 2e-15));
          EXPECT_TRUE(same(state, newest));
        });
      }
      const bool direct_only = complex.filter || m <= (complex.signal ? 35 : 45);
      on_each_isa([&] {
        expect_blocks_to_be_the_whole(random_signal(1500, complex.signal, 4), m, direct_only ? 0 : 1e-13,
                                      [&](auto *b, auto *o, auto *s) { return dspd_fir(b, o, &h, s); });
      });
    }
}

TEST(Sfir, IsTheMirroredFilterInBlocksToo) {
  for (const representations complex : all_representations)
    for (const int32_t l : {1, 2, 8, 20, 30, 31, 60})
      for (const int flags : {0, 1, 2, 3}) {
        const bool odd = flags % 2 != 0, anti = flags > 1;
        SCOPED_TRACE(::testing::Message() << l << " of half, " << odd << anti << complex.signal << complex.filter);
        const record half = random_signal(static_cast<std::size_t>(l), complex.filter, 6),
                     full = mirrored(half, odd, anti);
        const record in = random_signal(700, complex.signal, 7, 0.5);
        const record expected = convolved(in, full);
        on_each_isa([&] {
          record out;
          ASSERT_EQ(dspd_sfir(&in, &out, &half, odd ? 5 : 0, anti ? -1 : 0, nullptr), 0);
          EXPECT_TRUE(close(out, expected, 2e-15));
          expect_blocks_to_be_the_whole(
              in, l, complex.filter || full.length <= 60 ? 0 : 1e-13,
              [&](auto *b, auto *o, auto *s) { return dspd_sfir(b, o, &half, odd, anti, s); });
        });
      }
}

TEST(Fir, CachedSpectraFollowFilterRouteAndSize) {
  const record inputs[] = {random_signal(1024, false, 10, 0.0), random_signal(256, true, 11, 0.0)};
  const record a = random_signal(64, false, 12), b = random_signal(300, false, 13), infinite(reals(64, inf));
  const auto with_tap = [](record h, int at, double tap) { return h.data[at] = tap, h; };
  const record within = with_tap(a, 5, std::nextafter(a.data[5], 2.0));  // so close that the spectra held are used
  const record nearly = with_tap(a, 5, a.data[5] + 1e-12), respaced(doubles_of(nearly), 9.0),
               spoilt = with_tap(b, 50, nan);
  for (int round = 0; round < 3; ++round)
    for (const record *h : {&a, &within, &nearly, &respaced, &b, &spoilt, &b, &a, &infinite})
      for (const record &in : inputs)
        for (const int32_t n : {in.length, in.length / 2, in.length}) {
          record out, block;
          dsp_copy_at_most(&block, &in, n);
          ASSERT_EQ(dspd_fir(&block, &out, h, nullptr), 0);
          EXPECT_EQ(out.dx, 0.0);
          if (std::isfinite(h->data[50]))
            EXPECT_TRUE(close(out, convolved(block, *h), 3e-15));
          else
            EXPECT_FALSE(std::isfinite(out.data[n / 2]));
        }
}

// Also through a transform, of the block that holds the sample and of the next one.
TEST(Fir, AWildSampleKeepsToTheOutputsThatWeighIt) {
  const record clean = random_signal(1000, false, 17), h = random_signal(100, false, 18);
  const record expected = convolved(clean, h);
  for (const double wild : {nan, inf, -1e100})
    for (const int at : {0, 450, 499, 999}) {
      record in(clean), state;
      in.data[at] = wild;
      const record out =
          in_blocks(in, {500, 500}, false, [&](auto *block, auto *y) { return dspd_fir(block, y, &h, &state); });
      for (int n = 0; n < 1000; ++n) {
        const bool weighs_it = n >= at && n < at + 100;
        EXPECT_EQ(weighs_it, !(std::fabs(out.data[n] - expected.data[n]) <= 1e-13)) << wild << " at " << at;
      }
    }
  record large(clean), out;  // not wild, although the sum of squares is large
  dspi_scale(&large, 0.9e50);
  on_each_isa([&] {
    ASSERT_EQ(dspd_fir(&large, &out, &h, nullptr), 0);
    dspi_scale(&out, 1 / 0.9e50);
    EXPECT_TRUE(near(out, expected, 1e-13));
  });
}

TEST(Fir, StatesOfOtherLengthsAndRepresentations) {
  const record in = random_signal(50, true, 14, 0.5), h = random_signal(10, false, 15), none;
  for (record state : {record(reals{1, 2, 3}), random_signal(20, true, 16)}) {
    const int32_t length = std::max(9, state.length);
    complexes past = complexes_of(state);
    past.resize(9);
    record out;
    ASSERT_EQ(dspd_fir(&in, &out, &h, &state), 0);
    EXPECT_TRUE(close(out, convolved(in, h, past), 2e-15));
    EXPECT_EQ(state.length, length);
    EXPECT_EQ(state.dx, 0.5);
    // Without taps a copy, which leaves the state alone.
    ASSERT_EQ(dspd_fir(&in, &out, &none, &state) + dspd_sfir(&in, &out, &none, 0, 0, &state), 0);
    EXPECT_TRUE(same(out, in));
  }
}

TEST(Stream, RefusesRecordsThatMustNotBeShared) {
  record a = random_signal(30, false, 19), h = random_signal(5, false, 20), out(reals(4)), state;
  const record before(h), in(a);
  const record none;
  EXPECT_EQ(dspd_fir(&a, &out, &none, &out), -1);
  EXPECT_EQ(dspd_sfir(&a, &out, &none, 0, 0, &out), -1);
  EXPECT_EQ(dspd_rsmp(&a, &out, 0, &none, 1.0, &out), -1);
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
    for (const int32_t factor : {INT32_MIN, -5, 0, 1, 2, 3, 7, 1000, INT32_MAX})
      for (const double phase : {nan, -7.0, 0.0, 1.0, 1.6, 2.4, 12.0, 199.0, 200.0, 1e300, inf}) {
        SCOPED_TRACE(::testing::Message() << "factor " << factor << ", phase " << phase);
        const record in = random_signal(200, is_complex, 21, 0.5);
        const double d = std::max(factor, 1);
        complexes kept;
        double skip = phase > 0 ? std::round(phase) : 0;
        for (const complex z : complexes_of(in)) {
          if (skip <= 0) kept.push_back(z);
          skip += skip <= 0 ? d - 1 : -1;
        }
        record out, state(reals{phase});
        ASSERT_EQ(dspd_deci(&in, &out, factor, &state), 0);
        EXPECT_TRUE(same(out, signal_of(kept, is_complex, 0.5 * d)));
        EXPECT_EQ(state.data[0], skip);
        if (phase != 0) continue;
        expect_blocks_to_be_the_whole(in, 9, 0, [=](auto *b, auto *o, auto *s) { return dspd_deci(b, o, factor, s); });
      }
}

TEST(Hwfilt, IsFourSectionsOfTheRationalFilter) {
  for (const bool is_complex : {false, true}) {
    const record in = random_signal(500, is_complex, 23, 0.5);
    complexes x = complexes_of(in);
    for (int section = 0; section < 4; ++section) {
      complexes y(3);  // three samples of silence, here and before x
      x.insert(x.begin(), 3, 0.0);
      for (std::size_t i = 3; i < x.size(); ++i)
        y.push_back(0.25 * (x[i] + x[i - 3]) + 0.5 * (x[i - 1] + x[i - 2] - y[i - 2]));
      x.assign(y.begin() + 3, y.end());
    }
    record out, state;
    ASSERT_EQ(dspd_hwfilt(&in, &out, nullptr, &state), 0);
    EXPECT_TRUE(close(out, signal_of(x, is_complex), 1e-15));
    EXPECT_EQ(state.length, 12);
    expect_blocks_to_be_the_whole(in, 9, 0, [](auto *b, auto *o, auto *s) { return dspd_hwfilt(b, o, nullptr, s); });
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
  const record pieces =
      in_blocks(in, {10, 0, 50}, true, [](const dsp_vec *, dsp_vec *out) { return dspi_hwfilt(out, nullptr); });
  EXPECT_TRUE(same(pieces, expected));
  dsp_free_internal();
}

TEST(Stream, SteadyStateAllocatesNothing) {
  const record filters[] = {random_signal(20, false, 27), random_signal(100, false, 28), random_signal(30, true, 29)};
  for (const bool is_complex : {false, true}) {
    const record in = random_signal(256, is_complex, 26);
    record out[6], state[6];
    long requests = 0;
    for (int round = 0; round < 5; ++round) {
      if (round == 1) requests = heap_requests();
      for (int i = 0; i < 3; ++i) EXPECT_EQ(dspd_fir(&in, &out[i], &filters[i], &state[i]), 0);
      EXPECT_EQ(dspd_sfir(&in, &out[3], &filters[0], 1, 0, &state[3]), 0);
      EXPECT_EQ(dspd_deci(&in, &out[4], 3, &state[4]), 0);
      EXPECT_EQ(dspd_hwfilt(&in, &out[5], nullptr, &state[5]), 0);
    }
    EXPECT_EQ(heap_requests(), requests);
  }
}

}  // namespace
