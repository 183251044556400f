// Windowed spectra and back, running averages, correlation.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>

#include "dsp/dsp.h"
#include "tests/support/heap.h"
#include "tests/support/record.h"

namespace {

using namespace support;

const double pi = std::acos(-1.0);

constexpr int32_t two_sided = DSP_SPECTRUM_TWO_SIDED, summed = DSP_SPECTRUM_SUM, centred = DSP_SPECTRUM_CENTRED,
                  raw = DSP_SPECTRUM_RAW;

TEST(Spectrum, ShowsAmplitudeUnderEveryWindowAndPadding) {
  for (int32_t window = 0; window <= 23; ++window)
    for (const double fraction : {1.0, 0.5})
      for (const int32_t padding : {1, 4}) {
        record in(reals(1024), 0.5), out;
        ASSERT_EQ(dspc_cos(&in, 0.25, 0.3), 0);
        dspi_scale(&in, 0.75);
        const int32_t n = 1024 * padding;
        ASSERT_EQ(dsph_fft(&in, &out, n, fraction / padding, window, 0), 0);
        ASSERT_EQ(out.length, n / 2 + 1);
        EXPECT_DOUBLE_EQ(out.dx, 1 / (0.5 * n));
        dspi_mag(&out);
        // Flat-tops are normalised to a published mean that is not quite 1; the lobes of other windows than cosine sums
        // reach from the line at negative frequency.
        const bool flat_top = window >= 8 && window <= 13;
        const bool cosine_sum = window <= 13 && window != DSP_WINDOW_TRIANGULAR;
        EXPECT_NEAR(out.data[128 * padding], 0.75, flat_top ? 6e-4 : cosine_sum ? 1e-14 : 2e-5) << window;
      }
}

TEST(Spectrum, CleansUpItsArguments) {
  const record in = random_signal(100, false, 3), empty;
  record expected, out;
  for (const auto &[asked, used] : {std::pair(-7, 128), std::pair(63, 64)})
    for (const double fraction : {1.0, 0.0, -1.0, 1.5, std::nan("")}) {
      ASSERT_EQ(dsph_fft(&in, &expected, used, 1.0, DSP_WINDOW_HANN, 0), 0);
      ASSERT_EQ(dsph_fft(&in, &out, asked, fraction, DSP_WINDOW_HANN, 0), 0);
      EXPECT_EQ(out.length, used / 2 + 1);
      EXPECT_TRUE(same(out, expected)) << asked << " " << fraction;
    }
  for (const auto &[from, to] : {std::pair<const dsp_vec *, dsp_vec *>(nullptr, &out), {&in, nullptr}}) {
    EXPECT_EQ(dsph_fft(from, to, 0, 1.0, 0, 0), -1);
    EXPECT_EQ(dsph_dft(from, to, 0, 0), -1);
    EXPECT_EQ(dsph_avg(from, to, nullptr, 1, 1, 0, -1, 0), -1);
    EXPECT_EQ(dspb_corr(from, &in, to, 2, 0), -1);
  }
  heap_limit(1 << 20);  // the longest transform there is takes more
  EXPECT_EQ(dsph_fft(&in, &out, INT32_MAX, 1.0, 0, 0), -1);
  heap_limit(SIZE_MAX / 2);
  for (const int32_t unknown : {-1, 25}) {
    EXPECT_EQ(dsph_fft(&in, &out, 0, 1.0, unknown, 0), -1);
    EXPECT_EQ(dsph_dft(&in, &out, unknown, 0), -1);
  }
  for (const int32_t flags : {0, two_sided, summed, centred, raw}) {
    EXPECT_EQ(dsph_fft(&empty, &out, 0, 1.0, DSP_WINDOW_HANN, flags), 0) << flags;
    EXPECT_EQ(complexes_of(out), complexes(1, 0.0));
  }
}

TEST(Spectrum, FlagsMeanWhatTheySay) {
  const int n = 64;
  const struct {
    int32_t flags;
    double divisor;
    int time_zero, first_bin;
  } cases[] = {{two_sided, n, 0, -n / 2},
               {raw, n, 0, 0},
               {summed | two_sided, 1, n / 2, -n / 2},
               {centred | two_sided, n, n / 2, -n / 2},
               {two_sided | DSP_SPECTRUM_UNWINDOWED, n, 0, -n / 2}};
  for (const bool is_complex : {false, true})
    for (const auto &c : cases) {
      const record in = random_signal(n, is_complex, 5);
      const complexes z = complexes_of(in);
      complexes expected(n);
      for (int k = 0; k < n; ++k)
        for (int i = 0; i < n; ++i)
          expected.data()[k] +=
              z.data()[i] * std::polar(1 / c.divisor, -2 * pi / n * (k + c.first_bin) * (i - c.time_zero));
      record fft, dft;
      ASSERT_EQ(dsph_fft(&in, &fft, 0, 1.0, DSP_WINDOW_UNIFORM, c.flags), 0);
      ASSERT_EQ(dsph_dft(&in, &dft, DSP_WINDOW_UNIFORM, c.flags), 0);
      for (const record *spectrum : {&fft, &dft}) EXPECT_TRUE(near(*spectrum, expected, 2e-12 / c.divisor)) << c.flags;
    }
}

TEST(Spectrum, InverseUndoesForward) {
  for (const bool is_complex : {false, true})
    for (const int32_t base : {0, two_sided, summed, centred, two_sided | summed, two_sided | centred, raw})
      for (const int n : {1, 2, 8, 64, 13, 48})
        for (const int32_t padded : {0, 8, 64}) {  // 0: by the transform of any length
          const bool full = is_complex || (base & (two_sided | raw)) != 0;
          const bool whole = (base & (summed | centred | raw)) != 0;
          if (padded != 0 && (n > padded || (whole && n != padded))) continue;
          SCOPED_TRACE(testing::Message() << is_complex << " flags " << base << " length " << n << " of " << padded);
          const auto transform = [&](const record &in, record *out, int32_t flags) {
            return padded == 0 ? dsph_dft(&in, out, 0, flags)
                               : dsph_fft(&in, out, padded, n / double(padded), 0, flags);
          };
          const record in = random_signal(static_cast<std::size_t>(n), is_complex, 7, 0.25);
          record there, back;
          ASSERT_EQ(transform(in, &there, base | DSP_SPECTRUM_UNWINDOWED), 0);
          EXPECT_EQ(there.length, full ? std::max(n, padded) : std::max(n, padded) / 2 + 1);
          const int32_t both_sides = is_complex ? DSP_SPECTRUM_FROM_TWO_SIDED : 0,
                        odd = n % 2 != 0 ? DSP_SPECTRUM_ODD : 0;
          ASSERT_EQ(transform(there, &back, base | DSP_SPECTRUM_INVERSE | both_sides | odd), 0);
          if (!is_complex) dspi_real(&back);
          EXPECT_TRUE(near(back, in, 2e-14));
          EXPECT_NEAR(back.dx, 0.25, 1e-15);
        }
}

TEST(Spectrum, PlainArrays) {
  const record in = random_signal(24, false, 9);
  record expected;
  ASSERT_EQ(dsph_fft(&in, &expected, 0, 1.0, DSP_WINDOW_HANN, 0), 0);
  reals out(34, 7.0);
  EXPECT_EQ(cf_dsph_fft(in.data, out.data(), 24, 0, 1.0, DSP_WINDOW_HANN, 0), 0);
  EXPECT_EQ(out, doubles_of(expected));
  out.assign(34, 7.0);
  EXPECT_EQ(cf_dsph_fft(in.data, out.data(), 24, 0, 1.0, 99, 0), -1);
  EXPECT_EQ(cf_dsph_fft(in.data, out.data(), 1, 0, 0.25, 0, DSP_SPECTRUM_INVERSE | DSP_SPECTRUM_FROM_TWO_SIDED), 0);
  EXPECT_EQ(out, reals(34, 7.0)) << "nothing but a refusal, and a quarter of a sample";
}

TEST(Average, FollowsItsDefinition) {
  const std::size_t n = 7;
  const auto run = [&](int32_t flags, int32_t period, double weight, double limit, const auto &fold) {
    record avg, work;
    reals expected;
    for (int32_t count = 1; count <= 6; ++count) {
      reals x = random_reals(n, static_cast<unsigned>(count));
      for (double &value : x) value += 1.5;
      const record in(x);
      ASSERT_EQ(dsph_avg(&in, &avg, &work, flags, count, period, weight, limit), 0);
      if (flags & DSP_AVG_POWER)
        for (double &value : x) value *= value;
      for (std::size_t i = 0; i < n && count > 1; ++i) x[i] = fold(expected[i], x[i], count);
      expected = x;
      EXPECT_TRUE(near(avg, expected, 2e-14)) << flags << " " << count;
    }
  };
  const auto blend = [](double a, double x, double w) { return a + w * (x - a); };
  const auto mean = [&](double a, double x, int c) { return blend(a, x, 1.0 / c); };
  const auto newest = [](double, double x, int) { return x; };
  const auto kept = [](double a, double, int) { return a; };
  run(DSP_AVG_REPLACE, 0, -1, 0, newest);
  for (const int32_t flags : {DSP_AVG_MEAN | 0, DSP_AVG_MEAN | DSP_AVG_POWER, DSP_AVG_MEAN | DSP_AVG_LIMIT})
    run(flags, 0, -1, 0, mean);
  run(DSP_AVG_MEAN | DSP_AVG_LIMIT, 0, -1, 4, [&](double a, double x, int c) { return mean(a, x, std::min(c, 4)); });
  run(DSP_AVG_MEAN, 0, 0.125, 0, [&](double a, double x, int) { return blend(a, x, 0.125); });
  run(DSP_AVG_MAX_HOLD, 0, -1, 0, [](double a, double x, int) { return std::max(a, x); });
  run(DSP_AVG_MIN_HOLD, 0, -1, 0, [](double a, double x, int) { return std::min(a, x); });
  for (const int32_t flags : {DSP_AVG_HARMONIC | 0, DSP_AVG_HARMONIC | DSP_AVG_POWER})
    run(flags, 0, -1, 0, [&](double a, double x, int c) { return 1 / mean(1 / a, 1 / x, c); });
  run(DSP_AVG_GEOMETRIC, 0, -1, 0,
      [&](double a, double x, int c) { return std::exp(mean(std::log(a), std::log(x), c)); });
  run(DSP_AVG_PERIODIC, 3, -1, 0, [](double a, double x, int c) { return c % 3 == 1 ? x : a; });
  run(DSP_AVG_PERIODIC, 1, -1, 0, newest);
  for (const int32_t period : {0, -3}) run(DSP_AVG_PERIODIC, period, -1, 0, kept);
  run(9, 0, -1, 0, kept);
  record two(reals{1, 2});
  const record three(reals{1, 2, 3});
  for (const int32_t mode : {DSP_AVG_MEAN, DSP_AVG_MAX_HOLD, DSP_AVG_MIN_HOLD, DSP_AVG_HARMONIC, DSP_AVG_GEOMETRIC})
    EXPECT_EQ(dsph_avg(&three, &two, nullptr, mode, 2, 0, -1, 0), -1) << mode;
  EXPECT_EQ(doubles_of(two), (reals{1, 2}));
}

TEST(Correlation, EqualsTheDirectSum) {
  for (const bool ref_complex : {false, true})
    for (const bool in_complex : {false, true})
      for (const int m : {1, 3, 20})
        for (const uint32_t halve : {0u, 1u}) {
          const record ref = random_signal(25, ref_complex, 1, 1.0);
          const record in = random_signal(20, in_complex, 2, 3.0);
          const complexes r = complexes_of(ref), x = complexes_of(in);
          complexes expected;
          for (int j = 0; j + m <= 20; ++j) {
            complex sum = 0.0;
            for (int i = 0; i < m; ++i) sum += x.data()[i + j] * std::conj(r.data()[i]);
            expected.push_back(sum / (halve ? 64.0 : 32.0));
          }
          record out, work, again;
          ASSERT_EQ(dsph_corr(&ref, &in, &out, &work, m, halve), 0);
          EXPECT_TRUE(near(out, signal_of(expected, ref_complex || in_complex), 1e-15));
          EXPECT_EQ(out.dx, 2.0);
          ASSERT_EQ(dspb_corr(&ref, &in, &again, m, halve), 0);
          EXPECT_TRUE(same(again, out));
        }
  const record ref(reals{1, 2}), in(reals{1, 2, 3});
  record out;
  for (const int32_t m : {-1, 0, 3}) EXPECT_EQ(dspb_corr(&ref, &in, &out, m, 0), -1);
  dsp_vec huge = view(in);
  huge.length = INT32_MAX;  // no power of two holds it
  EXPECT_EQ(dspb_corr(&ref, &huge, &out, 1, 0), -1);
  EXPECT_EQ(dspb_corr(&ref, nullptr, &out, 1, 0), -1);
}

}  // namespace
