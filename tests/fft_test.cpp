// Transforms against their definition in wider numbers, on every instruction set of this machine.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>

#include "dsp/dsp.h"
#include "dsp/fft/recent.h"
#include "dsp/math/angle.h"
#include "tests/support/each_isa.h"
#include "tests/support/emulated.h"
#include "tests/support/record.h"
#include "tests/support/wide.h"

namespace {

using namespace support;

using wide_complex = std::complex<wide>;
using wides = std::vector<wide_complex>;
using sizes = std::initializer_list<std::size_t>;
using routine = int32_t (*)(dsp_vec *);

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

double l2_error(const dsp_vec &v, const wides &expected) {
  const wides z = widened(v);
  if (z.size() != expected.size()) return HUGE_VAL;
  wide error = 0, whole = 0;
  for (std::size_t i = 0; i < z.size(); ++i) error += std::norm(z[i] - expected[i]), whole += std::norm(expected[i]);
  return static_cast<double>(sqrt(whole > 0 ? error / whole : error));
}

// Twice the unit of rounding for the root of the levels of the power of two behind it is promised of every length.
double limit(std::size_t n, double factor = 1) {
  const bool power = (n & (n - 1)) == 0;
  const auto levels = std::max(std::ceil(std::log2(static_cast<double>(power ? n : 2 * n - 2))), 1.0);
  return factor * (power ? 0.55 : 1.4) * std::numeric_limits<double>::epsilon() * std::sqrt(levels);
}

// Compares the result of every instruction set with the expected one.
void check(const record &x, routine run, const wides &expected, double error, bool is_complex, double dx) {
  on_each_isa([&] {
    record v = x;
    ASSERT_EQ(run(&v), 0);
    EXPECT_EQ(v.is_complex != 0, is_complex);
    EXPECT_LE(l2_error(v, expected), error);
    EXPECT_DOUBLE_EQ(v.dx, dx);
  });
}

int32_t fft(dsp_vec *v) { return dspi_fft(v, 0); }
int32_t unfft(dsp_vec *v) { return dspi_fft(v, 1); }
int32_t dft(dsp_vec *v) { return dspi_dft(v, 0); }
int32_t undft(dsp_vec *v) { return dspi_dft(v, -5); }
int32_t irdft_odd(dsp_vec *v) { return dspi_irdft(v, 1); }
int32_t irdft_even(dsp_vec *v) { return dspi_irdft(v, 0); }
int32_t dct(dsp_vec *v) { return dspi_dct(v, 0); }
int32_t undct(dsp_vec *v) { return dspi_dct(v, DSP_DCT_INVERSE); }
int32_t dct_normalised(dsp_vec *v) { return dspi_dct(v, DSP_DCT_NORMALISED); }
int32_t undct_normalised(dsp_vec *v) { return dspi_dct(v, DSP_DCT_INVERSE | DSP_DCT_NORMALISED); }

std::vector<std::size_t> lengths(std::size_t longest) {
  std::vector<std::size_t> n;
  for (std::size_t i = 1; i <= 130; ++i) n.push_back(i);
  for (std::size_t i = 131; i <= 300; i += 13) n.push_back(i);
  for (const std::size_t i :
       sizes{251, 256, 374, 512, 720, 1000, 1009, 1024, 2048, 4096, 8192, 16384, 32768, 65536, 73728})
    if (i <= longest) n.push_back(i);
  return n;
}

wides scaled(wides z, wide factor) {
  for (wide_complex &value : z) value *= factor;
  return z;
}

record rounded(const wides &z, bool is_complex, double dx) {
  complexes values;
  for (const wide_complex &value : z)
    values.emplace_back(static_cast<double>(value.real()), static_cast<double>(value.imag()));
  return signal_of(values, is_complex, dx);
}

TEST(Transforms, AgreeWithTheDefinition) {
  for (const std::size_t n : lengths(emulated ? 8192 : 73728))
    for (const bool is_complex : {false, true}) {
      SCOPED_TRACE(testing::Message() << n << (is_complex ? " complex" : " real"));
      const record x = random_signal(n, is_complex, 7, 0.25);
      const double spacing = 4.0 / static_cast<double>(n);
      const wides forward = transform_of(widened(x), -1), spectrum = scaled(forward, wide(1) / n);
      wides backward(n);
      for (std::size_t k = 0; k < n; ++k) backward[k] = forward[(n - k) % n];
      check(x, dft, spectrum, limit(n), is_complex || n > 1, spacing);
      check(x, undft, backward, limit(n), is_complex || n > 1, spacing);
      if (is_complex) continue;
      const wides half(spectrum.begin(), spectrum.begin() + static_cast<std::ptrdiff_t>(n / 2 + 1));
      check(x, dspi_rdft, half, limit(n), n > 1, spacing);
      record real = x;
      EXPECT_EQ(dspi_rdft(&real) == 0 && n > 1 ? real.data[1] : 0.0, 0.0);  // imaginary part of bin 0
      record bins = rounded(half, n > 1, spacing);
      if (n % 2 == 0) bins.data[1] = 0.25, bins.data[n + 1] = -0.5;  // belong to no real signal
      check(bins, n % 2 != 0 ? irdft_odd : irdft_even, widened(x), limit(n), false, 0.25);
      if (n % 16 == 0) dsp_free_internal();
    }
}

// The spectrum of a few impulses is a sum of a few roots.
TEST(Transforms, ErrLittleAtLargePrimes) {
  for (const std::size_t n : sizes{4099, 16381, 65521}) {
    const std::pair<std::size_t, complex> impulses[] = {{1, {1, 0.5}}, {n / 3, {-0.25, 1}}, {n - 2, {0.75, -1}}};
    complexes x(n);
    wides expected(n);
    for (const auto &[at, height] : impulses) {
      x[at] = height;
      for (std::size_t k = 0; k < n; ++k) expected[k] += wide_complex(height) * roots(n)[at * k % n] / wide(n);
    }
    check(record(x), dft, expected, limit(n, 0.55), true, 1.0 / static_cast<double>(n));
  }
}

TEST(Transforms, CosineHilbertAnalytic) {
  for (const std::size_t n : lengths(emulated ? 300 : 1009)) {
    SCOPED_TRACE(n);
    const record x = random_signal(n, false, 5, 0.25);
    wides doubled = widened(x), cosine(n), normalised(n);
    doubled.resize(2 * n);
    doubled = transform_of(doubled, -1);
    for (std::size_t k = 0; k < n; ++k) {
      cosine[k] = (doubled[k] * roots(4 * n)[k]).real() / n;
      normalised[k] = cosine[k] * (k == 0 ? sqrt(wide(2)) : 2);
    }
    const double spacing = 2.0 / static_cast<double>(n);
    check(x, dct, cosine, limit(n), false, spacing);
    check(x, dct_normalised, normalised, limit(n), false, spacing);
    check(rounded(cosine, false, spacing), undct, widened(x), limit(n, 1.25), false, 0.25);
    check(rounded(normalised, false, spacing), undct_normalised, widened(x), limit(n, 1.25), false, 0.25);
    for (const bool is_complex : {false, true}) {
      const record signal = random_signal(n, is_complex, 6, 0.25);
      wides turned = scaled(transform_of(widened(signal), -1), wide(1) / n), cut = turned;
      for (std::size_t k = 0; k < n; ++k) {
        const int side = k == 0 || 2 * k == n ? 0 : 2 * k < n ? 1 : -1;
        turned[k] *= wide_complex(0, -side);
        cut[k] *= 1 + side;
      }
      check(signal, dspi_hilbert, transform_of(turned, 1), limit(n, 2), is_complex, 0.25);
      check(signal, dspi_analytic, transform_of(cut, 1), limit(n, 2), is_complex || n > 1, 0.25);
    }
  }
}

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

TEST(Fft, KeepsTheLengthsUsedLast) {
  static dsp::fft::recent<int, 3, 1000> kept;
  void *block;
  for (const int key : {1, 2, 3}) *kept.add(key, 300, &block) = key;
  const auto has = [](std::initializer_list<int> keys) {
    bool all = true;
    for (const int key : {1, 2, 3, 4, 5, 6}) {
      const bool listed = std::find(keys.begin(), keys.end(), key) != keys.end();
      if ((kept.find(key) != nullptr) != listed || (listed && *kept.find(key) != key)) all = false;
    }
    return all;
  };
  EXPECT_TRUE(has({1, 2, 3}));
  *kept.add(4, 300, &block) = 4;
  EXPECT_TRUE(has({2, 3, 4})) << "the one unused for longest goes";
  *kept.add(5, 600, &block) = 5;
  EXPECT_TRUE(has({4, 5})) << "and as many as make room";
  *kept.add(6, 2000, &block) = 6;
  EXPECT_TRUE(has({6})) << "but a large one is kept alone";
  kept.release();
  EXPECT_TRUE(has({}));
}

TEST(Fft, RefusalsAndSpacing) {
  const struct {
    routine run;
    bool powers, reals;  // only
    double factor;       // of the spacing; 0: it stays
  } cases[] = {{fft, true, false, 1},           {unfft, true, false, 1},
               {dspi_bitrev, true, false, 0},   {dspi_bitrev_scale, true, false, 0},
               {dspi_rfft, true, true, 1},      {dspi_rdft, false, true, 1},
               {dft, false, false, 1},          {undft, false, false, 1},
               {irdft_even, false, false, 1},   {irdft_odd, false, false, 1},
               {dct, false, true, 0.5},         {undct_normalised, false, true, 0.5},
               {dspi_hilbert, false, false, 0}, {dspi_analytic, false, false, 0}};
  for (const auto &c : cases)
    for (const int32_t n : {-3, 0, 1, 2, 3, 4, 5, 6, 8, 9, 1023})
      for (const bool is_complex : {false, true})
        for (const double dx : {4.0, 0.0}) {
          SCOPED_TRACE(testing::Message() << &c - cases << " of " << n << " complex " << is_complex << " dx " << dx);
          record x = random_signal(static_cast<std::size_t>(std::max(n, 0)), is_complex, 1, dx);
          x.length = n;
          record v = x;
          v.length = n;
          const bool refused = (c.powers && (n < 1 || (n & (n - 1)) != 0)) || (c.reals && is_complex);
          ASSERT_EQ(c.run(&v), refused ? -1 : 0);
          if (refused) {
            EXPECT_TRUE(same(v, x));
          } else {
            const int32_t whole = std::max({n, v.length, 1});
            const double none = n < 1 ? 1e100 : c.factor * 1e100;  // a spacing of 0 stands for none
            EXPECT_DOUBLE_EQ(v.dx, c.factor == 0 ? dx : dx == 0 ? none : c.factor / (dx * whole));
          }
        }
  record v(reals{1, 2, 3});
  EXPECT_EQ(dspi_irfft(&v), 0);
  EXPECT_TRUE(near(v, reals{8, -2, 0, -2}, 0)) << "of a real spectrum";
  EXPECT_EQ(dspi_irfft(&v), -1);
  EXPECT_EQ(v.length, 6) << "no power of two";
  for (const int32_t n : {0, -3}) {
    v.length = n;
    EXPECT_EQ(dspi_irfft(&v), -1);
  }
  reals flat(8, 1.0);
  EXPECT_EQ(cf_dspi_fft(flat.data(), 2, 0, 0), -1);
  EXPECT_EQ(cf_dspi_fft(flat.data(), 1, 0, 0), 0);
  EXPECT_EQ(cf_dspi_fft(flat.data(), 4, 1, 0), 0);
  EXPECT_EQ(flat, (reals{1, 1, 0, 0, 0, 0, 0, 0}));
}

TEST(Fft, RefusesWhatIsTooLong) {
  for (const int32_t n : {huge, huge / 2, huge / 2 + 1, huge / 4 + 2})
    for (const routine run : {dft, irdft_even, irdft_odd, dspi_irfft}) {
      double few[4] = {};
      dsp_vec v = {1.0, few, 0, n, 1, 0};
      if (run == dft && ((n & (n - 1)) == 0 || n < huge / 2)) continue;
      EXPECT_EQ(run(&v), -1) << n;
      dsp_destroy(&v);
    }
}

TEST(Fft, BitReversal) {
  for (int bits = 0; bits <= 11; ++bits) {
    const std::size_t n = std::size_t{1} << bits;
    for (const bool is_complex : {false, true}) {
      const record x = random_signal(n, is_complex, 2, 3.0);
      complexes z = complexes_of(x), expected(n);
      for (std::size_t i = 0; i < n; ++i) {
        std::size_t j = 0;
        for (int b = 0; b < bits; ++b) j |= (i >> b & 1) << (bits - 1 - b);
        expected[j] = z[i];
      }
      record v = x;
      ASSERT_EQ(dspi_bitrev(&v), 0);
      EXPECT_EQ(complexes_of(v), expected) << n;
      ASSERT_EQ(dspi_bitrev_scale(&v), 0);
      for (complex &value : z) value /= static_cast<double>(n);
      EXPECT_EQ(complexes_of(v), z) << n;
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
