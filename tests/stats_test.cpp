// Statistics, histogram, polynomial value and regression.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "dsp/dsp.h"
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

// Those whose results are samples, complex ones of a complex signal.
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
  struct {
    statistic reduce;
    record in;
    double re, im;
  } cases[] = {
      {dsps_sum, record(reals{1, 2, 4}), 7, 0},
      {dsps_mean, record(complexes{{1, 2}, {3, -4}}), 2, -1},
      {dsps_sum, record(reals{1e200, 1e200}), 2e200, 0},
      {dsps_gmean, record(reals{2, 8}), 4, 0},
      {dsps_gmean, record(reals{-2, -8}), 4, 0},
      {dsps_gmean, record(reals{2, -8}), 0, 0},
      {dsps_gmean, record(reals{1e-200, 1e-200}), 0, 0},
      {dsps_gmean, record(complexes{{0, 1}, {0, -1}}), 1, 0},
      {dsps_gmean, record(complexes{{0, 0}, {0, 1}}), 0, 0},
      {dsps_gmean, record(complexes{{1e-155, 0}}), 0, 0},
      {dsps_hmean, record(reals{1, 4, 4}), 2, 0},
      {dsps_hmean, record(reals{1, 0, nan}), 0, 0},
      {dsps_hmean, record(reals{1, -1}), bound, 0},
      {dsps_hmean, record(complexes{{0, 2}, {0, 2}, {0, 0}}), 0, 3},
      {dsps_hmean, record(complexes{{2e100, 0}}), 1e100, 0},
      {dsps_median, record(reals{3, 1, 2, 4}), 2.5, 0},
      {dsps_median, record(reals{5, 1, 3}), 3, 0},
      {dsps_median, record(reals{nan, 1, 7, nan, 3}), 7, 0},
      {dsps_median, record(complexes{{3, 4}, {0, 1}, {2, 0}}), 2, 0},
      {dsps_median, record(complexes{{3, 4}, {0, 1}, {2, 0}, {0, -3}}), 1, -1.5},
      {dsps_max, record(reals{-1e200, -1e300}), -bound, 0},
      {dsps_min, record(reals{5e100}), bound, 0},
      {dsps_max, record(reals{1, inf}), inf, 0},
      {dsps_max, record(complexes{{nan, 1e101}, {nan, 0}}), 0, 0},
      {dsps_max, record(complexes{{1, 2}, {2, 1}}), 1, 2},
      {dsps_max, record(complexes{{1e60, 0}, {-inf, 1}}), 1e60, 0},
      {dsps_min, record(complexes{{2e100, 0}, {0, inf}}), bound, bound},
      {dsps_min, record(complexes{{3, 4}, {2e100, 0}, {-5, 0}}), 3, 4},
      {dsps_magsq_sum, record(reals{3, -2e100, 4}), bound, 0},
      {dsps_rms, record(reals{2e100}), 1e50, 0},
      {dsps_rms, record(complexes{{3, 4}, {3, 4}}), 5, 0},
      {dsps_magsq_sum, record(complexes{{2e100, 2e100}}), bound, 0},
      {dsps_pop_var, record(reals{1, 3}), 1, 0},
      {dsps_pop_var, record(complexes{{1, 1}, {3, -1}}), 2, 0},
      {dsps_samp_var, record(reals{1, 3}), 2, 0},
      {dsps_samp_var, record(reals{7}), 0, 0},
      {dsps_samp_stddev, record(reals{1, 2, 3}), 1, 0},
      {dsps_pop_stddev, record(reals{1, 5}), 2, 0},
      {dsps_skew, record(reals{4, 4, 4}), 0, 0},
      {dsps_skew, record(reals{0, 0, 0, 1}), 2 / std::sqrt(3.0), 0},
      {dsps_excess, record(reals{4, 4, 4}), -3, 0},
      {dsps_excess, record(reals{-1, 1, -1, 1}), -2, 0},
      {dsps_excess, empty, -3, 0},
      {polynomial, record(reals{1, 2, 3}), 17, 0},
      {[](const dsp_vec *in, dsp_vec *out) { return dsps_peval(in, out, inf); }, record(reals{5}), 5, 0},
      {polynomial, empty, 0, 0},
  };
  for (const auto &c : cases) {
    SCOPED_TRACE(&c - cases);
    const complex z = sample(c.reduce, c.in);
    EXPECT_TRUE(z.real() == c.re || std::abs(z.real() - c.re) <= 4e-16 * std::abs(c.re)) << z;
    EXPECT_LE(std::abs(z.imag() - c.im), 4e-16 * std::abs(c.im)) << z;
  }
  for (const statistic reduce :
       {dsps_sum, dsps_mean, dsps_gmean, dsps_hmean, dsps_median, dsps_max, dsps_min, dsps_magsq_sum, dsps_rms,
        dsps_pop_var, dsps_samp_var, dsps_pop_stddev, dsps_samp_stddev}) {
    EXPECT_EQ(sample(reduce, empty), 0.0);
    EXPECT_EQ(sample(reduce, cempty), 0.0);
  }
  EXPECT_EQ(number(dsps_skew, empty), 0.0);
  // One sample stands out, by so little that the variance, or its square, is lost and the higher moment is not.
  reals spike(10000, 0.0);
  spike[1] = -1e-106;
  EXPECT_EQ(number(dsps_skew, record(spike)), bound);
  spike[1] = 3e-80;
  EXPECT_EQ(number(dsps_excess, record(spike)), bound);
}

