// Transforms against their definition in wider numbers, on every instruction set of this machine.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <tuple>

#include "dsp/core/isa.h"
#include "dsp/dsp.h"
#include "dsp/fft/roots.h"
#include "tests/support/record.h"
#include "tests/support/wide.h"

namespace {

using namespace support;

using wide_complex = std::complex<wide>;
using wides = std::vector<wide_complex>;
using sizes = std::initializer_list<std::size_t>;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr int32_t huge = std::numeric_limits<int32_t>::max();

// exp(-2 pi i k/n)
const wides &roots(std::size_t n) {
  static std::map<std::size_t, wides> known;
  wides &root = known[n];
  for (std::size_t k = root.size(); k < n; ++k) root.push_back(std::polar(wide(1), -2 * wide_pi * k / n));
  return root;
}

// Unscaled: the definition where n is prime, put together from parts by its smallest factor where it is not.
wides transform_of(const wides &x, int sign) {
  const std::size_t n = x.size();
  if (n < 2) return x;
  std::size_t factor = 2;
  while (n % factor != 0) ++factor;
  const wides &root = roots(n);
  wides y(n);
  for (std::size_t r = 0; r < factor; ++r) {
    wides part;
    for (std::size_t i = r; i < n; i += factor) part.push_back(x[i]);
    part = transform_of(part, sign);
    for (std::size_t k = 0; k < n; ++k) y[k] += root[(sign < 0 ? r : n - r) * k % n] * part[k % part.size()];
  }
  return y;
}

wides widened(const dsp_vec &v) {
  const complexes z = complexes_of(v);
  return wides(z.begin(), z.end());
}

// What a transform of `v` is to give: 1/n forward, unscaled inverse, as many bins as asked for.
wides expected_of(const dsp_vec &v, bool inverse, std::size_t bins) {
  wides y = transform_of(widened(v), inverse ? 1 : -1);
  for (wide_complex &z : y) z /= wide(inverse ? 1 : y.size());
  y.resize(bins);
  return y;
}

double l2_error(const dsp_vec &v, const wides &expected) {
  const wides z = widened(v);
  if (z.size() != expected.size()) return HUGE_VAL;
  wide error = 0, whole = 0;
  for (std::size_t i = 0; i < z.size(); ++i) error += std::norm(z[i] - expected[i]), whole += std::norm(expected[i]);
  return static_cast<double>(sqrt(whole > 0 ? error / whole : error));
}

// The error of a transform grows with the root of its stages. Fused kernels reach 0.7e-16 a root, others 0.85e-16;
// a chirp-z transform goes through two of the next power of two but one.
double limit(std::size_t n, double factor = 1.8e-16) {
  const bool power = (n & (n - 1)) == 0;
  return factor * (power ? 1.0 : 1.6) * std::sqrt(std::log2(static_cast<double>(power ? n : 4 * n)) + 1);
}

// What is promised of every length: two units of rounding for the root of the levels of the power of two behind it.
double bound(std::size_t n) {
  std::size_t inner = 2;
  while (inner < ((n & (n - 1)) == 0 ? n : 2 * n - 2)) inner *= 2;
  return 2 * std::numeric_limits<double>::epsilon() * std::sqrt(std::log2(static_cast<double>(inner)));
}

class Transforms : public testing::TestWithParam<dsp::isa> {
 protected:
  void SetUp() override {
    if (!dsp::force_isa(GetParam())) GTEST_SKIP() << "not on this processor";
  }
  void TearDown() override { dsp::force_isa(best_); }

