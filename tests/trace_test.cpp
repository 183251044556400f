// Trace helpers on plain arrays, and the modes of the floating-point unit.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <thread>

#include "dsp/dsp.h"
#include "tests/support/each_isa.h"
#include "tests/support/record.h"

namespace {

using namespace support;

const double pi = std::acos(-1.0);
const double inf = std::numeric_limits<double>::infinity();
const double nan = std::nan("");
const int32_t huge = std::numeric_limits<int32_t>::max();

dsp_complex *points(complexes &z) { return reinterpret_cast<dsp_complex *>(z.data()); }
const dsp_complex *points(const complexes &z) { return reinterpret_cast<const dsp_complex *>(z.data()); }

TEST(Scale, EveryLengthOnEveryInstructionSet) {
  reals x = random_reals(72, 3);
  const double special[] = {nan, inf, -inf, 1e300, -1e300};
  std::copy(std::begin(special), std::end(special), x.begin() + 30);
  const auto as_reals = [](const auto &numbers) { return record(reals(numbers.begin(), numbers.end())); };
  on_each_isa([&] {
    for (int32_t n = -2; n < 70; ++n) {
      reals scaled = x, scaled_by_one = x, mapped(72, -9.0), mapped_by_one = mapped;
      std::vector<float> single(x.begin(), x.end()), single_by_one = single;
      std::vector<int32_t> integers(72, 77), integers_by_one = integers;
      for (std::size_t i = 0; static_cast<int32_t>(i) < n; ++i) {
        scaled_by_one[i] *= 1.7;
        single_by_one[i] *= 1.7f;
        mapped_by_one[i] = 10.0 + (-3.0 - 10.0) / (2.0 - -0.5) * (x[i] - -0.5);
        const double v = -900 + 1900.0 / 1.25 * (x[i] + 0.5);
        integers_by_one[i] = std::isnan(v) ? 0 : static_cast<int32_t>(std::clamp(v, -huge - 1.0, huge + 0.0));
      }
      vfpdbMul1(1.7, scaled.data(), n);
      vfpsbMul2(1.7f, single.data(), n);
      vfpdb_ScaleToFP(x.data(), n, -0.5, 2.0, mapped.data(), 10.0, -3.0);
      vfpdb_ScaleToInt(x.data(), n, -0.5, 0.75, integers.data(), -900, 1000);
      EXPECT_TRUE(same(as_reals(scaled), as_reals(scaled_by_one))) << n;
      EXPECT_TRUE(same(as_reals(single), as_reals(single_by_one))) << n;
      EXPECT_TRUE(same(as_reals(mapped), as_reals(mapped_by_one))) << n;
      EXPECT_EQ(integers, integers_by_one) << n;
    }
  });
  const double half = 0.5;
  int32_t out = 9;
  vfpdb_ScaleToInt2(&half, 1, 0.0, 1.0, &out, -huge - 1, huge);
  EXPECT_EQ(out, 0);
}

TEST(Axis, EndsAreExact) {
  for (const int32_t n : {0, -3, 1, 2, 3, 50}) {
    reals linear(51, -1.0), log(linear);
    vfpd_ExpandLinear(linear.data(), n, 0.1, 0.7);
    vfpd_ExpandLog(log.data(), n, 10.0, 1e5);
    for (int32_t i = 0; i < 51; ++i) {
      const auto at = static_cast<std::size_t>(i);
      const double part = n > 1 ? i / (n - 1.0) : 0.0;
      const bool is_end = i == 0 || i == n - 1;
      EXPECT_NEAR(linear[at], i < n ? 0.1 + 0.6 * part : -1.0, is_end ? 0.0 : 2e-16);
      EXPECT_NEAR(log[at], i < n ? std::pow(10.0, 1.0 + 4.0 * part) : -1.0, is_end ? 0.0 : 1e-9);
    }
  }
  for (const auto &[first, last] : {std::pair{0.0, 1.0}, {1.0, -1.0}, {nan, 1.0}}) {
    reals out(3, 5.0);
    vfpd_ExpandLog(out.data(), 3, first, last);
    EXPECT_EQ(out, reals(3, 5.0));
  }
}

// The search as dsp.h describes it, index by index.
int32_t plain_search(const reals &x, int32_t start, int32_t stop, int32_t lo, int32_t hi, double sign) {
  const auto skipped = [lo, hi](int32_t i) { return i >= lo && i < hi; };
  if (skipped(start) && hi >= stop) return -1;
  int32_t best = skipped(start) ? hi : start;
  for (int32_t j = best + 1; j < stop; ++j)
    if (!skipped(j) && sign * x[static_cast<std::size_t>(j)] > sign * x[static_cast<std::size_t>(best)]) best = j;
  return best;
}

TEST(Extremes, AgainstAPlainSearch) {
  on_each_isa([] {
    for (const std::size_t n : {1u, 2u, 7u, 40u, 700u, 1601u})
      for (unsigned seed = 0; seed < 40; ++seed) {
        reals x = random_reals(n, seed);
        const reals choice = random_reals(8, seed + 100);
        const auto place = [&](std::size_t k, double scale) {
          return static_cast<int32_t>((choice[k] + 1.0) * scale * static_cast<double>(n));
        };
        for (double &v : x) v = seed % 3 == 0 ? std::round(3.0 * v) : v;  // with ties
        if (seed % 4 == 1) x[static_cast<std::size_t>(place(0, 0.49))] = nan;
        if (seed % 5 == 1) x[static_cast<std::size_t>(place(6, 0.49))] = seed % 2 == 0 ? inf : -inf;
        const int32_t start = place(1, 0.2), stop = seed % 2 == 0 ? static_cast<int32_t>(n) : place(2, 0.49);
        const int32_t lo = place(3, 0.6) - 3, hi = place(4, 0.6) - 1;
        EXPECT_EQ(vfpd_FindMax(x.data(), start, stop), plain_search(x, start, stop, 0, 0, 1.0));
        EXPECT_EQ(vfpd_FindMax2(x.data(), start, stop, lo, hi), plain_search(x, start, stop, lo, hi, 1.0));
        EXPECT_EQ(vfpd_FindMin2(x.data(), start, stop, lo, hi), plain_search(x, start, stop, lo, hi, -1.0));
        double &first = x[static_cast<std::size_t>(start)] = std::numeric_limits<double>::max();
        const int32_t least = plain_search(x, start, stop, 0, 0, -1.0);
        first = -inf;  // never a minimum's candidate
        EXPECT_EQ(vfpd_FindMin(x.data(), start, stop), least);
      }
  });
  for (const auto find : {vfpd_FindMax, vfpd_FindMin})
    for (const auto &[start, stop] : {std::pair(7, 8), {huge, -5}}) EXPECT_EQ(find(nullptr, start, stop), start);
  EXPECT_EQ(vfpd_FindMin2(nullptr, 7, 7, 9, 3), 7);
}

double mean_of(const reals &x, int32_t i, int32_t h) {
  long double sum = 0;
  for (int32_t j = i - h; j <= i + h; ++j) sum += x[static_cast<std::size_t>(j)];
  return static_cast<double>(sum / (2 * h + 1));
}

TEST(Smooth, MeansOfWindowsThatShrinkAtTheEnds) {
  const int32_t n = 600;
  const reals x = random_reals(600, 5);
  const complexes z = random_complexes(600, 8);
  reals magnitudes, phases, turning, wrapped;
  for (const complex &v : z) {
    magnitudes.push_back(std::abs(v));
    phases.push_back(std::arg(v));
    turning.push_back(40 * std::sin(0.07 * static_cast<double>(turning.size())));
    wrapped.push_back(std::remainder(turning.back(), 2 * pi));
  }
  for (const int32_t width : {3, 5, 21, 401})
    for (const auto &[start, stop] :
         {std::pair{0, 600}, {0, 300}, {20, 41}, {7, 8}, {598, 600}, {0, 900}, {700, 900}}) {
      reals means(600, 9.0), out = means, mean_phases = means, phases_out = means;
      complexes polar(600, 9.0), polar_out = polar;
      int32_t count = 0;
      for (int32_t i = start; i < std::min(stop, n); ++i, ++count) {
        const int32_t h = std::min({width / 2, i, n - 1 - i});
        if (i + h >= stop) break;
        const auto at = static_cast<std::size_t>(i);
        means[at] = mean_of(x, i, h);
        mean_phases[at] = std::remainder(mean_of(turning, i, h), 2 * pi);
        polar[at] = std::polar(mean_of(magnitudes, i, h), mean_of(phases, i, h));
      }
      EXPECT_EQ(vfpd_Smooth(x.data(), out.data(), n, start, stop, width, 0), count);
      EXPECT_EQ(vfpd_Smooth(wrapped.data(), phases_out.data(), n, start, stop, width, 1), count);
      EXPECT_EQ(vfpd_SmoothCpx(points(z), points(polar_out), n, start, stop, width), count);
      EXPECT_TRUE(near(record(out), means, 1e-15));
      EXPECT_TRUE(near(record(phases_out), mean_phases, 1e-13));
      EXPECT_TRUE(near(record(polar_out), polar, 1e-14));
    }
  const int32_t corners[][4] = {{0, 10, 4, -1}, {0, 10, 1, -1},  {0, 10, -3, -1},       {-1, 10, 5, -1},
                                {5, 4, 5, -1},  {1, -9, 5, -1},  {3, 3, 4, 0},          {-7, -7, 5, 0},
                                {0, 5, 5, 3},   {2, huge, 5, 8}, {huge - 1, huge, 3, 0}};
  for (const auto &[start, stop, width, expected] : corners) {
    reals out(10);
    complexes cpx(10);
    for (const int32_t is_phase : {0, 1})
      EXPECT_EQ(vfpd_Smooth(x.data(), out.data(), 10, start, stop, width, is_phase), expected) << start << ' ' << stop;
    EXPECT_EQ(vfpd_SmoothCpx(points(z), points(cpx), 10, start, stop, width), expected);
  }
  for (const double step : {-pi, pi}) {  // half a turn is none
    const reals in = {0, step, step};
    reals out(3);
    EXPECT_EQ(vfpd_Smooth(in.data(), out.data(), 3, 1, 3, 3, 1), 2);
    EXPECT_EQ(out[1], 2 * step / 3);
  }
}

TEST(Smooth, LeavesNothingOfASampleBehind) {
  on_each_isa([] {
    reals x(400, 1.0), out(400), expected;
    const std::pair<std::size_t, double> specials[] = {{9, nan},    {20, 1e17}, {30, inf},  {35, -inf},
                                                       {36, 1e308}, {51, inf},  {52, -inf}, {300, 1e300}};
    for (const auto &[at, value] : specials) x[at] = value;
    x[399] = 1e-9;  // the ends stay as they are
    for (int32_t i = 0; i < 400; ++i) {
      const int32_t h = std::min({2, i, 399 - i});
      double sum = 0;
      for (int32_t j = i - h; j <= i + h; ++j) sum += x[static_cast<std::size_t>(j)];
      expected.push_back(sum / (2 * h + 1));
    }
    EXPECT_EQ(vfpd_Smooth(x.data(), out.data(), 400, 0, 400, 5, 0), 400);
    EXPECT_TRUE(same(record(out), record(expected)));
  });
}

TEST(Format, EachFormatOnEachInstructionSet) {
  complexes z = random_complexes(37, 4);
  for (const complex special : {complex(0, 0), {1, 0}, {0, 1}, {0.999998, 0}, {-3, 4}, {nan, 0}, {inf, 0}})
    z.push_back(special);
  const auto n = static_cast<int32_t>(z.size());
  on_each_isa([&] {
    for (uint32_t format = 0; format < 7; ++format) {
      reals out(z.size(), 9.0), expected = out;
      vfpd_FormatBuffer(format, points(z), out.data(), 2, n - 1);
      vfpd_FormatBuffer(format, points(z), out.data(), n, 0);
      for (std::size_t i = 2; format < 5 && i + 1 < z.size(); ++i) {
        const double p = z[i].real() * z[i].real() + z[i].imag() * z[i].imag(), r = std::sqrt(p);
        const double formats[] = {10 * std::log10(p), r, std::atan2(z[i].imag(), z[i].real()) * 57.29577951307855,
                                  r > 0.999998 ? 1e6 : (1 + r) / (1 - r), -10 * std::log10(p)};
        expected[i] = formats[format];
      }
      EXPECT_TRUE(near(record(out), expected, 0.0)) << format;
    }
  });
}

TEST(Unwrap, PiecesContinueTheWhole) {
  const int32_t n = 130;
  complexes z;
  reals expected = {100.0};  // lies before the trace and must not be read
  for (int i = 0; i < n; ++i) {
    expected.push_back(i - 0.011 * i * i);
    z.push_back(std::polar(0.5, expected.back()));
  }
  for (const int32_t step : {1, 2, 13, n}) {
    reals out(expected.size(), 100.0);
    for (int32_t i = 0; i < n; i += step) vfpd_UnwrapPhase(points(z), i, i + step, out.data() + 1);
    EXPECT_TRUE(near(record(out), expected, 1e-12)) << step;
  }
  for (const double odd : {1e300, -1e300, inf, nan}) {
    reals out = {0.25, odd, 7, 7, 7};
    vfpd_UnwrapPhase(points(z), 2, 4, out.data());
    vfpd_UnwrapPhase(points(z), 4, 4, out.data());
    EXPECT_TRUE(std::isfinite(out[3]) && out[4] == 7) << odd;
  }
}

TEST(FpuModes, SwitchTheUnit) {
  volatile double tiny = std::numeric_limits<double>::min(), half = 0.5, one = 1.0, third = 3.0, subnormal = 5e-324;
  // On ARM arithmetic sets flags in the same register.
  const auto modes = [](uint32_t word) { return word & 0x07ffff00u; };
  const uint32_t before = modes(get_fpscr()), run_fast = 3u << 24;
  EXPECT_NE(tiny * half, 0.0);
  EXPECT_EQ(modes(set_runfast(1)), before | run_fast);
  EXPECT_EQ(modes(get_fpscr()), before | run_fast);
  volatile double made = tiny * half, read = subnormal * 0x1p1000;
#if !defined(__EMSCRIPTEN__)  // has no threads
  std::thread([] { set_fpscr(get_fpscr() & ~(1u << 24)); }).join();
#endif
  volatile double after_thread = tiny * half;
  EXPECT_EQ(modes(set_runfast(0)), before & ~run_fast);
  EXPECT_NE(tiny * half, 0.0);
  const bool has_modes = made == 0.0;
#if defined(__SSE2_MATH__) || defined(__aarch64__) || defined(__arm__)
  ASSERT_TRUE(has_modes);
#endif
  EXPECT_EQ(read == 0.0, has_modes);
  EXPECT_EQ(after_thread == 0.0, has_modes);
  const double nearest = one / third, up = has_modes ? std::nextafter(nearest, 1.0) : nearest;
  const double expected[] = {nearest, up, nearest, nearest};  // nearest lies below 1/3
  double rounded[4];
  for (uint32_t mode = 0; mode < 4; ++mode) {
    set_fpscr(mode << 22);
    rounded[mode] = one / third;
  }
  EXPECT_EQ(modes(set_fpscr(before)), 3u << 22);
  EXPECT_EQ(modes(get_fpscr()), before);
  for (int mode = 0; mode < 4; ++mode) EXPECT_EQ(rounded[mode], expected[mode]) << mode;
}

}  // namespace