TEST(Statistics, OfRealSignalsRefuseComplexOnes) {
  const record in((complexes()));
  for (const statistic reduce : {dsps_skew, dsps_excess, polynomial}) {
    record out(reals{7});
    EXPECT_EQ(reduce(&in, &out), -1);
    EXPECT_EQ(doubles_of(out), reals{7});
  }
}

// The definitions, term by term, with their saturation.
struct moments {
  wide n = 0, sum[2] = {}, squares = 0, d[2] = {}, dd = 0, ddd = 0, q = 0, qq = 0, inverse[2] = {};

  moments(const complexes &z, bool is_complex) {
    n = static_cast<wide>(z.size());
    const std::size_t last = z.size() - 1, middle = z.size() / 2;
    const complex k = {(z[0].real() + z[middle].real() + z[last].real()) / 3,
                       (z[0].imag() + z[middle].imag() + z[last].imag()) / 3};
    const auto clamp = [](wide x) { return x > bound ? bound : x < -bound ? -bound : x; };
    const auto beyond = [](wide x) { return x > bound || x < -bound; };
    wide clamped = 0;
    for (const complex v : z) {
      sum[0] += v.real();
      sum[1] += v.imag();
      const bool out = beyond(v.real()) || beyond(v.imag());
      squares += out ? bound : wide(v.real()) * v.real() + wide(v.imag()) * v.imag();
      clamped += clamp(v.real());
      const double parts[2] = {v.real() - k.real(), is_complex ? v.imag() - k.imag() : 0.0};
      for (int p = 0; p < 2; ++p) {
        d[p] += clamp(parts[p]);
        dd += beyond(parts[p]) ? 1e200 : wide(parts[p]) * parts[p];
      }
      ddd += parts[0] > bound ? 1e300 : parts[0] < -bound ? -1e300 : wide(parts[0]) * parts[0] * parts[0];
      const wide re = clamp(v.real()), im = clamp(v.imag());
      const wide magnitude = (beyond(v.real()) ? 1e200 : re * re) + (beyond(v.imag()) ? 1e200 : im * im);
      inverse[0] += re / magnitude;
      inverse[1] -= im / magnitude;
    }
    for (const complex v : z) {
      const double e = v.real() - static_cast<double>(clamped / n);
      const wide square = beyond(e) ? 1e200 : wide(e) * e;
      q += square;
      qq += square * square;
    }
  }
  wide variance() const { return dd / n - d[0] / n * (d[0] / n) - d[1] / n * (d[1] / n); }
  wide skew() const {
    const wide m1 = d[0] / n, m2 = dd / n;
    return (ddd / n - 3 * m1 * m2 + 2 * m1 * m1 * m1) / (variance() * sqrt(variance()));
  }
  double excess() const {  // fourth powers overflow
    const auto m2 = static_cast<double>(q / n);
    return static_cast<double>(qq / n) / (m2 * m2) - 3;
  }
};

