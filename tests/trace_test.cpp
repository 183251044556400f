// Trace helpers on plain arrays, and the modes of the floating-point unit.
#include <gtest/gtest.h>

#include <cfenv>
#include <cmath>
#include <complex>
#include <limits>
#include <thread>

#include "dsp/dsp.h"
#include "tests/support/each_isa.h"
#include "tests/support/record.h"

namespace {

using support::complexes;
using support::near;
using support::on_each_isa;
using support::reals;
using support::record;

const double pi = std::acos(-1.0);
const double inf = std::numeric_limits<double>::infinity();
const double nan = std::nan("");
const int32_t huge = std::numeric_limits<int32_t>::max();

dsp_complex *points(complexes &z) { return reinterpret_cast<dsp_complex *>(z.data()); }
const dsp_complex *points(const complexes &z) { return reinterpret_cast<const dsp_complex *>(z.data()); }

TEST(Scale, EveryLengthOnEveryInstructionSet) {
  on_each_isa([] {
    for (int32_t n = -2; n < 70; ++n) {
      const auto size = static_cast<std::size_t>(n + 4);
      const reals x = support::random_reals(size, 3);
      reals one = x, two = x, mapped = x, fresh(size, -9.0);
      std::vector<float> single(x.begin(), x.end());
      std::vector<int32_t> integers(size, 77), integers2(size, 77);
      vfpdbMul1(1.7, one.data(), n);
      vfpdbMul2(1.7, two.data(), n);
      vfpsbMul2(1.7f, single.data(), n);
      vfpdb_ScaleToFP(x.data(), n, -0.5, 2.0, fresh.data(), 10.0, -3.0);
      vfpdb_ScaleToFP(mapped.data(), n, -0.5, 2.0, mapped.data(), 10.0, -3.0);
      vfpdb_ScaleToInt(x.data(), n, -0.5, 0.75, integers.data(), -900, 1000);
      vfpdb_ScaleToInt2(x.data(), n, -0.5, 0.75, integers2.data(), -900, 1000);
      for (std::size_t i = 0; i < size; ++i) {
        const bool in = static_cast<int32_t>(i) < n;
        EXPECT_EQ(one[i], in ? 1.7 * x[i] : x[i]);
        EXPECT_EQ(two[i], one[i]);
        EXPECT_EQ(single[i], in ? 1.7f * static_cast<float>(x[i]) : static_cast<float>(x[i]));
        const double to = 10.0 + (-3.0 - 10.0) / (2.0 - -0.5) * (x[i] - -0.5);
        EXPECT_EQ(fresh[i], in ? to : -9.0);
        EXPECT_EQ(mapped[i], in ? to : x[i]);
        EXPECT_EQ(integers[i], in ? static_cast<int32_t>(-900 + 1900.0 / 1.25 * (x[i] + 0.5)) : 77);
        EXPECT_EQ(integers2[i], integers[i]);
      }
    }
  });
}

TEST(Scale, IntegersSaturateAndTruncate) {
  const reals x = {0.5, -0.5, 1e300, -1e300, inf, -inf, nan, 0.999};
  std::vector<int32_t> out(x.size());
  on_each_isa([&] {
    vfpdb_ScaleToInt2(x.data(), 8, 0.0, 1.0, out.data(), 0, 255);
    EXPECT_EQ(out, (std::vector<int32_t>{127, -127, huge, -huge - 1, huge, -huge - 1, 0, 254}));
    vfpdb_ScaleToInt(x.data(), 8, 0.0, 1.0, out.data(), -huge - 1, huge);
    EXPECT_EQ(out[0], 0);
    vfpdb_ScaleToInt(x.data(), 2, 0.5, 0.5, out.data(), 0, 255);
    EXPECT_EQ(out[0], 0);
    EXPECT_EQ(out[1], -huge - 1);
  });
}

TEST(Axis, EndsAreExact) {
  for (const int32_t n : {0, -3, 1, 2, 3, 50}) {
    reals linear(51, -1.0), log(51, -1.0);
    vfpd_ExpandLinear(linear.data(), n, 0.1, 0.7);
    vfpd_ExpandLog(log.data(), n, 10.0, 1e5);
    for (int32_t i = 0; i < 51; ++i) {
      const auto at = static_cast<std::size_t>(i);
      const double part = n > 1 ? i / (n - 1.0) : 0.0;
      EXPECT_NEAR(linear[at], i < n ? 0.1 + 0.6 * part : -1.0, 2e-16);
      EXPECT_NEAR(log[at], i < n ? 10.0 * std::exp(part * std::log(1e4)) : -1.0, 1e-9);
    }
    if (n < 1) continue;
    EXPECT_EQ(linear[static_cast<std::size_t>(n - 1)], n > 1 ? 0.7 : 0.1);
    EXPECT_EQ(log[static_cast<std::size_t>(n - 1)], n > 1 ? 1e5 : 10.0);
  }
  for (const auto &[first, last] : {std::pair{0.0, 1.0}, {1.0, -1.0}, {nan, 1.0}}) {
    reals out(3, 5.0);
    vfpd_ExpandLog(out.data(), 3, first, last);
    EXPECT_EQ(out, reals(3, 5.0));
  }
}

// The search as it is told, index by index.
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
        reals x = support::random_reals(n, seed);
        const reals choice = support::random_reals(8, seed + 100);
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
        x[static_cast<std::size_t>(start)] = std::numeric_limits<double>::max();  // never a minimum's candidate
        const int32_t least = plain_search(x, start, stop, 0, 0, -1.0);
        EXPECT_EQ(vfpd_FindMin(x.data(), start, stop), least);
        x[static_cast<std::size_t>(start)] = -inf;
        EXPECT_EQ(vfpd_FindMin(x.data(), start, stop), least);
      }
  });
  const reals x = {5, 5, 1};
  EXPECT_EQ(vfpd_FindMax(x.data(), 0, 3), 0);
  EXPECT_EQ(vfpd_FindMax2(x.data(), 0, 3, 0, 3), -1);
  for (const auto find : {vfpd_FindMax, vfpd_FindMin}) {
    EXPECT_EQ(find(nullptr, 7, 8), 7);
    EXPECT_EQ(find(nullptr, huge, -5), huge);
  }
  EXPECT_EQ(vfpd_FindMin2(nullptr, 7, 7, 9, 3), 7);
}

