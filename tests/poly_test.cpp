// Zeros of polynomials, solutions, and coefficients from zeros.
#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <limits>

#include "dsp/dsp.h"
#include "tests/support/each_isa.h"
#include "tests/support/heap.h"
#include "tests/support/record.h"
#include "tests/support/wide.h"

namespace {

using namespace support;

const double inf = std::numeric_limits<double>::infinity();
const double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double eps = 0x1p-52;

record zeros_of(record c) {
  EXPECT_EQ(dspi_proots(&c), 0);
  EXPECT_EQ(c.is_complex, 1u);
  EXPECT_EQ(c.dx, 1.0);
  return c;
}

record coefficients_of(record z) {
  EXPECT_EQ(dspi_pztoc(&z), 0);
  EXPECT_EQ(z.dx, 1.0);
  return z;
}

// Fails each request for memory in turn, until the call makes no further one. A failing call returns -1 and leaves its
// record as it was. Returns the status of the last call.
template <class Call>
int32_t fail_each_request(const record &in, Call call) {
  for (long k = 1;; ++k) {
    record after = in;
    const long before = heap_requests();
    heap_fail(k);
    const int32_t status = call(&after);
    heap_fail(0);
    if (heap_requests() - before < k) return status;
    EXPECT_EQ(status, -1);
    EXPECT_TRUE(same(after, in)) << k;
  }
}

// |p(z)| over n eps and the sum of the moduli of all terms, in wide numbers; beyond the unit circle as a polynomial of
// 1/z.
double backward_error(const complexes &c, complex z) {
  const bool outside = std::abs(z) > 1.0;
  const wide size = wide(z.real()) * z.real() + wide(z.imag()) * z.imag();
  const wide x = outside ? z.real() / size : wide(z.real()), y = outside ? -z.imag() / size : wide(z.imag());
  wide re = 0, im = 0, terms = 0;
  for (std::size_t k = 0; k < c.size(); ++k) {
    const complex next = c[outside ? k : c.size() - 1 - k];
    const wide real = re * x - im * y + next.real();
    im = re * y + im * x + next.imag();
    re = real;
    terms = terms * sqrt(x * x + y * y) + std::abs(next);
  }
  return static_cast<double>(sqrt(re * re + im * im) / terms) / (eps * static_cast<double>(c.size() - 1));
}

void expect_in_order(const complexes &z, bool of_real) {
  for (std::size_t i = 0; i < z.size(); ++i) {
    const bool in_order = i == 0 || std::abs(z[i]) >= std::abs(z[i - 1]) * (1 - 8 * eps);
    EXPECT_TRUE(in_order) << z[i];
    if (!of_real || z[i].imag() == 0.0) continue;
    EXPECT_GT(z[i].imag(), 0.0);
    ASSERT_LT(i + 1, z.size());
    EXPECT_EQ(z[i + 1], std::conj(z[i]));
    ++i;
  }
}

void expect_zeros(const char *name, const record &c) {
  const complexes p = complexes_of(c), z = complexes_of(zeros_of(c));
  ASSERT_EQ(z.size() + 1, p.size()) << name;
  expect_in_order(z, c.is_complex == 0);
  double worst = 0;
  for (const complex each : z) worst = std::max(worst, backward_error(p, each));
  EXPECT_LE(worst, 4.0) << name << ' ' << z.size();
}

// The polynomial with the zeros z and their multiplicities; exact as long as doubles hold the coefficients.
reals with_zeros(const std::vector<std::pair<double, int>> &z) {
  reals c = {1};
  for (const auto &[zero, times] : z)
    for (int i = 0; i < times; ++i) {
      c.insert(c.begin(), 0.0);
      for (std::size_t k = 0; k + 1 < c.size(); ++k) c[k] -= zero * c[k + 1];
    }
  return c;
}

reals chebyshev(int n) {
  reals before = {1}, c = {0, 1};
  for (int k = 2; k <= n; ++k) {
    reals next(c.size() + 1, 0.0);
    for (std::size_t i = 0; i < c.size(); ++i) next[i + 1] = 2 * c[i];
    for (std::size_t i = 0; i < before.size(); ++i) next[i] -= before[i];
    before = c;
    c = next;
  }
  return c;
}

// Degree 2^n - 1: p[n+1] = z p[n]^2 + 1.
reals mandelbrot(int n) {
  reals c = {1};
  for (int k = 0; k < n; ++k) {
    reals next(2 * c.size(), 0.0);
    for (std::size_t i = 0; i < c.size(); ++i)
      for (std::size_t j = 0; j < c.size(); ++j) next[i + j + 1] += c[i] * c[j];
    next[0] = 1;
    c = next;
  }
  return c;
}

// Whether references have a wider range of exponents than a double; they do not where long double is a double.
constexpr bool wide_exponents = LDBL_MAX_EXP > DBL_MAX_EXP;

TEST(Zeros, HaveBackwardErrorsOfRounding) {
  on_each_isa([] {
    for (const std::size_t n : {1u, 2u, 3u, 5u, 10u, 17u, 50u, 200u})
      for (const bool is_complex : {false, true}) {
        expect_zeros("random", random_signal(n + 1, is_complex, static_cast<unsigned>(n)));
        complexes scaled = random_complexes(n + 1, 7);
        const reals exponents = random_reals(n + 1, 8);
        for (std::size_t k = 0; k <= n; ++k)
          scaled[k] *= std::pow(10.0, (wide_exponents ? 150.0 : 50.0) * exponents[k]);
        expect_zeros("scaled", signal_of(scaled, is_complex));
      }
    std::vector<std::pair<double, int>> to_twenty;
    for (int zero = 1; zero <= 20; ++zero) to_twenty.push_back({zero, 1});
    reals concave, convex, apart(31, 0.0);  // the last with zeros of modulus 1 and 2^60, or 2^20
    apart[0] = apart[10] = wide_exponents ? 0x1p600 : 0x1p200, apart[30] = 1.0 / apart[0];
    for (int k = 0; k < 200; ++k) {
      concave.push_back(std::exp2(-k * k / 40.0));
      convex.push_back(std::exp2(k * k / 40.0));
    }
    const std::pair<const char *, reals> named[] = {{"Wilkinson", with_zeros(to_twenty)},
                                                    {"Chebyshev", chebyshev(60)},
                                                    {"Mandelbrot", mandelbrot(6)},
                                                    {"ones", reals(201, 1.0)},
                                                    {"apart", apart},
                                                    {"concave", concave},
                                                    {"convex", convex},
                                                    {"tiny", {3e-310, -1e-309, 2e-310}},
                                                    {"huge", {1.7e308, -1.7e308, 1.1e308}}};
    for (const auto &[name, c] : named) expect_zeros(name, record(c));
  });
}

TEST(Zeros, AreFoundAsOftenAsTheyCount) {
  const std::vector<std::pair<double, int>> cases[] = {
      {{1, 2}}, {{1, 3}, {-2, 2}}, {{1, 10}}, {{0.5, 4}, {-1, 3}, {2, 2}}, {{0.875, 6}, {1.125, 6}}, {{1, 20}}};
  for (const auto &zeros : cases) {
    const reals c = with_zeros(zeros);
    const complexes z = complexes_of(zeros_of(record(c)));
    const auto n = static_cast<double>(z.size());
    for (const auto &[zero, times] : zeros) {
      double terms = 0, derivative = 0;  // that of order `times`, over its factorial
      for (std::size_t k = 0; k < c.size(); ++k) {
        double binomial = 1;
        for (int i = 0; i < times; ++i) binomial *= (static_cast<double>(k) - i) / (i + 1);
        terms += std::fabs(c[k] * std::pow(zero, k));
        derivative += c[k] * binomial * std::pow(zero, static_cast<double>(k) - times);
      }
      const double radius = 2 * std::pow(4 * n * eps * terms / std::fabs(derivative), 1.0 / times);
      const auto is_near = [&, centre = zero](complex each) { return std::abs(each - centre) <= radius; };
      EXPECT_GE(std::count_if(z.begin(), z.end(), is_near), times) << zero;
    }
  }
}

TEST(Zeros, ComeInOrder) {
  EXPECT_TRUE(near(zeros_of(record(reals{-1, 0, 0, 0, 1}, 3.0)), record(complexes{1, {0, 1}, {0, -1}, -1}), 0));
  EXPECT_TRUE(near(zeros_of(record(complexes{{0, -1}, 0, 1})),
                   record(complexes{std::polar(1.0, std::atan(1)), std::polar(1.0, 5 * std::atan(1))}), eps));
  EXPECT_TRUE(near(zeros_of(record(reals{0, 0, 2, -3, 1, 0, 0})), record(complexes{0, 0, 1, 2}), 0));
  EXPECT_TRUE(near(zeros_of(record(complexes{2, -3, 1})), record(complexes{1, 2}), 0));
  EXPECT_TRUE(near(zeros_of(record(reals{1.7e308, 1})), record(complexes{-1.7e308}), 0));
  EXPECT_TRUE(near(zeros_of(record(reals{5e-324, 1.7e308})), record(complexes{0}), 0));
  EXPECT_TRUE(near(zeros_of(record(reals{1e-200, 1, 1e200})), record(complexes{{-1e-200}, {-1e-200}}), 1e-200));
  for (const record &constant : {record(), record(reals{7}), record(complexes{{0, 1}}), record(reals{7, 0})})
    EXPECT_TRUE(near(zeros_of(constant), record(complexes()), 0));
  complexes unity = complexes_of(zeros_of([] {
    reals c(201, 0.0);
    c[0] = -1, c[200] = 1;
    return record(c);
  }()));
  for (std::size_t i = 0; i < 200; ++i) {
    const double phase = 2 * M_PI * static_cast<double>((i + 1) / 2) / 200;
    EXPECT_LE(std::abs(unity[i] - std::polar(1.0, i % 2 == 1 || i == 0 ? phase : -phase)), 6e-16) << i;
  }
}

// A buffer that is large enough serves; another is replaced. What fails leaves everything as it was.
TEST(Zeros, KeepTheRecord) {
  reals room = {2, 0, -3, 0, 1, 0};
  dsp_vec v = borrow(room);
  v.is_complex = 1, v.length = 3;
  EXPECT_EQ(dspi_proots(&v), 0);
  EXPECT_EQ(v.data, room.data());
  EXPECT_EQ(room, (reals{1, 0, 2, 0, 1, 0}));
  EXPECT_EQ(dspi_pztoc(&v), 0);
  EXPECT_EQ(v.data, room.data());
  EXPECT_TRUE(near(v, record(reals{2, -3, 1}), 0));
  EXPECT_EQ(dspi_pztoc(&v), 0);
  EXPECT_NE(v.data, room.data());
  EXPECT_EQ(room[0], 2);
  dsp_destroy(&v);
  record roomy(reals{1, 2, 7, 7, 7});
  roomy.length = 2;
  const double *const before = roomy.data;
  EXPECT_EQ(dspi_pztoc(&roomy), 0);
  EXPECT_EQ(roomy.data, before);
  for (const auto routine : {dspi_proots, dspi_pztoc}) {
    const record of_zeros(reals{1, inf}), of_nan(complexes{{1, nan}, 2});
    for (const record &in : {of_zeros, of_nan}) {
      record after = in;
      EXPECT_EQ(routine(&after), -1);
      EXPECT_TRUE(same(after, in));
    }
    const record in = random_signal(12, true, 3, 0.5);
    EXPECT_EQ(fail_each_request(in, routine), 0);
  }
  for (const reals &refused : {reals{0}, reals{0, 0}, reals{1.7e308, 1e-300}, reals{1e10, 1, 1e-320}}) {
    record after(refused, 2.0);
    EXPECT_EQ(dspi_proots(&after), -1);
    EXPECT_TRUE(same(after, record(refused, 2.0)));
  }
  dsp_vec endless = {1, nullptr, 0, std::numeric_limits<int32_t>::max(), 0, 0};
  EXPECT_EQ(dspi_pztoc(&endless), -1);
}

TEST(Coefficients, AreTheProductOfTheZeros) {
  EXPECT_TRUE(near(coefficients_of(record(reals{1, 2}, 3.0)), record(reals{2, -3, 1}), 0));
  EXPECT_TRUE(near(coefficients_of(record()), record(reals{1}), 0));
  EXPECT_TRUE(near(coefficients_of(record(complexes{{0, 1}, 0, {0, -1}, 0})), record(reals{0, 0, 1, 0, 1}), 0));
  EXPECT_TRUE(near(coefficients_of(record(complexes{{0, 1}, 3})), record(complexes{{0, 3}, {-3, -1}, 1}), 0));
  EXPECT_TRUE(near(coefficients_of(record(complexes{{1, 1}, {1, -2}})), record(complexes{{3, -1}, {-2, 1}, 1}), 0));
  EXPECT_TRUE(near(coefficients_of(record(reals{2, -2, 1})), record(reals{4, -4, -1, 1}), 0));
  EXPECT_TRUE(
      near(coefficients_of(record(complexes{{0, 2}, {0, 1}, 3})), record(complexes{6, {-2, 9}, {-3, -3}, 1}), 0));
  EXPECT_TRUE(
      near(coefficients_of(record(complexes{{1, 2}, {1, 1}, {1, -1}, {1, -2}})), record(reals{10, -14, 11, -4, 1}), 0));
  EXPECT_TRUE(near(coefficients_of(record(complexes{{1, 1}, {2, -1}})), record(complexes{{3, 1}, -3, 1}), 0));
  EXPECT_TRUE(near(coefficients_of(record(reals{1e200, 1e-200, 1e-200})), record(reals{-1e-200, 2, -1e200, 1}), 1e184));
  EXPECT_EQ(doubles_of(coefficients_of(record(reals{1.5e308, 1e308}))), (reals{inf, -inf, 1}));
  const reals powers = doubles_of(coefficients_of(record(reals(1100, -1.0))));
  EXPECT_EQ(powers[550], inf);
  EXPECT_NEAR(powers[3], 1100.0 * 1099 * 1098 / 6, 1e-6);

  complexes unity;
  for (int k = 0; k < 200; ++k) unity.push_back(std::polar(1.0, 2 * M_PI * (k % 50) / 50));
  const complexes fourfold = complexes_of(coefficients_of(record(unity)));  // (z^50 - 1)^4
  for (std::size_t k = 0; k <= 200; ++k) {
    const double expected[] = {1, -4, 6, -4, 1};
    EXPECT_LE(std::abs(fourfold[k] - (k % 50 == 0 ? expected[k / 50] : 0.0)), 1e-12) << k;
  }

  reals spread = random_reals(92, 4);
  std::vector<wide> expected = {1};
  for (std::size_t i = 0; i < 92; ++i) {
    spread[i] = (i % 2 == 0 || i > 84 ? -1e-7 : -1e7) * (1 + 0.1 * spread[i]);
    expected.insert(expected.begin(), 0);
    for (std::size_t k = 0; k <= i; ++k) expected[k] -= expected[k + 1] * spread[i];
  }
  const reals got = doubles_of(coefficients_of(record(spread)));
  for (std::size_t k = 0; k <= 92; ++k) EXPECT_NEAR(static_cast<double>(got[k] / expected[k]), 1.0, 1e-12) << k;

  for (const std::size_t n : {1u, 10u, 50u}) {
    const record c = random_signal(n + 1, n == 10, 5);
    const complexes there = complexes_of(c), back = complexes_of(coefficients_of(zeros_of(c)));
    double sum = 0;
    for (const complex each : there) sum += std::abs(each / there[n]);
    for (std::size_t k = 0; k <= n; ++k) EXPECT_LE(std::abs(back[k] - there[k] / there[n]), 1e-12 * sum);
  }
}

reals solutions(const reals &c, double y) {
  record out;
  out.dx = 4.0;
  const record in(c);
  EXPECT_EQ(dsps_psolve(&in, &out, y), 0);
  EXPECT_EQ(out.is_complex, 0u);
  EXPECT_EQ(out.dx, 1.0);
  return doubles_of(out);
}

TEST(Solutions, AreThoseOnTheAxis) {
  EXPECT_EQ(solutions({0, 0, 1}, 4), (reals{-2, 2}));
  EXPECT_EQ(solutions({0, 0, 1}, -4), reals());
  EXPECT_EQ(solutions({0, 0, 0, 1, 0}, 0), (reals{0, 0, 0}));
  EXPECT_EQ(solutions({3}, 4), reals());
  EXPECT_EQ(solutions({}, 4), reals());
  EXPECT_EQ(solutions({1e308, 2}, -1.5e308), reals{-1.25e308});
  EXPECT_EQ(solutions({1e10, 0, 1}, 1e10 + 1e-8).size(), 2u);
  EXPECT_EQ(solutions({1e10, 0, 1}, 1e10 - 1e-6), (reals{0, 0}));  // rounding of y moves that off the axis
  EXPECT_EQ(solutions({1, 0, 1e-16}, 0), reals());
  EXPECT_EQ(solutions({1e306, 1e306, 1e306}, 0), reals());
  EXPECT_EQ(solutions({1e308, 0, 0, 0, 0, 0, 0, 0, 0, 0, 5e-324}, 0), reals());  // terms below the least double
  EXPECT_EQ(solutions({0x1p-470, -0x1p-769, 0x1p-1070}, 0).size(), 2u);
  const reals sixfold = solutions(with_zeros({{8, 6}, {-1, 1}}), 0);
  ASSERT_EQ(sixfold.size(), 7u);
  EXPECT_NEAR(sixfold[3], 8, 0.2);
  const reals calibration = {0.1, 2.0, -0.3, 0.05};
  const record c(calibration);
  for (const double x : solutions(calibration, 1.5)) {
    record value;
    dsps_peval(&c, &value, x);
    EXPECT_NEAR(value.data[0], 1.5, 1e-15);
  }
  record both(reals{-2, 0, 1});
  EXPECT_EQ(dsps_psolve(&both, &both, 2), 0);  // the output may be the input
  EXPECT_EQ(doubles_of(both), (reals{-2, 2}));
}

TEST(Solutions, OfComplexEquations) {
  record out;
  const record square(reals{0, 0, 1}), turned(complexes{0, {0, 1}});
  EXPECT_EQ(dsps_pcsolve(&square, &out, -4, 0), 0);
  EXPECT_TRUE(near(out, record(complexes{{0, 2}, {0, -2}}), 0));
  EXPECT_EQ(dsps_pcsolve(&square, &out, 0, 2), 0);
  EXPECT_TRUE(near(out, record(complexes{{1, 1}, {-1, -1}}), 1e-15));
  EXPECT_EQ(dsps_pcsolve(&turned, &out, 1, 1), 0);
  EXPECT_TRUE(near(out, record(complexes{{1, -1}}), 1e-15));
}

TEST(Solutions, AreRefused) {
  const record out(reals{1, 2, 3}, 0.5);
  const auto refuses = [&](const record &c, double re, double im) {
    record after = out;
    EXPECT_EQ(dsps_psolve(&c, &after, im == 0.0 ? re : im), -1);
    EXPECT_TRUE(same(after, out));
    if (c.is_complex != 0 && c.data[0] == 1.0) return;
    EXPECT_EQ(dsps_pcsolve(&c, &after, re, im), -1);
    EXPECT_TRUE(same(after, out));
  };
  refuses(record(complexes{1, 2}), 0, 0);
  refuses(record(reals{5}), 5, 0);
  refuses(record(reals{5, 0}), 5, 0);
  refuses(record(), 0, 0);
  refuses(record(reals{5, inf}), 1, 0);
  refuses(record(reals{5, 1}), nan, 0);
  refuses(record(reals{5, 1}), 0, inf);
  refuses(record(reals{1, 1e-320}), 0, 0);
  const record c = random_signal(9, false, 2);
  EXPECT_EQ(fail_each_request(out, [&](record *v) { return dsps_psolve(&c, v, 0.1); }), 0);
  EXPECT_EQ(fail_each_request(out, [&](record *v) { return dsps_pcsolve(&c, v, 0.1, 0.2); }), 0);
}

}  // namespace