void check_moments(const record &in, double tolerance) {
  const bool is_complex = in.is_complex != 0;
  const moments m(complexes_of(in), is_complex);
  const double n = static_cast<double>(m.n);
  const auto close = [&](double x, wide expected, wide scale) {
    const auto value = static_cast<double>(expected);
    const bool good = std::isfinite(value) ? abs(x - expected) <= tolerance * scale : std::isnan(x) || x == value;
    EXPECT_TRUE(good) << x << " " << expected;
  };
  const wide size = sqrt(abs(m.squares) / m.n);
  const complex sum = sample(dsps_sum, in), mean = sample(dsps_mean, in), hmean = sample(dsps_hmean, in);
  for (int p = 0; p < 2; ++p) {
    const auto part = [p](complex z) { return p == 0 ? z.real() : z.imag(); };
    const wide magnitude = std::max<wide>(abs(m.sum[p]), size * m.n);
    close(part(sum), m.sum[p], magnitude);
    close(part(mean), m.sum[p] / m.n, magnitude / m.n);
    const wide inverse = m.inverse[0] * m.inverse[0] + m.inverse[1] * m.inverse[1];
    if (tolerance < 1e-12)  // away from cancellation only
      close(part(hmean), m.n * (p == 0 ? m.inverse[0] : -m.inverse[1]) / inverse, 1e3);
  }
  close(number(dsps_magsq_sum, in), m.squares, abs(m.squares));
  close(number(dsps_rms, in), sqrt(m.squares / m.n), size);
  const wide factor = n < 2 ? 1 : n / (n - 1);
  const wide v = m.variance(), scale = m.dd / m.n;
  close(number(dsps_pop_var, in), v, scale);
  close(number(dsps_samp_var, in), v * factor, scale);
  if (v > 0 && n > 1) {
    close(number(dsps_pop_stddev, in), sqrt(v), sqrt(scale));
    close(number(dsps_samp_stddev, in), sqrt(v * factor), sqrt(scale));
    if (!is_complex) close(number(dsps_skew, in), m.skew(), 1 + abs(m.skew()));
    if (!is_complex) close(number(dsps_excess, in), m.excess(), 3 + std::abs(m.excess()));
  }
}

TEST(Statistics, EqualTheirDefinitionsAtEveryLength) {
  for (const bool is_complex : {false, true})
    for (const std::size_t n : sizes{1, 2, 3, 7, 8, 9, 15, 16, 17, 31, 100, 1000, 2047, 2048, 2049, 5000}) {
      SCOPED_TRACE(testing::Message() << n << " complex " << is_complex);
      record in = random_signal(n, is_complex, static_cast<unsigned>(n));
      dspi_offset(&in, 3.0);
      check_moments(in, 2e-15);
    }
}

TEST(Statistics, SaturateWhereverTheValueStands) {
  for (const bool is_complex : {false, true})
    for (const std::size_t n : sizes{1, 5, 40, 2100})
      for (const double x : {1e100, std::nextafter(1e100, inf), -1.0000001e100, 3e120, -1e300, 1e99, inf, -inf, nan})
        for (const std::size_t at : {std::size_t(0), n / 3, n - 1}) {
          SCOPED_TRACE(testing::Message() << n << " complex " << is_complex << " " << x << " at " << at);
          record in = random_signal(n, is_complex, 9);
          in.data[is_complex ? 2 * at + n % 2 : at] = x;
          check_moments(in, 1e-11);
        }
}

TEST(Statistics, KeepTheirDigitsOnAHighPedestal) {
  for (const double pedestal : {1e7, 1e8})
    for (const std::size_t n : sizes{1001, 300001}) {
      reals x(n, pedestal + 0.2);
      for (std::size_t i = 1; i < n; ++i) x[i] = pedestal + (i % 2 == 0 ? 0.3 : 0.1);
      wide mean = 0, spread = 0;
      for (const double v : x) mean += (v - pedestal) / static_cast<wide>(n);
      mean += pedestal;
      for (const double v : x) spread += (v - mean) * (v - mean);
      const record in(x);
      EXPECT_NEAR(number(dsps_mean, in), static_cast<double>(mean), pedestal * 2.3e-16);
      const wide deviation = sqrt(spread / static_cast<wide>(n - 1));
      EXPECT_NEAR(number(dsps_samp_stddev, in) / static_cast<double>(deviation), 1.0, n == 1001 ? 3e-16 : 3e-15);
    }
}