double mean_of(const reals &x, int32_t i, int32_t h) {
  long double sum = 0;
  for (int32_t j = i - h; j <= i + h; ++j) sum += x[static_cast<std::size_t>(j)];
  return static_cast<double>(sum / (2 * h + 1));
}

TEST(Smooth, MeansOfWindowsThatShrinkAtTheEnds) {
  const int32_t n = 60;
  const reals x = support::random_reals(60, 5);
  for (const int32_t width : {3, 5, 21, 101})
    for (const auto &[start, stop] : {std::pair{0, 60}, {0, 30}, {20, 41}, {7, 8}, {58, 60}, {0, 90}, {70, 90}}) {
      reals out(60, 9.0), means = out;
      const int32_t written = vfpd_Smooth(x.data(), out.data(), n, start, stop, width, 0);
      int32_t expected = 0;
      for (int32_t i = start; i < std::min(stop, n); ++i, ++expected) {
        const int32_t h = std::min({width / 2, i, n - 1 - i});
        if (i + h >= stop) break;
        means[static_cast<std::size_t>(i)] = mean_of(x, i, h);
      }
      EXPECT_EQ(written, expected);
      EXPECT_TRUE(near(record(out), means, 1e-15));
    }
  const int32_t corners[][4] = {{0, 10, 4, -1}, {0, 10, 1, -1},  {0, 10, -3, -1},       {-1, 10, 5, -1},
                                {5, 4, 5, -1},  {1, -9, 5, -1},  {3, 3, 4, 0},          {-7, -7, 5, 0},
                                {0, 5, 5, 3},   {2, huge, 5, 8}, {huge - 1, huge, 3, 0}};
  for (const auto &[start, stop, width, expected] : corners) {
    reals out(10);
    complexes in(10), cpx(10);
    EXPECT_EQ(vfpd_Smooth(x.data(), out.data(), 10, start, stop, width, 0), expected) << start << " " << stop;
    EXPECT_EQ(vfpd_Smooth(x.data(), out.data(), 10, start, stop, width, 1), expected);
    EXPECT_EQ(vfpd_SmoothCpx(points(in), points(cpx), 10, start, stop, width), expected);
  }
}

TEST(Smooth, PhaseIsUnwrappedInsideTheWindow) {
  const int32_t n = 200;
  reals wrapped(200), whole(200, 9.0), pieces(200, 9.0);
  for (std::size_t i = 0; i < 200; ++i) wrapped[i] = std::remainder(0.9 * static_cast<double>(i) + 1.0, 2 * pi);
  ASSERT_EQ(vfpd_Smooth(wrapped.data(), whole.data(), n, 0, n, 7, 1), n);
  for (std::size_t i = 0; i < 200; ++i) EXPECT_NEAR(std::remainder(whole[i] - wrapped[i], 2 * pi), 0.0, 3e-14);
  for (int32_t from = 0; from < n;) {
    const int32_t written = vfpd_Smooth(wrapped.data(), pieces.data(), n, from, std::min(from + 17, n), 7, 1);
    ASSERT_GT(written, 0);
    from += written;
  }
  EXPECT_EQ(pieces, whole);
}