 private:
  const dsp::isa best_ = dsp::active_isa();
};

INSTANTIATE_TEST_SUITE_P(Sets, Transforms, testing::Values(dsp::isa::baseline, dsp::isa::avx2, dsp::isa::avx512));

std::vector<std::size_t> lengths() {
  std::vector<std::size_t> n;
  for (std::size_t i = 1; i <= 130; ++i) n.push_back(i);
  for (std::size_t i = 131; i <= 300; i += 13) n.push_back(i);
  for (const std::size_t i : sizes{251, 256, 512, 1000, 1009, 1024, 2048, 4096, 8192, 16384}) n.push_back(i);
  return n;
}

TEST_P(Transforms, AgreeWithTheDefinition) {
  for (const std::size_t n : lengths()) {
    for (const bool is_complex : {false, true}) {
      for (const bool inverse : {false, true}) {
        SCOPED_TRACE(testing::Message() << n << (is_complex ? " complex" : " real") << (inverse ? " inverse" : ""));
        record v = random_signal(n, is_complex, 7, 0.25);
        const wides expected = expected_of(v, inverse, n);
        ASSERT_EQ(dspi_dft(&v, inverse ? -5 : 0), 0);
        EXPECT_EQ(v.is_complex != 0, is_complex || n > 1);
        EXPECT_LE(l2_error(v, expected), limit(n));
        EXPECT_EQ(v.dx, n > 1 ? 1.0 / (0.25 * static_cast<double>(n)) : 4.0);
        ASSERT_EQ(dspi_dft(&v, inverse ? 0 : 1), 0);
        EXPECT_LE(l2_error(v, widened(random_signal(n, is_complex, 7))), 2 * limit(n));
        EXPECT_DOUBLE_EQ(v.dx, 0.25);
      }
    }
  }
}

TEST_P(Transforms, RealOnesGiveHalfTheSpectrumAndComeBack) {
  for (const std::size_t n : lengths()) {
    SCOPED_TRACE(n);
    const record x = random_signal(n, false, 11, 0.25);
    record v = x;
    ASSERT_EQ(dspi_rdft(&v), 0);
    EXPECT_LE(l2_error(v, expected_of(x, false, n / 2 + 1)), limit(n));
    EXPECT_EQ(v.is_complex != 0, n > 1);
    EXPECT_EQ(v.dx, 4.0 / static_cast<double>(n));
    if (n % 2 == 0) {  // the imaginary parts of the outer bins belong to no real signal
      v.data[1] = 0.25;
      v.data[n + 1] = -0.5;
    }
    ASSERT_EQ(dspi_irdft(&v, n % 2), 0);
    EXPECT_EQ(v.is_complex, 0u);
    EXPECT_LE(l2_error(v, widened(x)), 2 * limit(n));
    EXPECT_DOUBLE_EQ(v.dx, 0.25);
  }
}

TEST_P(Transforms, ErrLittle) {
  for (int bits = 4; bits <= 16; ++bits) {
    const std::size_t n = std::size_t{1} << bits;
    record v = random_signal(n, true, 3);
    const wides expected = expected_of(v, false, n);
    ASSERT_EQ(dspi_fft(&v, 0), 0);
    EXPECT_LE(l2_error(v, expected), 1.5e-16 * std::sqrt(bits)) << n;
  }
}

// The spectrum of a few impulses is a sum of a few roots.
TEST_P(Transforms, ErrLittleAtLargePrimes) {
  for (const std::size_t n : sizes{4099, 16381, 65521}) {
    const std::pair<std::size_t, complex> impulses[] = {{1, {1, 0.5}}, {n / 3, {-0.25, 1}}, {n - 2, {0.75, -1}}};
    complexes x(n);
    wides expected(n);
    for (const auto &[at, height] : impulses) {
      x[at] = height;
      for (std::size_t k = 0; k < n; ++k) expected[k] += wide_complex(height) * roots(n)[at * k % n] / wide(n);
    }
    record v(x);
    ASSERT_EQ(dspi_dft(&v, 0), 0);
    EXPECT_LE(l2_error(v, expected), 0.8 * bound(n)) << n;
  }
}

TEST_P(Transforms, CosineHilbertAnalytic) {
  for (const std::size_t n : lengths()) {
    if (n > 1009) continue;
    SCOPED_TRACE(n);
    const record x = random_signal(n, false, 5, 0.25);
    wides doubled = widened(x);
    doubled.resize(2 * n);
    doubled = transform_of(doubled, -1);
    for (const int flags : {0, 2}) {
      wides expected(n);
      for (std::size_t k = 0; k < n; ++k) {
        expected[k] = (doubled[k] * roots(4 * n)[k]).real();
        expected[k] *= (flags == 0 ? 1 : k == 0 ? sqrt(wide(2)) : 2) / n;
      }
      record v = x;
      ASSERT_EQ(dspi_dct(&v, flags), 0);
      EXPECT_EQ(v.is_complex, 0u);
      EXPECT_LE(l2_error(v, expected), limit(n));
      EXPECT_DOUBLE_EQ(v.dx, 2.0 / static_cast<double>(n));
      ASSERT_EQ(dspi_dct(&v, flags | 1), 0);
      EXPECT_LE(l2_error(v, widened(x)), 2 * limit(n));
      EXPECT_DOUBLE_EQ(v.dx, 0.25);
    }
    for (const bool is_complex : {false, true}) {
      const record signal = random_signal(n, is_complex, 6, 0.25);
      for (const bool turns : {false, true}) {
        wides expected = transform_of(widened(signal), -1);
        for (std::size_t k = 0; k < n; ++k) {
          const int side = k == 0 || 2 * k == n ? 0 : 2 * k < n ? 1 : -1;
          expected[k] *= (turns ? wide_complex(0, -side) : wide_complex(1 + side)) / wide(n);
        }
        expected = transform_of(expected, 1);
        record v = signal;
        ASSERT_EQ(turns ? dspi_hilbert(&v) : dspi_analytic(&v), 0);
        EXPECT_EQ(v.is_complex != 0, is_complex || (!turns && n > 1));
        EXPECT_EQ(v.dx, 0.25);
        EXPECT_LE(l2_error(v, expected),
                  (is_complex && !turns ? 1.5 : 1.0) * bound(n));  // a complex one loses half of itself
      }
    }
  }
}

TEST(Fft, ChangesOfInstructionSetReleaseAndDirectionChangeNothing) {
  for (const std::size_t n : sizes{32, 64, 256, 100}) {
    const auto transformed = [n] {
      record v = random_signal(n, true, 9);
      EXPECT_EQ(dspi_dft(&v, 0), 0);
      return v;
    };
    const record once = transformed();
    EXPECT_TRUE(same(once, transformed()));
    EXPECT_EQ(dsp_free_internal(), 0);
    EXPECT_TRUE(same(once, transformed())) << "after a release";
    const dsp::isa best = dsp::active_isa();
    for (const dsp::isa set : {dsp::isa::baseline, best}) {
      ASSERT_TRUE(dsp::force_isa(set));
      EXPECT_TRUE(near(transformed(), complexes_of(once), 1e-15));
    }
  }
}

// Half a unit in the last place is a correct rounding; long double adds a thousandth.
TEST(Fft, RootsAreRightToTheLastBit) {
  for (const std::size_t n : sizes{16, 4096, 1 << 17}) {
    reals cosines(n / 8 + 1);
    reals sines(n / 8 + 1);
    dsp::fill_octant(cosines.data(), sines.data(), static_cast<int64_t>(n));
    const auto units = [](double value, wide exact) {
      return static_cast<double>(abs(value - exact)) / (std::nextafter(value, 2.0) - value);
    };
    double worst = 0;
    for (std::size_t k = 0; k <= n / 8; ++k) {
      const wide angle = 2 * wide_pi * k / n;
      worst = std::max({worst, units(cosines[k], cos(angle)), units(sines[k], sin(angle))});
    }
    EXPECT_LE(worst, 0.501) << n;
  }
}

using routine = int32_t (*)(dsp_vec *);
int32_t fft(dsp_vec *v) { return dspi_fft(v, 0); }
int32_t unfft(dsp_vec *v) { return dspi_fft(v, 1); }
int32_t dft(dsp_vec *v) { return dspi_dft(v, 0); }
int32_t undft(dsp_vec *v) { return dspi_dft(v, 1); }
int32_t irdft_odd(dsp_vec *v) { return dspi_irdft(v, 1); }
int32_t irdft_even(dsp_vec *v) { return dspi_irdft(v, 0); }
int32_t dct(dsp_vec *v) { return dspi_dct(v, 2); }
int32_t undct(dsp_vec *v) { return dspi_dct(v, 3); }

TEST(Fft, KnownResults) {
  const complex i(0, 1);
  struct known {
    routine run;
    record in, out;
  };
  std::vector<known> cases = {
      {fft, record(reals{1, 1}), record(complexes{1, 0})},
      {unfft, record(complexes{1, 0}), record(complexes{1, 1})},
      {dspi_rfft, record(reals{1, 2, 3, 4}), record(complexes{2.5, -0.5 + 0.5 * i, -0.5})},
      {dspi_irfft, record(reals{1, 2, 3}), record(reals{8, -2, 0, -2})},  // a real half spectrum
      {fft, record(reals{5}), record(reals{5})},
      {dspi_rfft, record(reals{5}), record(reals{5})},
  };
  for (const std::size_t n : sizes{4, 8, 16, 64, 1024}) {  // an impulse either way, exactly
    complexes impulse(n);
    impulse[0] = 1.0;
    cases.push_back({fft, record(impulse), record(complexes(n, 1.0 / static_cast<double>(n)))});
    impulse[0] = static_cast<double>(n);
    cases.push_back({unfft, record(complexes(n, 1.0)), record(impulse)});
  }
  for (known &c : cases) {
    c.in.dx = 4.0;
    EXPECT_EQ(c.run(&c.in), 0);
    const bool real = c.out.is_complex == 0;
    EXPECT_TRUE(real ? near(c.in, doubles_of(c.out), 0) : near(c.in, complexes_of(c.out), 0)) << &c - &cases[0];
    EXPECT_TRUE(c.in.length != 1 || c.in.dx == 0.25);
  }
  record v(reals(7, 3.0), 0.5);
  EXPECT_EQ(dspi_dct(&v, 0), 0);
  EXPECT_TRUE(near(v, reals{3, 0, 0, 0, 0, 0, 0}, 2e-15));
}

TEST(Fft, RefusalsLeaveTheSignalAlone) {
  for (const routine run : {fft, unfft, dspi_bitrev, dspi_bitrev_scale, dspi_rfft})
    for (const std::size_t n : sizes{0, 3, 6, 1023})
      for (const bool is_complex : {false, true}) {
        const record x = random_signal(n, is_complex, 1, 2.0);
        record v = x;
        EXPECT_EQ(run(&v), -1) << n;
        EXPECT_TRUE(same(v, x));
      }
  for (const routine run : {dspi_rfft, dspi_rdft, dct, undct})
    for (const std::size_t n : sizes{0, 1, 4, 5}) {
      record v = random_signal(n, true, 1);
      EXPECT_EQ(run(&v), -1) << n;
      EXPECT_TRUE(same(v, random_signal(n, true, 1)));
    }
  record v = random_signal(4, true, 1);  // six samples are no power of two
  EXPECT_EQ(dspi_irfft(&v), -1);
  EXPECT_EQ(v.length, 6);
  reals flat(8, 1.0);
  EXPECT_EQ(cf_dspi_fft(flat.data(), 2, 0, 0), -1);
  EXPECT_EQ(cf_dspi_fft(flat.data(), 1, 0, 0), 0);
  EXPECT_EQ(cf_dspi_fft(flat.data(), 4, 1, 0), 0);
  EXPECT_EQ(flat, (reals{1, 1, 0, 0, 0, 0, 0, 0}));
}

TEST(Fft, LengthsWithoutSamplesAndTooLargeOnes) {
  for (const int32_t n : {0, -3}) {
    for (const routine run : {dft, undft, dspi_rdft, irdft_even, irdft_odd, dct, undct, dspi_hilbert, dspi_analytic}) {
      record v;
      v.length = n;
      v.dx = 4.0;
      EXPECT_EQ(run(&v), 0);
      EXPECT_EQ(v.length, n);
      EXPECT_EQ(v.dx, run == dspi_hilbert || run == dspi_analytic ? 4.0 : run == dct || run == undct ? 0.125 : 0.25);
    }
    record v;
    v.length = n;
    EXPECT_EQ(dspi_irfft(&v), -1);
  }
  for (const int32_t n : {huge, huge / 2, huge / 2 + 1, huge / 4 + 2}) {
    for (const routine run : {dft, irdft_even, irdft_odd, dspi_irfft}) {
      double few[4] = {};
      dsp_vec v = {1.0, few, 0, n, 1, 0};
      const bool power = (n & (n - 1)) == 0;
      if (run == dft && power) continue;
      EXPECT_EQ(run(&v), -1) << n;
      dsp_destroy(&v);
    }
  }
}

TEST(Fft, SpacingOfZeroStandsForNone) {
  for (const routine run : {fft, unfft, dft, undft, dspi_rfft, dspi_rdft, irdft_even, irdft_odd, dspi_irfft})
    for (const std::size_t n : sizes{1, 2, 3, 5, 8, 9}) {
      record v = random_signal(n, run == irdft_even || run == irdft_odd || run == dspi_irfft, 1, 0.0);
      if (run(&v) == 0) {
        EXPECT_EQ(v.dx, 1e100) << n;
      }
    }
  record v(reals{1, 2, 3}, 0.0);
  EXPECT_EQ(dspi_dct(&v, 0), 0);
  EXPECT_EQ(v.dx, 5e99);
  v = record(reals{1, 2, 3}, 0.0);
  EXPECT_EQ(dspi_hilbert(&v), 0);
  EXPECT_EQ(v.dx, 0.0);
  v.length = 0;
  EXPECT_EQ(dspi_dct(&v, 1), 0);
  EXPECT_EQ(v.dx, 1e100);
}

TEST(Fft, BitReversal) {
  for (int bits = 0; bits <= 11; ++bits) {
    const std::size_t n = std::size_t{1} << bits;
    for (const bool is_complex : {false, true}) {
      const record x = random_signal(n, is_complex, 2, 3.0);
      const complexes z = complexes_of(x);
      complexes expected(n);
      for (std::size_t i = 0; i < n; ++i) {
        std::size_t j = 0;
        for (int b = 0; b < bits; ++b) j |= (i >> b & 1) << (bits - 1 - b);
        expected[j] = z[i];
      }
      record v = x;
      ASSERT_EQ(dspi_bitrev(&v), 0);
      EXPECT_EQ(complexes_of(v), expected) << n;
      ASSERT_EQ(dspi_bitrev(&v), 0);
      EXPECT_TRUE(same(v, x)) << n;
      ASSERT_EQ(dspi_bitrev_scale(&v), 0);
      for (complex &value : expected) value /= static_cast<double>(n);
      EXPECT_EQ(complexes_of(v), expected) << n;
    }
  }
}

TEST(Fft, BorrowedSignalsThatGrowLeaveTheirMemoryAlone) {
  for (const routine run : {fft, dspi_rfft, dft, dspi_rdft, dspi_analytic})
    for (const std::size_t n : sizes{2, 4, 32, 7, 100}) {
      reals mine = random_reals(n, 4);
      dsp_vec v = borrow(mine);
      const bool grown = run(&v) == 0;
      EXPECT_EQ(grown, v.capacity > 0);
      EXPECT_EQ(mine, random_reals(n, 4));
      dsp_destroy(&v);
    }
}

TEST(Fft, SpecialValuesSpread) {
  for (const double special : {nan, HUGE_VAL}) {
    for (const std::size_t n : sizes{4, 64, 100}) {
      record v(reals(n, 1.0));
      v.data[1] = special;
      ASSERT_EQ(dspi_dft(&v, 0), 0);
      for (std::size_t k = 0; k < n; ++k) EXPECT_FALSE(std::isfinite(v.data[2 * k] + v.data[2 * k + 1])) << k;
    }
  }
}

}  // namespace
