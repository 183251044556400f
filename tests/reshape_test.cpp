// Order, length, calculus and generators.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "dsp/core/quicksort.h"
#include "dsp/dsp.h"
#include "tests/support/record.h"
#include "tests/support/wide.h"

namespace {

using namespace support;

const double inf = std::numeric_limits<double>::infinity();
const double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double pi = 3.141592653589793;
constexpr double turn = 2 * pi;

using in_place = std::function<int32_t(dsp_vec *)>;

// Makes calls in place of a routine that takes more than the signal.
template <class... P>
auto calls_of(int32_t (*f)(dsp_vec *, P...)) {
  return [f](P... others) -> in_place { return [=](dsp_vec *v) { return f(v, others...); }; };
}
const auto zpad = calls_of(dspi_zpad);
const auto zpad2 = calls_of(dspi_zpad2);
const auto unzpad = calls_of(dspi_unzpad);
const auto shift = calls_of(dspi_shift);
const auto edge = calls_of(dspi_edge);
const auto orecon = calls_of(dspi_orecon);
const auto window = calls_of(dspi_unwrap_wnd);

TEST(Reshape, KnownValues) {
  const complex i(0, 1);
  const double r2 = std::sqrt(2.0);
  struct {
    in_place run;
    record in, out;
  } cases[] = {
      {shift(2), record(reals{1, 2, 3}, 4.0), record(reals{3}, 4.0)},
      {shift(-2), record(complexes{i, 2.}), record(complexes{i, 2.})},
      {shift(7), record(reals{1, 2, 3}), record(reals{})},
      {dspi_sort, record(reals{3, nan, -1, inf, -inf, nan, 2}), record(reals{-inf, -1, 2, 3, inf, nan, nan})},
      {dspi_sort, record(complexes{{3, 4}, {nan, 0}, {-5, 0}, {1e101, 0}, {0, 1e102}, {3, -4}, {1, 1}}),
       record(complexes{{1, 1}, {-5, 0}, {3, -4}, {3, 4}, {0, 1e102}, {1e101, 0}, {nan, 0}})},
      {zpad(4), record(complexes{i, 2}), record(complexes{i, 2, 0, 0})},
      {zpad(1), record(reals{1, 2}), record(reals{1, 2})},
      {zpad2(8, 0x102), record(reals{1, 2, 3}), record(reals{0, 0, 0, 1, 2, 3, 0, 0})},
      {zpad2(8, 0x302), record(reals{1, 2, 3}), record(reals{1, 2, 0, 0, 0, 0, 0, 3})},
      {zpad2(4, 0), record(reals{1, 1}), record(reals{2, 2, 0, 0})},
      {zpad2(4, 0x201), record(reals{1, 1}), record(reals{0, 0, r2, r2})},
      {zpad2(5, 0x7ffff8fa), record(complexes{1. + i, 2, 3}), record(complexes{1. + i, 2, 3, 0, 0})},
      {zpad2(3, 3), record(reals{1, 1, 1}), record(reals{1, 1, 1})},
      {unzpad(3, 0x302), record(reals{1, 2, 0, 0, 0, 0, 0, 3}), record(reals{1, 2, 3})},
      {unzpad(2, 0x200), record(reals{0, 0, 4, 8}), record(reals{2, 4})},
      {unzpad(3, 0x102), record(reals{0, 0, 0, 1, 2, 3, 0, 0}), record(reals{1, 2, 3})},
      {unzpad(-3, 0), record(reals{1, 2}), record(reals{})},
      {unzpad(2, 0x703), record(reals{1, 2}), record(reals{1, 2})},
      {dspi_recon, record(complexes{1, 2. + i, 3}), record(complexes{1, 2. + i, 3, 2. - i})},
      {dspi_recon, record(reals{1, 2}), record(reals{1, 2})},
      {orecon(1), record(complexes{1, 2. + i, 3. - i}), record(complexes{1, 2. + i, 3. - i, 3. + i, 2. - i})},
      {orecon(1), record(reals{1, 2}), record(reals{1, 2, 2})},
      {orecon(0), record(reals{1, 2}), record(reals{1, 2})},
      {orecon(0), record(reals{1, 2, 3, 4}), record(reals{1, 2, 3, 4, 3, 2})},
      {dspi_differ, record(complexes{1. + i, 3. + 3. * i}, 0.0),
       record(complexes{{1e100, 1e100}, {2e100, 2e100}}, 0.0)},
      {dspi_unwrap, record(reals{4}), record(reals{4 - turn})},
      {dspi_unwrap, record(reals{1, nan, 1 + turn, inf, 2}), record(reals{1, nan, 1, nan, 2})},
      {window(1), record(reals{1, 1 + turn}), record(reals{1, 1})},
      {window(0), record(reals{4, 8, 1}), record(reals{4 - turn, 8 - turn, 1})},
      {edge(3, 1), record(reals{0, 2, 0}, 3.0), record(reals{1.5, 4.5})},
      {edge(1, 1), record(reals{1, 2, 0, 1}), record(reals{0})},
      {edge(-2, 1), record(reals{1, 2, 1, 0, 1}), record(reals{2})},
      {edge(4, 1), record(reals{0, 2, 0}), record(reals{})},
      {edge(3, 1), record(reals{nan, 2, nan, 0}), record(reals{})},
  };
  for (auto &c : cases) {
    SCOPED_TRACE("case " + std::to_string(&c - cases));
    ASSERT_EQ(c.run(&c.in), 0);
    EXPECT_TRUE(same(c.in, c.out));
  }
}

TEST(Reshape, Refuses) {
  const record pair(reals{1, 2}), z(complexes{{4, 4}}, 2.0);
  for (const in_place &run : {zpad2(5, 3), zpad2(5, 0x402), unzpad(1, 3), unzpad(1, 0x502), window(-1)}) {
    record v(pair);
    EXPECT_EQ(run(&v), -1);
  }
  for (const in_place &run : {in_place(dspi_unwrap), window(2), edge(3, 0)}) {
    record v(z);
    EXPECT_EQ(run(&v), -1);
    EXPECT_TRUE(same(v, z));
  }
  record v(z);  // more doubles than can be counted
  EXPECT_EQ(dspi_zpad(&v, 0x7fffffff), -1);
  EXPECT_TRUE(v.data == nullptr && v.capacity == 0);
}

TEST(Reshape, CuttingUndoesPadding) {
  for (const bool is_complex : {false, true})
    for (int32_t old = 1; old < 9; ++old)
      for (int32_t longer = old + 1; longer < 20; ++longer)
        for (const int32_t place : {0x000, 0x100, 0x200, 0x300}) {
          SCOPED_TRACE(std::to_string(old) + " to " + std::to_string(longer) + " placed " + std::to_string(place));
          const record in = random_signal(static_cast<std::size_t>(old), is_complex, 5);
          record v(in);
          ASSERT_EQ(dspi_zpad2(&v, longer, place | 2), 0);
          const complexes padded = complexes_of(v), plain = complexes_of(in);
          ASSERT_EQ(padded.size(), static_cast<std::size_t>(longer));
          EXPECT_EQ(longer - old, std::count(padded.begin(), padded.end(), complex(0.0, 0.0)));
          if (place == 0x100) {
            EXPECT_EQ(padded[static_cast<std::size_t>(longer / 2)], plain[plain.size() / 2]);
          }
          ASSERT_EQ(dspi_unzpad(&v, old, place | 2), 0);
          EXPECT_TRUE(same(v, in));
          ASSERT_EQ(dspi_zpad2(&v, longer, place), 0);
          ASSERT_EQ(dspi_unzpad(&v, old, place), 0);
          EXPECT_TRUE(is_complex ? near(v, plain, 4e-16) : near(v, doubles_of(in), 4e-16));
        }
}

// What becomes of n samples whose spacing is 0.3, by the definition.
TEST(Reshape, KeepsToTheDefinitionsAtEveryLength) {
  const auto rotated = [](complexes z, std::size_t by) {
    std::rotate(z.begin(), z.begin() + static_cast<std::ptrdiff_t>(by), z.end());
    return z;
  };
  const struct {
    in_place run;
    std::function<complexes(const complexes &)> expected;
  } cases[] = {
      {dspi_rev, [](const complexes &z) { return complexes(z.rbegin(), z.rend()); }},
      {dspi_swap_halves, [&](const complexes &z) { return rotated(z, z.size() - z.size() / 2); }},
      {dspi_swap_halves2, [&](const complexes &z) { return rotated(z, z.size() / 2); }},
      {dspi_differ,
       [](complexes z) {
         for (std::size_t i = z.size(); i-- > 0;) z[i] = (z[i] - (i > 0 ? z[i - 1] : 0.0)) / 0.3;
         return z;
       }},
      {dspi_integ,
       [](complexes z) {
         std::partial_sum(z.begin(), z.end(), z.begin());
         for (complex &sum : z) sum *= 0.3;
         return z;
       }},
      {dspi_pdiffer,
       [](const complexes &z) {
         complexes derivative;
         for (std::size_t i = 1; i < z.size(); ++i) derivative.push_back(static_cast<double>(i) * z[i]);
         return derivative;
       }},
  };
  for (const auto &c : cases)
    for (const bool is_complex : {false, true})
      for (std::size_t n = 0; n < 46; ++n) {
        record v = random_signal(n, is_complex, 6, 0.3);
        const complexes expected = c.expected(complexes_of(v));
        ASSERT_EQ(c.run(&v), 0);
        EXPECT_TRUE(same(v, signal_of(expected, is_complex, 0.3))) << "case " << &c - cases << " of " << n;
      }
}

TEST(Reshape, SortsWhateverTheOrder) {
  std::mt19937 engine(7);
  for (const std::size_t n : {1u, 2u, 17u, 1000u, 30000u})
    for (int pattern = 0; pattern < 6; ++pattern) {
      reals x = random_reals(n, 8);
      if (pattern == 1) std::sort(x.begin(), x.end());
      if (pattern == 2) std::sort(x.rbegin(), x.rend());
      for (std::size_t i = 0; i < n; ++i) {
        if (pattern == 3) x[i] = 1.0;
        if (pattern == 4) x[i] = static_cast<double>(engine() % 4);
        if (pattern == 5) x[i] = static_cast<double>(std::min(i, n - i));
      }
      complexes z;
      for (const double re : x) z.emplace_back(re, std::floor(4 * re) / 4);
      record v(x), w(z);
      ASSERT_EQ(dspi_sort(&v), 0);
      ASSERT_EQ(dspi_sort(&w), 0);
      std::sort(x.begin(), x.end());
      std::sort(z.begin(), z.end(), [](complex a, complex b) {
        const auto p = [](complex c) { return c.real() * c.real() + c.imag() * c.imag(); };
        if (p(a) != p(b)) return p(a) < p(b);
        return a.real() != b.real() ? a.real() < b.real() : a.imag() < b.imag();
      });
      EXPECT_EQ(doubles_of(v), x);
      EXPECT_EQ(complexes_of(w), z);
    }
}

// An opponent that fixes values only as they are compared, so that every pivot turns out to be among the least.
TEST(Reshape, SortsInTimeWhateverThePivots) {
  constexpr std::size_t n = 4000, open = n;
  for (const bool selects : {false, true}) {
    std::vector<std::size_t> value(n, open), order(n);
    value[0] = value[2] = 1, value[1] = 0;  // sorting looks first whether it is needed
    std::size_t fixed = 2, candidate = 0, comparisons = 0;
    const auto before = [&](std::size_t a, std::size_t b) {
      ++comparisons;
      if (value[a] == open && value[b] == open) value[a == candidate ? a : b] = fixed++;
      if (value[a] == open) candidate = a;
      if (value[b] == open) candidate = b;
      return value[a] < value[b];
    };
    std::iota(order.begin(), order.end(), std::size_t{0});
    if (selects)
      dsp::select(order.data(), n, n / 2, before);
    else
      dsp::sort(order.data(), n, before);
    EXPECT_LT(comparisons, 80 * n);  // 40 n for a fair order
    for (std::size_t i = 1; i < n; ++i) {
      EXPECT_FALSE(i < n / 2 && before(order[n / 2], order[i]));
      ASSERT_FALSE(!selects && before(order[i], order[i - 1]));
    }
  }
}

// The definition, with fmod.
double unwrapped(double x, double reference) {
  const double d = x - reference;
  if (d >= -pi && d <= pi) return x;
  const double r = std::fmod(d, turn);
  return reference + (r > pi ? r - turn : r < -pi ? r + turn : r);
}

TEST(Calculus, UnwrapsToTheLastBit) {
  std::mt19937_64 engine(3);
  for (const double step : {0.01, 0.7, 2.0, 3.1, 5.0, 40.0, 1e7}) {
    reals x, expected;
    double phase = 0.0, last = 0.0;
    for (int i = 0; i < 3000; ++i) {
      phase += step * (static_cast<double>(engine() >> 11) * 0x1p-53 + (i < 2000 ? 0.3 : -0.8));
      const double corner[] = {pi, -pi, turn, 3 * pi, -3 * pi, -turn};
      x.push_back(i % 50 == 0   ? corner[engine() % 6]
                  : step > 1e6  ? phase
                  : step == 5.0 ? 1e8 + phase
                                : std::remainder(phase, turn));
      expected.push_back(last = unwrapped(x.back(), last));
    }
    record v(x);
    ASSERT_EQ(dspi_unwrap(&v), 0);
    EXPECT_EQ(doubles_of(v), expected) << step;
    if (step > 3.0) continue;
    for (const std::size_t size : {2u, 7u}) {
      record w(x);
      ASSERT_EQ(dspi_unwrap_wnd(&w, static_cast<int32_t>(size)), 0);
      const reals y = doubles_of(w);
      for (std::size_t i = 0; i < y.size(); ++i) {
        const std::size_t n = std::min(i, size);
        double mean = 0.0;
        for (std::size_t k = i - n; k < i; ++k) mean += y[k] / static_cast<double>(n);
        ASSERT_LE(std::abs(y[i] - mean), pi + 1e-9);
        ASSERT_NEAR(std::remainder(y[i] - x[i], turn), 0.0, 1e-10);
      }
    }
  }
}

// The largest distance from the exact rotation phase + w k, whose angle is a fraction of a turn.
double worst_error(const complexes &z, wide cycles, wide phase) {
  double worst = 0.0;
  for (std::size_t k = 0; k < z.size(); ++k) {
    const wide angle = 2 * wide_pi * fmod(cycles * k, 1) + phase;
    const std::complex<wide> exact = std::polar(wide(1), angle);
    worst = std::max(worst, static_cast<double>(std::abs(std::complex<wide>(z[k]) - exact)));
  }
  return worst;
}

record sized(int32_t n, bool is_complex, double dx = 1.0) {
  record v;
  v.length = n;
  v.is_complex = is_complex;
  v.dx = dx;
  return v;
}

TEST(Generators, KnownValues) {
  record line = sized(4, false, 0.5), cline = sized(2, true);
  ASSERT_EQ(dspc_line(&line, 2, 1), 0);
  ASSERT_EQ(dspc_line(&cline, -1, 3), 0);
  EXPECT_EQ(doubles_of(line), (reals{1, 2, 3, 4}));
  EXPECT_EQ(complexes_of(cline), (complexes{3, 2}));
  record tenths = sized(1000, false, 0.1);
  ASSERT_EQ(dspc_line(&tenths, 1, 0), 0);
  double sum = 0.0;
  for (int i = 0; i < 999; ++i) sum += 0.1;
  EXPECT_EQ(tenths.data[999], sum);
  record still = sized(3, true);
  ASSERT_EQ(dspc_cexp(&still, 0, pi / 2), 0);
  EXPECT_TRUE(near(still, complexes(3, complex(0, 1)), 1e-16));
  for (const bool is_complex : {false, true}) {
    record empty = sized(0, is_complex);
    for (const auto generate : {dspc_line, dspc_cos, dspc_cexp}) EXPECT_EQ(generate(&empty, 1, 1), 0);
    EXPECT_EQ(empty.is_complex != 0, is_complex);
    EXPECT_EQ(empty.data, nullptr);
  }
}

TEST(Generators, RotateAsExactlyAsTheirSeeds) {
  // Slow, ordinary, towards half a turn and beyond a turn; the angle per sample is a double, its cycles are wider.
  for (const double freq : {1e-9, 1e-3, 0.0317, 0.125, 0.25, 0.31, 0.4999, 0.5, 0.75, 1.3, 1000.3}) {
    const double w = 2 * pi * freq;
    const wide cycles = wide(w) / (2 * wide_pi);
    for (const int32_t n : {1, 9, 256, 257, 600}) {
      record z = sized(n, true), c = sized(n, false), cc = sized(n, true), added(reals(600, 0.5)),
             zadded = sized(n, true);
      ASSERT_EQ(dspc_cexp(&z, freq, 0.3), 0);
      // What w k loses in its rounding is the seeds', not the rotation's.
      const double rounding = 600 * w * 0x1p-53;
      EXPECT_LE(worst_error(complexes_of(z), cycles, 0.3), 6e-15 + rounding) << freq << " " << n;
      ASSERT_EQ(dspc_cos(&c, freq, 0.3), 0);
      ASSERT_EQ(dspc_cos(&cc, freq, 0.3), 0);
      dspi_zero(&zadded);
      added.length = n;
      ASSERT_EQ(dspi_addcos(&added, 1, freq, 2.0, 0.3), 0);
      ASSERT_EQ(dspi_addcos(&zadded, 1, freq, 1.0, 0.3), 0);
      EXPECT_EQ(complexes_of(zadded), complexes_of(z));
      ASSERT_EQ(dspi_addcos(&zadded, 2, freq, 1.0, 0.3), 0);
      for (int32_t i = 0; i < n; ++i) {
        ASSERT_EQ(c.data[i], z.data[2 * i]);
        ASSERT_EQ(complexes_of(cc)[static_cast<std::size_t>(i)], complex(c.data[i], 0.0));
        ASSERT_EQ(added.data[i], 0.5 + 2.0 * c.data[i]);
        ASSERT_EQ(zadded.data[2 * i], 2.0 * c.data[i]);
        ASSERT_EQ(zadded.data[2 * i + 1], z.data[2 * i + 1]);
      }
    }
  }
}

TEST(Generators, StayExactOverTenMillionSamples) {
  // An angle of 45 bits: the phase of every seed is exact.
  const int32_t n = 10000000;
  const double w = 0x1.2345678p-3;
  record c = sized(n, false, w / turn);
  ASSERT_EQ(turn * c.dx, w);
  ASSERT_EQ(dspc_cos(&c, 1, 0), 0);
  double worst = 0.0;
  for (int32_t i = 0; i < n; i += 7) worst = std::max(worst, std::abs(c.data[i] - std::cos(w * i)));
  EXPECT_LE(worst, 5e-15);
}

}  // namespace