TEST(Extremes, FirstOfEqualSamplesWhereverItStands) {
  for (const bool is_complex : {false, true})
    for (const std::size_t n : sizes{1, 4, 9, 33, 70, 2049, 4200})
      for (std::size_t at = 0; at < n; at += n < 100 ? 1 : 97) {
        record in = random_signal(n, is_complex, 2);
        for (const double sign : {1.0, -1.0}) {
          // Two samples of equal key, told apart by their sign or their order of parts.
          double *first = in.data + at * (is_complex ? 2 : 1);
          double *last = in.data + (n - 1) * (is_complex ? 2 : 1);
          const double big = is_complex ? 3.0 : 3.0 * sign;
          *first = *last = big;
          if (is_complex) first[1] = 4.0, last[0] = 4.0, last[1] = 3.0;
          if (n > 3 && at > 1) in.data[1] = nan;
          if (is_complex && sign < 0) continue;
          const complex found = sample(sign > 0 ? dsps_max : dsps_min, in);
          EXPECT_EQ(found, is_complex && at + 1 < n ? complex(3, 4) : is_complex ? complex(4, 3) : complex(big));
        }
      }
  EXPECT_TRUE(std::signbit(number(dsps_max, record(reals{-1, -0.0, 0.0}))));
  EXPECT_FALSE(std::signbit(number(dsps_min, record(reals{1, 0.0, -0.0}))));
  EXPECT_EQ(number(dsps_max, record(reals{nan, nan})), -bound);
}

TEST(Histogram, CountsEdgesAsStated) {
  struct {
    record in;
    double start, width;
    int32_t bins;
    reals expected;
  } cases[] = {
      {record(reals{4.0, 4.5, -0.5, 3.999, 0.0, nan, inf}), 0, 1, 4, {1, 0, 0, 2}},
      {record(reals{4.0 + 4e-15, 4.0 + 2e-14}), 0, 1, 4, {0, 0, 0, 1}},
      {record(reals{1, 1, 2}), 1, 0, 2, {2, 0}},
      {record(reals{-1, -2.5, 1}), 0, -1, 3, {0, 1, 1}},
      {record(complexes{{3, 4}, {0, 2}, {2e100, 0}}), 0, 3, 2, {1, 1}},
      {record(complexes{{2e100, 0}}), 0, 1e100, 1, {1}},
      {record(), 0, 1, 3, {0, 0, 0}},
      {record(reals{1, 2}), 0, 1, 0, {}},
  };
  for (const auto &c : cases) {
    SCOPED_TRACE(&c - cases);
    const auto hist = [&](const dsp_vec *in, dsp_vec *out) { return dsps_hist(in, out, c.start, c.width, c.bins); };
    const record out = run(hist, c.in);
    EXPECT_EQ(doubles_of(out), c.expected);
    EXPECT_EQ(out.length, c.bins);
    EXPECT_EQ(out.dx, c.width);
  }
  record many = random_signal(3000, false, 8), out;
  reals expected(7, 0.0);
  for (const double x : doubles_of(many)) ++expected[static_cast<std::size_t>((x + 1.0) / (2.0 / 7))];
  ASSERT_EQ(dsps_hist(&many, &out, -1.0, 2.0 / 7, 7), 0);
  EXPECT_EQ(doubles_of(out), expected);
  ASSERT_EQ(dsps_hist(&many, &out, 0, 1, -3), 0);
  EXPECT_EQ(out.length, -3);
  ASSERT_EQ(dsps_hist(&many, &many, 0, 1, -3), 0);
  EXPECT_EQ(many.length, 0);
  record none, fresh;
  ASSERT_EQ(dsps_hist(&none, &fresh, 0, 1, -3), 0);
  EXPECT_EQ(fresh.length, -3) << "two records without buffers share none";
}