TEST(Smooth, ComplexPointsByMagnitudeAndPhase) {
  const int32_t n = 90;
  const complexes z = support::random_complexes(90, 8);
  complexes out(90), expected;
  reals magnitude, phase;
  for (const auto &v : z) magnitude.push_back(std::abs(v)), phase.push_back(std::arg(v));
  ASSERT_EQ(vfpd_SmoothCpx(points(z), points(out), n, 0, n, 9), n);
  for (int32_t i = 0; i < n; ++i) {
    const int32_t h = std::min({4, i, n - 1 - i});
    expected.push_back(std::polar(mean_of(magnitude, i, h), mean_of(phase, i, h)));
  }
  EXPECT_TRUE(near(record(out), expected, 1e-14));
}

TEST(Format, EachFormatOnEachInstructionSet) {
  complexes z = support::random_complexes(37, 4);
  const complexes special = {{0, 0}, {1, 0}, {0, 1}, {0.999998, 0}, {-3, 4}, {nan, 0}, {inf, 0}};
  z.insert(z.end(), special.begin(), special.end());
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
  double ninety = 0;
  const dsp_complex up = {0, 1};
  vfpd_FormatBuffer(2, &up, &ninety, 0, 1);
  EXPECT_NEAR(ninety, 90.0, 1e-11);
}

TEST(Unwrap, PiecesContinueTheWhole) {
  const int32_t n = 500;
  complexes z;
  for (int i = 0; i < n; ++i) z.push_back(std::polar(0.5, -0.011 * i * i + 1.0 * i));
  reals whole(500);
  vfpd_UnwrapPhase(points(z), 0, 130, whole.data());
  for (int i = 0; i < 130; ++i) EXPECT_NEAR(whole[static_cast<std::size_t>(i)], -0.011 * i * i + 1.0 * i, 1e-12) << i;
  for (const int32_t step : {1, 2, 13}) {
    reals pieces(500);
    for (int32_t i = 0; i < 130; i += step) vfpd_UnwrapPhase(points(z), i, std::min(i + step, 130), pieces.data());
    for (std::size_t i = 0; i < 130; ++i) EXPECT_NEAR(pieces[i], whole[i], 1e-12) << i;
  }
  for (const double odd : {1e300, -1e300, inf, nan}) {
    reals out = {0.25, odd, 7, 7};
    vfpd_UnwrapPhase(points(z), 2, 4, out.data());
    EXPECT_EQ(std::isfinite(out[3]), true) << odd;
  }
  reals untouched = {7, 7};
  vfpd_UnwrapPhase(points(z), 1, 1, untouched.data());
  EXPECT_EQ(untouched, (reals{7, 7}));
}

TEST(FpuModes, SwitchTheUnit) {
  volatile double tiny = std::numeric_limits<double>::min(), half = 0.5, one = 1.0, third = 3.0;
  // On ARM arithmetic sets flags in the same register.
  const auto modes = [](uint32_t word) { return word & 0x07ffff00u; };
  const uint32_t before = modes(get_fpscr());
  const bool has_modes = [&] {
    set_runfast(1);
    const bool flushed = tiny * half == 0.0;
    set_fpscr(before);
    return flushed;
  }();
#if defined(__SSE2_MATH__) || defined(__aarch64__) || defined(__arm__)
  ASSERT_TRUE(has_modes);
#endif
  EXPECT_NE(tiny * half, 0.0);
  EXPECT_EQ(modes(set_runfast(1)), before | 0x3000000u);
  EXPECT_EQ(modes(get_fpscr()), before | 0x3000000u);
  const double subnormal = tiny * half;
  volatile double from_memory = 5e-324;
  const double product = from_memory * 0x1p1000;
  uint32_t other_thread = 0;
  std::thread([&other_thread] { set_fpscr(other_thread = get_fpscr() & ~(1u << 24)); }).join();
  const double after_thread = tiny * half;
  EXPECT_EQ(modes(set_runfast(0)), before & ~0x3000000u);
  if (has_modes) {
    EXPECT_EQ(subnormal, 0.0);
    EXPECT_EQ(product, 0.0);
    EXPECT_EQ(after_thread, 0.0);
  }
  EXPECT_NE(tiny * half, 0.0);
  const double nearest = one / third;
  double rounded[4];
  for (uint32_t mode = 0; mode < 4; ++mode) {
    set_fpscr(mode << 22);
    rounded[mode] = one / third;
  }
  EXPECT_EQ(modes(set_fpscr(before)), 3u << 22);
  EXPECT_EQ(modes(get_fpscr()), before);
  if (!has_modes) return;
  const double up = std::nextafter(nearest, 1.0);
  const double expected[] = {nearest, up, nearest, nearest};  // nearest lies below 1/3
  for (int mode = 0; mode < 4; ++mode) EXPECT_EQ(rounded[mode], expected[mode]) << mode;
}

}  // namespace
