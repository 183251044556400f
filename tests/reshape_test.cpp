// Order, length, calculus and generators.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <numeric>
#include <random>
#include <string>
#include <tuple>
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
const auto line = calls_of(dspc_line);
const auto rotation = calls_of(dspc_cexp);

record sized(int32_t n, bool is_complex, double dx = 1.0) {
  record v;
  v.length = n;
  v.is_complex = is_complex;
  v.dx = dx;
  return v;
}

TEST(Reshape, KnownValues) {
  const complex i(0, 1);
  const double r2 = std::sqrt(2.0);
  struct {
    in_place run;
    record in, out;
  } cases[] = {
      {shift(2), record(reals{1, 2, 3}, 4.0), record(reals{3}, 4.0)},
      {shift(-2), complexes{i, 2.}, complexes{i, 2.}},
      {shift(7), reals{1, 2, 3}, reals{}},
      {dspi_sort, reals{3, nan, -1, inf, -inf, nan, 2}, reals{-inf, -1, 2, 3, inf, nan, nan}},
      {dspi_sort, complexes{{3, 4}, {nan, 0}, {-5, 0}, {1e101, 0}, {0, 1e102}, {3, -4}, {1, 1}},
       complexes{{1, 1}, {-5, 0}, {3, -4}, {3, 4}, {0, 1e102}, {1e101, 0}, {nan, 0}}},
      {zpad(4), complexes{i, 2}, complexes{i, 2, 0, 0}},
      {zpad(1), reals{1, 2}, reals{1, 2}},
      {zpad2(8, 0x102), reals{1, 2, 3}, reals{0, 0, 0, 1, 2, 3, 0, 0}},
      {zpad2(8, 0x302), reals{1, 2, 3}, reals{1, 2, 0, 0, 0, 0, 0, 3}},
      {zpad2(4, 0), reals{1, 1}, reals{2, 2, 0, 0}},
      {zpad2(4, 0x201), reals{1, 1}, reals{0, 0, r2, r2}},
      {zpad2(5, 0x7ffff8fa), complexes{1. + i, 2, 3}, complexes{1. + i, 2, 3, 0, 0}},
      {zpad2(3, 3), reals{1, 1, 1}, reals{1, 1, 1}},
      {unzpad(3, 0x302), reals{1, 2, 0, 0, 0, 0, 0, 3}, reals{1, 2, 3}},
      {unzpad(2, 0x200), reals{0, 0, 4, 8}, reals{2, 4}},
      {unzpad(3, 0x102), reals{0, 0, 0, 1, 2, 3, 0, 0}, reals{1, 2, 3}},
      {unzpad(-3, 0), reals{1, 2}, reals{}},
      {unzpad(2, 0x703), reals{1, 2}, reals{1, 2}},
      {dspi_recon, complexes{1, 2. + i, 3}, complexes{1, 2. + i, 3, 2. - i}},
      {dspi_recon, reals{1, 2}, reals{1, 2}},
      {orecon(1), complexes{1, 2. + i, 3. - i}, complexes{1, 2. + i, 3. - i, 3. + i, 2. - i}},
      {orecon(1), reals{1, 2}, reals{1, 2, 2}},
      {orecon(0), reals{1, 2}, reals{1, 2}},
      {orecon(0), reals{1, 2, 3, 4}, reals{1, 2, 3, 4, 3, 2}},
      {dspi_differ, record(complexes{1. + i, 3. + 3. * i}, 0.0),
       record(complexes{{1e100, 1e100}, {2e100, 2e100}}, 0.0)},
      {dspi_unwrap, reals{4}, reals{4 - turn}},
      {dspi_unwrap, reals{1, nan, 1 + turn, inf, 2}, reals{1, nan, 1, nan, 2}},
      {window(1), reals{1, 1 + turn}, reals{1, 1}},
      {window(0), reals{4, 8, 1}, reals{4 - turn, 8 - turn, 1}},
      {edge(3, 1), record(reals{0, 2, 0}, 3.0), reals{1.5, 4.5}},
      {edge(1, 1), reals{1, 2, 0, 1}, reals{0}},
      {edge(-2, 1), reals{1, 2, 1, 0, 1}, reals{2}},
      {edge(4, 1), reals{0, 2, 0}, reals{}},
      {edge(3, 1), reals{nan, 2, nan, 0}, reals{}},
      {line(2, 1), sized(4, false, 0.5), record(reals{1, 2, 3, 4}, 0.5)},
      {line(-1, 3), sized(2, true), complexes{3, 2}},
      {line(1, 0), sized(9, false, 0.1),
       record(reals{0, 0.1, 0.2, 0.1 + 0.2, 0.4, 0.5, 0.6, 0.7, 0.7999999999999999}, 0.1)},
      {rotation(0, 0), sized(2, true), complexes{1, 1}},
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
          const complexes padded = complexes_of(v);
          EXPECT_EQ(longer - old, std::count(padded.begin(), padded.end(), complex(0.0, 0.0)));
          EXPECT_TRUE(place != 0x100 || padded.begin()[longer / 2] == complexes_of(in).begin()[old / 2]);
          ASSERT_EQ(dspi_unzpad(&v, old, place | 2), 0);
          EXPECT_TRUE(same(v, in));
          ASSERT_EQ(dspi_zpad2(&v, longer, place) | dspi_unzpad(&v, old, place), 0);
          EXPECT_TRUE(near(v, in, 4e-16));
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
  for (const int n : {1, 2, 17, 1000, 30000})
    for (int pattern = 0; pattern < 6; ++pattern) {
      reals x;
      complexes z;
      for (int i = 0; i < n; ++i) {
        const auto any = static_cast<int>(engine() % 1000000);
        const int value[] = {any, i, n - i, 1, any % 4, std::min(i, n - i)};
        x.push_back(value[pattern] / 1e6);
        z.emplace_back(x.back(), any % 3);
      }
      record v(x), w(z);
      ASSERT_EQ(dspi_sort(&v) | dspi_sort(&w), 0);
      std::sort(x.begin(), x.end());
      const auto rank = [](complex c) { return std::make_tuple(std::norm(c), c.real(), c.imag()); };
      std::sort(z.begin(), z.end(), [&](complex a, complex b) { return rank(a) < rank(b); });
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
    for (std::size_t i = 0; i < n / 2; ++i) ASSERT_FALSE(before(order[n / 2], order[i]));
    for (const std::size_t looks : {n - 1, n + 1}) {  // what is in order, or in the opposite one, is only looked at
      if (selects) continue;
      EXPECT_TRUE(std::is_sorted(order.begin(), order.end(), before));
      if (looks > n) std::reverse(order.begin(), order.end());
      comparisons = 0;
      dsp::sort(order.data(), n, before);
      EXPECT_LE(comparisons, looks);
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

TEST(Generators, RotateAsExactlyAsTheirSeeds) {
  // Slow, ordinary, towards half a turn and beyond a turn; the angle per sample is a double, its cycles are wider.
  for (const double freq : {1e-9, 1e-3, 0.0317, 0.125, 0.25, 0.31, 0.4999, 0.5, 0.75, 1.3, 1000.3})
    for (const int32_t n : {1, 9, 256, 257, 600}) {
      const double w = 2 * pi * freq;
      record z = sized(n, true), c = sized(n, false), cc = sized(n, true), added(reals(600, 0.5)),
             zadded = sized(n, true);
      added.length = n;
      ASSERT_EQ(dspc_cexp(&z, freq, 0.3) | dspc_cos(&c, freq, 0.3) | dspc_cos(&cc, freq, 0.3) | dspi_zero(&zadded) |
                    dspi_addcos(&added, 1, freq, 2.0, 0.3) | dspi_addcos(&zadded, 1, freq, 1.0, 0.3) |
                    dspi_addcos(&zadded, 2, freq, 1.0, 0.3),
                0);
      // What w k loses in its rounding is the seeds', not the rotation's.
      const double rounding = 600 * w * 0x1p-53;
      EXPECT_LE(worst_error(complexes_of(z), wide(w) / (2 * wide_pi), 0.3), 6e-15 + rounding) << freq << " " << n;
      complexes cosines, twice;
      reals sums;
      for (const complex e : complexes_of(z)) {
        cosines.push_back(e.real());
        twice.emplace_back(2 * e.real(), e.imag());
        sums.push_back(0.5 + 2 * e.real());
      }
      EXPECT_TRUE(same(c, signal_of(cosines, false)) && same(cc, record(cosines)));
      EXPECT_TRUE(same(added, record(sums)) && same(zadded, record(twice)));
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