TEST(Median, IsTheMiddleOfTheSorted) {
  EXPECT_TRUE(std::isnan(number(dsps_median, record(reals{nan, 1, nan}))));
  for (const std::size_t n : sizes{1, 2, 9, 10, 1000}) {
    const record in = random_signal(n, false, 3);
    reals x = doubles_of(in);
    std::sort(x.begin(), x.end());
    EXPECT_EQ(number(dsps_median, in), n % 2 != 0 ? x[n / 2] : (x[n / 2 - 1] + x[n / 2]) * 0.5);
  }
}

// The twenty values from points, two passes in wide numbers.
reals regression(const std::vector<wide> &x, const std::vector<wide> &y) {
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
  reals rounded;
  for (const wide value : v) rounded.push_back(static_cast<double>(value));
  return rounded;
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
      const reals expected = regression(px, py);
      for (const record &in : {record(y, dx), record(z)}) {
        SCOPED_TRACE(testing::Message() << n << " dx " << dx << " complex " << in.is_complex);
        const record summary = run(dsps_lin_regres2, in);
        ASSERT_EQ(summary.length, 20);
        EXPECT_EQ(summary.dx, 1.0);
        for (std::size_t k = 0; k < 20; ++k)
          EXPECT_NEAR(summary.data[k], expected[k], 6e-15 * (1 + std::abs(expected[k]))) << k;
        const record line = run(dsps_lin_regres, in);
        EXPECT_EQ(doubles_of(line), reals(summary.data, summary.data + 2));
        EXPECT_EQ(line.dx, 5.0);
      }
    }
}

TEST(Regression, DegeneratePoints) {
  const auto summary = [](const record &in) { return doubles_of(run(dsps_lin_regres2, in)); };
  reals expected(20, 0.0);
  EXPECT_EQ(summary(record()), expected);
  expected[1] = expected[15] = 7;
  EXPECT_EQ(summary(record(reals{7}, 0.5)), expected);
  expected[8] = expected[14] = 3;
  EXPECT_EQ(summary(record(complexes{{3, 7}})), expected);
  const reals flat = summary(record(reals{4, 4, 4}));
  EXPECT_EQ((reals{flat[0], flat[1], flat[7], flat[8], flat[10], flat[19]}), (reals{0, 4, bound, bound, 3 * bound, 0}));
  const reals exact = summary(record(reals{1, 3, 5}));
  EXPECT_EQ((reals{exact[0], exact[1], exact[2], exact[14], exact[15], exact[16], exact[19]}),
            (reals{2, 1, 0, 1, 3, 1, 1}));
  const reals upright = summary(record(complexes{{2, 1}, {2, 3}}));
  EXPECT_EQ((reals{upright[0], upright[1], upright[7], upright[8]}), (reals{bound, bound, 0, 2}));
  EXPECT_TRUE(std::isnan(summary(record(reals{1, nan, 2}))[0]));
  for (const double x : {2.3e-162, -2.3e-162})  // whose square is a subnormal number, and too small
    EXPECT_EQ(summary(record(complexes{{x, 1}, {x, 3}}))[6], std::copysign(1.0, -x));
}

TEST(Regression, RoundingLeavesTheRangeOfNoValue) {
  for (std::size_t n = 2; n < 60; ++n) {
    // Perfect lines, whose correlation rounds to either side of +-1.
    complexes line = random_complexes(n, static_cast<unsigned>(n)), far(n, complex(1e308, 0.0));
    for (const double slope : {0.3, -0.3}) {
      for (complex &z : line) z = {z.real(), slope * z.real()};
      const double r = run(dsps_lin_regres2, record(line)).data[19];
      EXPECT_NEAR(r, std::copysign(1.0, slope), 1e-14);
      EXPECT_LE(std::abs(r), 1.0) << n;
    }
    // About a rough mean that overflows each of them is worth -1e100.
    EXPECT_GE(run(dsps_lin_regres2, record(far)).data[16], 0.0) << n;
  }
}

TEST(Regression, Saturates) {
  // About the rough mean 0 the middle one of three is worth 1e100.
  const reals line = doubles_of(run(dsps_lin_regres, record(reals{0, -1, -1, 3e100, 1, 1, 0, 0, 0})));
  EXPECT_NEAR(line[1] / (1e100 / 9 + 4 * 1e100 / 60), 1.0, 1e-14);
  EXPECT_NEAR(line[0] / (-1e100 / 60), 1.0, 1e-14);
}

}  // namespace
