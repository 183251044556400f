// Statistics, histogram, polynomial value and regression.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>

#include "dsp/dsp.h"
#include "tests/support/each_isa.h"
#include "tests/support/record.h"
#include "tests/support/wide.h"

namespace {

using namespace support;
using sizes = std::initializer_list<std::size_t>;
using statistic = int32_t (*)(const dsp_vec *, dsp_vec *);

const double inf = std::numeric_limits<double>::infinity();
const double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double bound = 1e100;

// The result for `in` into a fresh record.
template <class Reduce>
record run(const Reduce &reduce, const dsp_vec &in) {
  record out;
  out.dx = 5.0;
  EXPECT_EQ(reduce(&in, &out), 0);
  return out;
}

// Statistics whose result is complex for a complex signal.
const statistic of_samples[] = {dsps_sum, dsps_mean, dsps_gmean, dsps_hmean, dsps_median, dsps_max, dsps_min};

complex sample(statistic reduce, const dsp_vec &in) {
  const record out = run(reduce, in);
  EXPECT_EQ(out.length, 1);
  EXPECT_EQ(out.dx, 5.0);
  const bool kept = std::find(std::begin(of_samples), std::end(of_samples), reduce) != std::end(of_samples);
  EXPECT_EQ(out.is_complex != 0, kept && in.is_complex != 0);
  return complexes_of(out)[0];
}

double number(statistic reduce, const dsp_vec &in) { return sample(reduce, in).real(); }

int32_t polynomial(const dsp_vec *in, dsp_vec *out) { return dsps_peval(in, out, 2); }

TEST(Statistics, KnownValues) {
  const record empty, cempty((complexes()));
  // One sample stands out, by so little that the variance, or its square, is lost and the higher moment is not.
  reals skewed(10000, 0.0), peaked(10000, 0.0);
  skewed[1] = -1e-106;
  peaked[1] = 3e-80;
  struct {
    statistic reduce;
    record in;
    complex expected;
  } cases[] = {
      {dsps_gmean, record(reals{2, 8}), 4},
      {dsps_gmean, record(reals{-2, -8}), 4},
      {dsps_gmean, record(reals{2, -8}), 0},
      {dsps_gmean, record(reals{1e-200, 1e-200}), 0},
      {dsps_gmean, record(complexes{{0, 1}, {0, -1}}), 1},
      {dsps_gmean, record(complexes{{0, 0}, {0, 1}}), 0},
      {dsps_gmean, record(complexes{{1e-155, 0}}), 0},
      {dsps_hmean, record(reals{1, 0, nan}), 0},
      {dsps_hmean, record(reals{1, -1}), bound},
      {dsps_hmean, record(complexes{{0, 2}, {0, 2}, {0, 0}}), {0, 3}},
      {dsps_hmean, record(complexes{{2e100, 0}}), 1e100},
      {dsps_median, record(complexes{{3, 4}, {0, 1}, {2, 0}}), 2},
      {dsps_median, record(complexes{{3, 4}, {0, 1}, {2, 0}, {0, -3}}), {1, -1.5}},
      {dsps_skew, record(reals{4, 4, 4}), 0},
      {dsps_skew, record(skewed), bound},
      {dsps_skew, empty, 0},
      {dsps_excess, record(reals{4, 4, 4}), -3},
      {dsps_excess, record(peaked), bound},
      {dsps_excess, empty, -3},
      {polynomial, record(reals{1, 2, 3}), 17},
      {[](const dsp_vec *in, dsp_vec *out) { return dsps_peval(in, out, inf); }, record(reals{5}), 5},
      {polynomial, empty, 0},
  };
  for (const auto &c : cases) {
    const complex z = sample(c.reduce, c.in);
    EXPECT_LE(std::abs(z - c.expected), 4e-16 * std::abs(c.expected)) << &c - cases << ": " << z;
  }
  for (const statistic reduce :
       {dsps_sum, dsps_mean, dsps_gmean, dsps_hmean, dsps_median, dsps_max, dsps_min, dsps_magsq_sum, dsps_rms,
        dsps_pop_var, dsps_samp_var, dsps_pop_stddev, dsps_samp_stddev})
    for (const record *none : {&empty, &cempty}) EXPECT_EQ(sample(reduce, *none), 0.0);
  EXPECT_GT(number(dsps_gmean, record(reals{std::numeric_limits<double>::min()})), 0.0) << "not yet too small";
  for (const statistic reduce : {dsps_skew, dsps_excess, polynomial}) {
    record out(reals{7});
    EXPECT_EQ(reduce(&cempty, &out), -1) << "of real signals only";
    EXPECT_EQ(doubles_of(out), reals{7});
  }
}

bool beyond(wide x) { return x > bound || x < -bound; }

// The p-th power, saturated.
wide power(wide x, int p) { return pow(x > bound ? wide(bound) : x < -bound ? wide(-bound) : x, p); }

// Each statistic by its definition, term by term, saturated.
void check_definitions(const record &in, double tolerance) {
  const complexes z = complexes_of(in);
  const wide n = static_cast<wide>(z.size());
  const auto mean = [&](const auto &term) {
    wide sum = 0;
    for (std::size_t first = 0; first < z.size(); first += 512) {
      wide block = 0;
      for (std::size_t i = first; i < std::min(first + 512, z.size()); ++i) block += term(z[i]);
      sum += block;
    }
    return sum / n;
  };
  const auto square = [](complex v) { return power(v.real(), 2) + power(v.imag(), 2); };
  const auto energy = [&](complex v) { return beyond(v.real()) || beyond(v.imag()) ? wide(bound) : square(v); };
  const wide re = mean([](complex v) { return wide(v.real()); }), im = mean([](complex v) { return wide(v.imag()); });
  const wide rms = sqrt(mean(energy));
  const complex about = (z[0] + z[z.size() / 2] + z.back()) / 3.0;
  const wide m1 = mean([&](complex v) { return power(v.real() - about.real(), 1); });
  const wide i1 = mean([&](complex v) { return power(v.imag() - about.imag(), 1); });
  const wide m2 = mean([&](complex v) { return square(v - about); });
  const wide m3 = mean([&](complex v) { return power(v.real() - about.real(), 3); });
  const wide variance = m2 - m1 * m1 - i1 * i1, deviation = sqrt(variance), unbiased = n < 2 ? 1 : n / (n - 1);
  struct row {
    statistic reduce;
    wide re, im, scale;
  };
  std::vector<row> rows = {{dsps_sum, re * n, im * n, rms * n},   {dsps_mean, re, im, rms},
                           {dsps_magsq_sum, rms * rms * n, 0, 0}, {dsps_rms, rms, 0, 0},
                           {dsps_pop_var, variance, 0, m2},       {dsps_samp_var, variance * unbiased, 0, m2}};
  if (tolerance < 1e-12) {  // away from cancellation only
    const wide x = mean([&](complex v) { return power(v.real(), 1) / square(v); });
    const wide y = mean([&](complex v) { return power(v.imag(), 1) / square(v); });
    rows.push_back({dsps_hmean, x / (x * x + y * y), y / (x * x + y * y), 1e3});
  }
  if (variance > 0 && n > 1) {
    rows.push_back({dsps_pop_stddev, deviation, 0, sqrt(m2)});
    rows.push_back({dsps_samp_stddev, deviation * sqrt(unbiased), 0, sqrt(m2)});
  }
  const auto centre = static_cast<double>(mean([](complex v) { return power(v.real(), 1); }));
  if (in.is_complex == 0 && n > 1 && std::abs(centre) < 1e3 * deviation) {  // not on a high pedestal
    rows.push_back({dsps_skew, (m3 - 3 * m1 * m2 + 2 * m1 * m1 * m1) / (variance * deviation), 0, 1});
    const auto q2 = static_cast<double>(mean([&](complex v) { return power(v.real() - centre, 2); }));
    const auto q4 = static_cast<double>(mean([&](complex v) { return pow(power(v.real() - centre, 2), 2); }));
    rows.push_back({dsps_excess, q4 / (q2 * q2) - 3, 0, 3});  // these overflow
  }
  if (in.is_complex == 0) {
    reals x = doubles_of(in);
    std::sort(x.begin(), x.end(), [](double a, double b) { return std::isnan(b) ? !std::isnan(a) : a < b; });
    rows.push_back({dsps_median, (wide(x[(x.size() - 1) / 2]) + x[x.size() / 2]) / 2, 0, 0});
  }
  for (const row &r : rows) {
    const complex found = sample(r.reduce, in);
    for (const auto &[x, expected] : {std::pair(found.real(), r.re), std::pair(found.imag(), r.im)}) {
      const auto value = static_cast<double>(expected);
      const wide room = tolerance * std::max<wide>(abs(expected), r.scale);
      EXPECT_TRUE(std::isfinite(value) ? abs(x - expected) <= room : std::isnan(x) || x == value)
          << &r - &rows[0] << ": " << x << " for " << value;
    }
  }
}

TEST(Statistics, EqualTheirDefinitions) {
  for (const bool is_complex : {false, true}) {
    for (const std::size_t n : sizes{1, 2, 3, 7, 8, 9, 15, 16, 17, 31, 100, 1000, 2047, 2048, 2049, 5000}) {
      SCOPED_TRACE(testing::Message() << n << " complex " << is_complex);
      record in = random_signal(n, is_complex, static_cast<unsigned>(n));
      dspi_offset(&in, 3.0);
      check_definitions(in, 2e-15);
    }
    for (const std::size_t n : sizes{1, 5, 40, 2100})
      for (const double x : {1e100, std::nextafter(1e100, inf), -1.0000001e100, 3e120, -1e300, 1e99, inf, -inf, nan})
        for (const std::size_t at : {std::size_t(0), n / 3, n - 1}) {
          SCOPED_TRACE(testing::Message() << n << " complex " << is_complex << " " << x << " at " << at);
          record in = random_signal(n, is_complex, 9);
          in.data[is_complex ? 2 * at + n % 2 : at] = x;
          check_definitions(in, 1e-11);
        }
  }
  for (const std::size_t n : sizes{1001, 100001}) {
    SCOPED_TRACE(testing::Message() << n << " on a high pedestal");
    reals x(n, 1e8 + 0.2);
    for (std::size_t i = 1; i < n; ++i) x[i] = 1e8 + (i % 2 == 0 ? 0.3 : 0.1);
    check_definitions(record(x), 4e-16);
  }
}

// The first sample with the greatest (least) key; real ones are their own.
complex extreme(const record &in, bool least) {
  complex best = least ? complex(bound, bound) : in.is_complex ? complex(0) : complex(-bound);
  double best_key = least ? bound : -bound;
  for (const complex z : complexes_of(in)) {
    const bool saturates = (beyond(z.real()) || beyond(z.imag())) && !std::isnan(z.real() + z.imag());
    const double key = in.is_complex == 0 ? z.real() : saturates ? bound : z.real() * z.real() + z.imag() * z.imag();
    if (least ? key < best_key : key > best_key) best = z, best_key = key;
  }
  return in.is_complex != 0 ? best : best.real();
}

void check_extremes(const record &in) {
  for (const statistic reduce : {dsps_max, dsps_min}) {
    const complex found = sample(reduce, in), expected = extreme(in, reduce == dsps_min);
    EXPECT_TRUE(same(record(complexes{found}), record(complexes{expected}))) << found << expected;
  }
}

TEST(Extremes, AreTheFirstOfEqualSamples) {
  on_each_isa([] {
    for (const bool is_complex : {false, true})
      for (const std::size_t n : sizes{1, 2, 4, 9, 33, 70, 601, 4200})
        for (std::size_t at = 0; at < n; at += n < 100 ? 1 : 397)
          for (const double size : {1.0, -1.0, 1e-3, 1e60, 3e99, 1e101, inf, nan}) {
            SCOPED_TRACE(testing::Message() << n << " complex " << is_complex << " " << size << " at " << at);
            complexes z = random_complexes(n, 2);
            if (size > 1e80) z[n / 2] = 1e70;  // whose square beats what saturates
            z.back() = {3 * size, 4 * size};
            z[at] = {4 * size, 3 * size};
            if (n > 3 && at > 1) z[0].imag(nan), z[1].real(nan);
            check_extremes(signal_of(z, is_complex));
          }
    for (const reals &x : {reals{-1, -0.0, 0.0}, reals{1, 0.0, -0.0}, reals{-1e200, -1e300}, reals(600, nan)})
      check_extremes(record(x));
  });
}

TEST(Histogram, CountsEdgesAsStated) {
  const record many = random_signal(3000, false, 8);
  reals sevenths(7, 0.0);
  for (const double x : doubles_of(many)) ++sevenths[static_cast<std::size_t>((x + 1.0) / (2.0 / 7))];
  struct {
    record in;
    double start, width;
    int32_t bins;
    reals expected;
  } cases[] = {
      {many, -1.0, 2.0 / 7, 7, sevenths},
      {record(reals{4.0, 4.5, -0.5, 3.999, 0.0, nan, inf}), 0, 1, 4, {1, 0, 0, 2}},
      {record(reals{4.0 + 4e-15, 4.0 + 2e-14}), 0, 1, 4, {0, 0, 0, 1}},
      {record(reals{1, 1, 2}), 1, 0, 2, {2, 0}},
      {record(reals{-1, -2.5, 1}), 0, -1, 3, {0, 1, 1}},
      {record(complexes{{3, 4}, {0, 2}, {2e100, 0}}), 0, 3, 2, {1, 1}},
      {record(complexes{{2e100, 0}}), 0, 1e100, 1, {1}},
      {record(), 0, 1, 3, {0, 0, 0}},
      {record(), 0, 1, -3, {}},  // two records without buffers share none
      {record(reals{1, 2}), 0, 1, -3, {}},
  };
  for (const auto &c : cases) {
    SCOPED_TRACE(&c - cases);
    const auto hist = [&](const dsp_vec *in, dsp_vec *out) { return dsps_hist(in, out, c.start, c.width, c.bins); };
    const record out = run(hist, c.in);
    EXPECT_EQ(doubles_of(out), c.expected);
    EXPECT_EQ(out.length, c.bins);
    EXPECT_EQ(out.dx, c.width);
  }
  record v(many);
  ASSERT_EQ(dsps_hist(&v, &v, 0, 1, -3), 0);
  EXPECT_EQ(v.length, 0);
}

TEST(Peak, SearchesAndRefines) {
  // Of a Gaussian through the samples a and b: where it is, from a, and its height.
  const double loss = 0.315563649157834;
  const auto place = [loss](double a, double b) { return std::log(b / a) / (4 * loss) + 0.5; };
  const auto height = [&](double a, double b) { return a * std::exp(loss * place(a, b) * place(a, b)); };
  struct {
    record in;
    int32_t flags, index;
    double value, position;
    int32_t status;
  } cases[] = {
      {record(), 0x400, 0, 0, 0, 0},
      {record(reals{1, 3, 3, 2}), 0, 0, 3, 1, 0},
      {record(reals{5, 3, 3, 7}), DSP_PEAK_MIN, 0, 3, 1, 0},
      {record(reals{-2e100, -inf}), 0, 0, -2e100, 0, 0},
      {record(complexes{{1, 1}, {3, 4}, {nan, 9}, {0, 0}}), 0, 0, 25, 1, 0},
      {record(complexes{{1, 1}, {3, 4}}), DSP_PEAK_MIN, 0, 2, 0, 0},
      {record(reals{1, 2, 3, 4}), DSP_PEAK_AT_INDEX | DSP_PEAK_MIN, -5, 1, 0, 0},
      {record(reals{1, 2, 3, 4}), DSP_PEAK_AT_INDEX, 1, 2, 1, 0},
      {record(reals{1, 2, 3, 4}), DSP_PEAK_AT_INDEX, 1000, 4, 3, 0},
      {record(reals{1, 3, 2}), DSP_PEAK_PARABOLIC, 0, 3 + 1.0 / 24, 1 + 1.0 / 6, 0},
      {record(reals{3, 2, 1}), DSP_PEAK_PARABOLIC, 0, 3, 0, 0},
      {record(reals{1, 2, 3}), DSP_PEAK_PARABOLIC, 0, 3, 2, 0},
      {record(reals{4, 4, 1}), DSP_PEAK_GAUSS, 0, height(4, 4), place(4, 4), 0},
      {record(reals{1, 3, 2}), DSP_PEAK_GAUSS, 0, height(3, 2), 1 + place(3, 2), 0},
      {record(reals{1, 3, 1}), DSP_PEAK_GAUSS, 0, height(3, 1), 1 + place(3, 1), 0},
      {record(reals{2, 3}), DSP_PEAK_GAUSS, 0, height(2, 3), place(2, 3), 0},
      {record(reals{1, 1e9, 1}), DSP_PEAK_GAUSS, 0, 1e9 * std::exp(loss / 4), 0.5, -1},
      {record(reals{1, 1e9}), DSP_PEAK_GAUSS, 0, std::exp(loss * 2.25), 1.5, -1},
      {record(reals{7}), DSP_PEAK_GAUSS, 0, 7, 0, 0},
  };
  for (const auto &c : cases) {
    SCOPED_TRACE(&c - cases);
    record out;
    out.dx = 4.0;
    EXPECT_EQ(dsps_peak(&c.in, &out, c.flags, c.index), c.status);
    EXPECT_TRUE(near(out, reals{c.value, c.position}, std::abs(c.value) * 1e-15));
    EXPECT_EQ(out.dx, 4.0);
  }
  record v(reals{1, 2, 3}), out;
  for (dsp_vec *const to : {&out, &v}) EXPECT_EQ(dsps_peak(&v, to, 0x400, 0), -1);
  EXPECT_EQ(doubles_of(v), (reals{1, 2, 3}));
}

// The main lobe of Gausstop is the Gaussian of dsps_peak.
TEST(Peak, GaussianFindsAToneUnderGausstop) {
  double worst[2] = {};
  for (double place = 40; place < 41; place += 0.0625) {
    record tone(complexes(256)), spectrum, out;
    ASSERT_EQ(dspc_cexp(&tone, (place - 128) / 256, 0.4), 0);
    ASSERT_EQ(dsph_fft(&tone, &spectrum, 0, 1.0, DSP_WINDOW_GAUSSTOP, DSP_SPECTRUM_TWO_SIDED), 0);
    for (const int corrected : {0, 1}) {
      ASSERT_EQ(dsps_peak(&spectrum, &out, corrected != 0 ? DSP_PEAK_GAUSS_CORR : DSP_PEAK_GAUSS, 0), 0);
      worst[corrected] = std::max(worst[corrected], std::abs(out.data[1] - place));
    }
  }
  EXPECT_LT(worst[0], 1e-3);
  EXPECT_LT(worst[1], 2e-6);
}

// The twenty values from points, two passes in wide numbers.
std::vector<wide> regression(const std::vector<wide> &x, const std::vector<wide> &y) {
  const wide n = static_cast<wide>(x.size());
  wide mx = 0, my = 0, vx = 0, vy = 0, cov = 0;
  for (std::size_t i = 0; i < x.size(); ++i) mx += x[i] / n, my += y[i] / n;
  for (std::size_t i = 0; i < x.size(); ++i) {
    vx += (x[i] - mx) * (x[i] - mx) / n;
    vy += (y[i] - my) * (y[i] - my) / n;
    cov += (x[i] - mx) * (y[i] - my) / n;
  }
  const wide r = cov / sqrt(vx * vy), q = 1 - r * r, f2 = n > 2 ? n / (n - 2) : 0, f1 = n / (n - 1);
  std::vector<wide> v;
  for (int side = 0; side < 2; ++side) {
    const wide g = vy * q / (vx * n), ex2 = vx + mx * mx;
    for (const wide value :
         {cov / vx, my - mx * cov / vx, vy * q * f2, f2 * g, f2 * g * ex2, -f2 * g * mx, -mx / sqrt(ex2)})
      v.push_back(value);
    std::swap(mx, my);
    std::swap(vx, vy);
  }
  for (const wide value : {mx, my, vx * f1, vy * f1, cov * f1, r}) v.push_back(value);
  return v;
}

TEST(Regression, EqualsTheDefinition) {
  for (const double dx : {1.0, 0.25, 0.0})
    for (const std::size_t n : sizes{2, 3, 50, 2048, 3000, 5000}) {
      reals y = random_reals(n, 5);
      std::vector<wide> px, py;
      complexes z;
      for (std::size_t i = 0; i < n; ++i) {
        y[i] += 1e-3 * static_cast<double>(i % 2048) + 2.0;
        px.push_back((dx == 0.0 ? wide(1) : wide(dx)) * static_cast<wide>(i % 2048));
        py.push_back(y[i]);
        z.emplace_back(static_cast<double>(px[i]), y[i]);
      }
      // Long signals: the places start again every 2048 samples, the shift is that of the whole.
      const std::vector<wide> expected = regression(px, py);
      for (const record &in : {record(y, dx), record(z)}) {
        SCOPED_TRACE(testing::Message() << n << " dx " << dx << " complex " << in.is_complex);
        const record summary = run(dsps_lin_regres2, in);
        ASSERT_EQ(summary.length, 20);
        EXPECT_EQ(summary.dx, 1.0);
        for (std::size_t k = 0; k < 20; ++k)
          EXPECT_LE(abs(summary.data[k] - expected[k]), 6e-15 * (1 + abs(expected[k]))) << k;
        const record line = run(dsps_lin_regres, in);
        EXPECT_EQ(doubles_of(line), reals(summary.data, summary.data + 2));
        EXPECT_EQ(line.dx, 5.0);
      }
    }
}

TEST(Regression, DegeneratePoints) {
  const double tiny = 2.3e-162;  // its square is a subnormal number, and too small
  struct {
    record in;
    std::map<std::size_t, double> expected;
  } cases[] = {
      {record(), {}},
      {record(reals{7}, 0.5), {{1, 7}, {15, 7}}},
      {record(complexes{{3, 7}}), {{1, 7}, {8, 3}, {14, 3}, {15, 7}}},
      {record(reals{4, 4, 4}), {{0, 0}, {1, 4}, {7, bound}, {8, bound}, {10, 3 * bound}, {19, 0}}},
      {record(complexes{{2, 1}, {2, 3}}), {{0, bound}, {1, bound}, {7, 0}, {8, 2}}},
      {record(complexes{{tiny, 1}, {tiny, 3}}), {{6, -1}}},
      {record(complexes{{-tiny, 1}, {-tiny, 3}}), {{6, 1}}},
      // About the rough mean 0 the middle one of three is worth 1e100.
      {record(reals{0, -1, -1, 3e100, 1, 1, 0, 0, 0}), {{0, -1e100 / 60}, {1, 1e100 / 9 + 4 * 1e100 / 60}}},
  };
  for (auto &c : cases) {
    SCOPED_TRACE(&c - cases);
    const record summary = run(dsps_lin_regres2, c.in);
    for (std::size_t k = 0; k < 20; ++k) {
      const bool told = c.in.length < 2 || c.expected.count(k) != 0;
      EXPECT_DOUBLE_EQ(summary.data[k], told ? c.expected[k] : summary.data[k]) << k;
    }
  }
  EXPECT_TRUE(std::isnan(run(dsps_lin_regres2, record(reals{1, nan, 2})).data[0]));
}

TEST(Regression, RoundingStaysInRange) {
  for (std::size_t n = 2; n < 60; ++n) {
    // Perfect lines, whose correlation rounds to either side of +-1.
    complexes line = random_complexes(n, static_cast<unsigned>(n)), far(n, complex(1e308, 0.0));
    for (const double slope : {0.3, -0.3}) {
      for (complex &z : line) z = {z.real(), slope * z.real()};
      const double r = run(dsps_lin_regres2, record(line)).data[19];
      EXPECT_NEAR(r, std::copysign(1.0, slope), 1e-14);
      EXPECT_LE(std::abs(r), 1.0) << n;
    }
    // The provisional mean overflows, so that each difference saturates to -1e100: their variance may round to below 0.
    const double variance = run(dsps_lin_regres2, record(far)).data[16];
    EXPECT_TRUE(variance == 0 || variance > 1e100) << variance << " of " << n;
  }
}

}  // namespace
