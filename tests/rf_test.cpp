// The matrix template, products and inverses of plain arrays, one-port error terms, circles and arcs.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <new>

#include "dsp/dsp.h"
#include "dsp/rf/matrix.h"
#include "tests/support/each_isa.h"
#include "tests/support/heap.h"
#include "tests/support/record.h"
#include "tests/support/wide.h"

namespace {

using namespace support;
using exact = std::complex<long double>;
using cmatrix = matrix<complex>;
using elements = dsp::matrix_elements<complex>;

constexpr int32_t huge = std::numeric_limits<int32_t>::max();

dsp_complex *points(complexes &z) { return reinterpret_cast<dsp_complex *>(z.data()); }
const dsp_complex *points(const complexes &z) { return reinterpret_cast<const dsp_complex *>(z.data()); }

// Replaces the measured standards g by the error terms; a: the actual ones.
void compute_terms(complexes (&g)[3], const complexes (&a)[3], int32_t first, int32_t end) {
  Compute1PortTerms(points(g[0]), points(g[1]), points(g[2]), points(a[0]), points(a[1]), points(a[2]), first, end);
}

// An element in whose namespace functions have the names of the matrix's own helpers.
namespace crowded {
struct number {
  double x;
  number(double value = 0) : x(value) {}
  friend number operator+(number a, number b) { return a.x + b.x; }
  friend number operator-(number a, number b) { return a.x - b.x; }
  friend number operator*(number a, number b) { return a.x * b.x; }
  friend number operator/(number a, number b) { return a.x / b.x; }
  friend double abs(number a) { return std::abs(a.x); }
};
[[maybe_unused]] inline void product(const number &, const number &) {}
[[maybe_unused]] inline void reciprocal(const number &) {}
[[maybe_unused]] inline void find_pivot(const number *, std::size_t, std::size_t) {}
[[maybe_unused]] inline void multiply(const number *, const number *, number *, std::size_t, std::size_t, std::size_t) {
}
}  // namespace crowded

template <class T>
class MatrixOf : public testing::Test {};
using fields = testing::Types<complex, std::complex<float>, double, crowded::number>;
TYPED_TEST_SUITE(MatrixOf, fields);

TYPED_TEST(MatrixOf, InverseUndoesTheProduct) {
  using dsp::field::modulus;
  for (const uint32_t n : {0u, 1u, 2u, 3u, 4u, 17u, 33u}) {
    std::vector<TypeParam> by_row;
    for (const complex v : random_complexes(n * n, n))
      if constexpr (!std::is_constructible_v<TypeParam, complex>)
        by_row.push_back(v.real());
      else
        by_row.push_back(TypeParam(v));
    const matrix<TypeParam> a(n, n, by_row.data(), 0), transposed(n, n, by_row.data(), 1);
    matrix<TypeParam> inverse(a);
    ASSERT_TRUE(inverse.inv());
    const auto from_left = inverse * a, from_right = a * inverse;
    const double tolerance = (std::is_same_v<TypeParam, std::complex<float>> ? 1e-5 : 1e-14) * n * n;
    for (uint32_t i = 0; i < n; ++i)
      for (uint32_t j = 0; j < n; ++j) {
        for (const auto *unit : {&from_left, &from_right})
          EXPECT_LE(modulus((*unit)(i, j) - TypeParam(i == j ? 1 : 0)), tolerance) << n;
        EXPECT_EQ(modulus(transposed(i, j) - a.row(j)[i]), 0.0);
      }
  }
}

TEST(Matrix, RefusesMisuseInFixedWords) {
  cmatrix a(2, 3), b(2, 3);
  const cmatrix &constant = a;
  const std::pair<std::function<void()>, std::string> cases[] = {
      {[&] { a.row(2); }, "range matrix<T>::row: subscript is out of range!"},
      {[&] { constant.row(static_cast<uint32_t>(-1)); }, "range matrix<T>::row: subscript is out of range!"},
      {[&] { a.row(1)[3]; }, "range matrix<T>::operator[][]: Subscript out of range!"},
      {[&] { a(2, 0); }, "range matrix<T>::operator(): subscript is out of range!"},
      {[&] { constant(0, 3); }, "range matrix<T>::operator(): subscript is out of range!"},
      {[&] { a *= b; }, "argument matrix<T>::operator*=: Inconsistent matrix size in multiplication!"},
      {[&] { a *b; }, "argument matrix<T>::operator*=: Inconsistent matrix size in multiplication!"},
      {[&] { a.inv(); }, "argument matrix<T>::inv(): Inversion of non-square matrix!"},
      {[&] { cmatrix(1u << 30, 1u << 30); }, std::bad_alloc().what()},
      {[&] { cmatrix(1u << 31, 1u << 31); }, std::bad_alloc().what()},
  };
  for (const auto &[misuse, expected] : cases) {
    std::string caught;
    try {
      misuse();
    } catch (const std::exception &e) {
      const bool range = dynamic_cast<const std::out_of_range *>(&e) != nullptr;
      const bool argument = dynamic_cast<const std::invalid_argument *>(&e) != nullptr;
      caught = std::string(range ? "range " : argument ? "argument " : "") + e.what();
    }
    EXPECT_EQ(caught, expected);
  }
}

TEST(Matrix, HandlesShareUntilInvertedOrMultiplied) {
  const complex values[] = {2.0, 0.0, 0.0, 4.0};
  cmatrix a(2, 2, values, 0), b(a), c(b);
  a.row(0)[1] = 1.0;
  EXPECT_EQ(b(0, 1), 1.0);
  const auto row = b.row(0);
  ASSERT_TRUE(b.inv());
  EXPECT_EQ(b(0, 0), 0.5);
  row[0] = 8.0;
  EXPECT_EQ(a(0, 0), 8.0);
  a *= a;
  EXPECT_EQ(a(0, 0), 64.0);
  EXPECT_EQ(c(0, 0), 8.0);
  a = *&a;
  c = a;
  EXPECT_EQ(c.data(), a.data());
}

TEST(Matrix, ReleasedElementsServeTheNextOfTheirShape) {
  {
    const cmatrix keeps_the_pool(1, 1);
    const auto of_shape = [](uint32_t i) { return cmatrix(1 + i / 2, 2 + i % 2); };
    std::array<complex *, 5> released{};
    for (uint32_t i = 0; i < 5; ++i) released[i] = of_shape(i).data();
    EXPECT_EQ(elements::live(), 1);
    for (const uint32_t i : {1u, 4u, 2u, 3u}) EXPECT_EQ(of_shape(i).data(), released[i]);
    const cmatrix first = of_shape(1), second = of_shape(1);
    EXPECT_EQ(first.data(), released[1]);
    EXPECT_NE(second.data(), released[1]);
  }
  EXPECT_EQ(elements::live(), 0);
}

// Its destructor makes a matrix of its own type, also while the pool is being emptied.
struct restless {
  static inline int depth = 0;
  restless() = default;
  restless(const restless &) = default;
  ~restless() {
    if (depth++ == 0) matrix<restless>(1, 1);
    --depth;
  }
};

TEST(Matrix, ElementsMayUseMatricesWhileTheyAreReleased) {
  for (const uint32_t n : {1u, 2u}) matrix<restless>(n, 1);
  {
    const matrix<restless> keeps_the_pool(1, 1), other(2, 2);
    matrix<restless>(3, 3);
  }
  EXPECT_EQ(dsp::matrix_elements<restless>::live(), 0);
}

struct brittle {
  static inline int copies_left = 0;
  brittle() = default;
  brittle(const brittle &) = default;
  brittle &operator=(const brittle &) { return copies_left-- > 0 ? *this : throw std::runtime_error("copy"); }
};

TEST(Matrix, FailedConstructionLeavesNothingBehind) {
  const brittle array[4];
  brittle::copies_left = 2;
  EXPECT_THROW(matrix<brittle>(2, 2, array, 0), std::runtime_error);
  EXPECT_EQ(dsp::matrix_elements<brittle>::live(), 0);
  const raising heap;
  for (const long k : {1, 2}) {
    heap_fail(k);
    EXPECT_THROW(cmatrix(2, 2), std::bad_alloc);
  }
  EXPECT_EQ(elements::live(), 0);
}

TEST(Field, QuotientsAndModuliReachAsFarAsTheirResults) {
  using dsp::field::modulus, dsp::field::reciprocal;
  const double parts[] = {0.0, 5e-324, 3e-310, 2e-200, 1e-154, 0.7, 3.0, 1e154, 2e200, 1e308};
  for (const double re : parts)
    for (const double im : parts) {
      if (re + im == 0.0) continue;
      const complex z(re, -im), got = reciprocal(z);
      const int power = std::ilogb(std::max(re, im));
      const double x = std::ldexp(re, -power), y = std::ldexp(im, -power), square = x * x + y * y;
      const std::pair<double, double> results[] = {{std::ldexp(x / square, -power), got.real()},
                                                   {std::ldexp(y / square, -power), got.imag()},
                                                   {std::ldexp(std::sqrt(square), power), modulus(z)}};
      for (const auto &[expected, result] : results)
        EXPECT_TRUE(result == expected || std::abs(result - expected) <= 1e-15 * expected + 5e-324) << z;
    }
  const double inf = std::numeric_limits<double>::infinity(), nan = std::nan("");
  for (const complex z : {complex(-inf, 1.0), {2.0, inf}, {inf, -inf}}) {
    EXPECT_EQ(modulus(z), inf);
    EXPECT_EQ(reciprocal(z), 0.0);
  }
  for (const complex z : {complex(nan, 1.0), {0.0, nan}})
    EXPECT_TRUE(std::isnan(modulus(z)) && std::isnan(reciprocal(z).real()) && std::isnan(reciprocal(z).imag()));
}

TEST(Arrays, ProductAgainstSums) {
  for (const auto [m, k, p] : {std::array{3, 2, 4}, {5, 5, 1}, {9, 7, 26}, {1, 1, 1}, {3, 0, 2}, {0, 0, 5}}) {
    const auto size = [](int rows, int columns) { return static_cast<std::size_t>(rows * columns); };
    const complexes a = random_complexes(size(m, k), 1), b = random_complexes(size(k, p), 2);
    complexes expected;
    for (int at = 0; at < m * p; ++at) {
      exact sum = 0;
      for (int t = 0; t < k; ++t)
        sum += exact(a[size(at / p, k) + size(t, 1)]) * exact(b[size(t, p) + size(at % p, 1)]);
      expected.emplace_back(sum);
    }
    expected.push_back(7.0);  // and nothing behind
    on_each_isa([&, m = m, k = k, p = p] {
      complexes out(expected.size(), 7.0);
      ASSERT_EQ(MatrixMult(points(a), points(b), points(out), m, k, p), m * p);
      EXPECT_TRUE(near(record(out), expected, 2e-15));
    });
  }
}

TEST(Arrays, InverseAgainstTheStandardElements) {
  for (const uint32_t n : {1u, 3u, 8u, 33u}) {
    const complexes z = random_complexes(n * n, 9 + n);
    cmatrix expected(n, n, z.data(), 0);
    ASSERT_TRUE(expected.inv());
    on_each_isa([&] {
      complexes m = z;
      ASSERT_EQ(invert(points(m), static_cast<int32_t>(n)), 1);
      EXPECT_EQ(m, complexes(expected.data(), expected.data() + n * n));
    });
  }
  // In the second column both squares overflow; the smaller pivot would lose -1e-300.
  complexes m = {1.0, 0.0, 1.0, 0.0, 1e180, 1.0, 0.0, 1e300, 1.0};
  cmatrix standard(3, 3, m.data(), 0);
  EXPECT_TRUE(standard.inv() && invert(points(m), 3) == 1);
  for (const complex z : {m[4], standard(1, 1)}) EXPECT_NEAR(z.real() * 1e300, -1.0, 1e-12);
}

TEST(Arrays, RefuseWhatTheyMust) {
  complexes a(64, 1.0), out(64, 7.0);
  const std::array<int32_t, 3> sizes[] = {{2, 3, 1},     {-1, 1, 1},        {1, -1, 1},   {1, 1, -1},  {0, 1, 1},
                                          {1, 65536, 1}, {65536, 0, 65536}, {huge, 0, 2}, {1, huge, 1}};
  for (const auto &[m, k, p] : sizes)
    EXPECT_EQ(MatrixMult(points(a), points(a), points(out), m, k, p), -1) << m << " " << k;
  EXPECT_EQ(out, complexes(64, 7.0));
  const std::pair<complexes, int32_t> cases[] = {{{1.0, 0.0, 0.0, 0.0}, 0},
                                                 {{1e-12, 0.0, 0.0, 1e-12}, 0},
                                                 {{3e-12, 0.0, 0.0, 3e-12}, 1},
                                                 {{0.0, 1.0, 1.0, 0.0}, 1}};
  for (const auto &[z, expected] : cases) {
    complexes m = z;
    EXPECT_EQ(invert(points(m), 2), expected);
    for (std::size_t i = 0; i < 4; ++i) EXPECT_EQ(m[i], z[0] == 3e-12 && z[i] != 0.0 ? 1.0 / z[i] : z[i]);
    EXPECT_EQ(invert(points(m), 0) + invert(points(m), -5), 0);
  }
}

// Three standards about short, open and load, `spread` apart, behind random lossy error boxes; all six arrays come back
// from the solution, and the terms it should have found.
TEST(OnePort, FindsTheErrorBox) {
  for (const double spread : {1.0, 0.1}) {
    const std::size_t n = 101;
    complexes g[3], a[3], terms[3] = {random_complexes(n, 1), random_complexes(n, 2), random_complexes(n, 3)};
    for (std::size_t i = 0; i < n; ++i) {
      complex &e00 = terms[0][i] *= 0.2, &e11 = terms[1][i] *= 0.2, &tracking = terms[2][i] = 0.8 + 0.3 * terms[2][i];
      for (std::size_t k = 0; k < 3; ++k) {
        const complex actual = spread * (static_cast<double>(k) - 1.0 + 0.05 * terms[k][(i + 1) % n]);
        a[k].push_back(actual);
        g[k].push_back(e00 + tracking * actual / (1.0 - e11 * actual));
      }
    }
    complexes got[] = {g[0], g[1], g[2]};
    compute_terms(got, a, 50, 50);
    compute_terms(got, a, 7, -7);
    compute_terms(got, a, 3, 99);
    for (std::size_t k = 0; k < 3; ++k)
      for (std::size_t i = 0; i < n; ++i) {
        const bool inside = i >= 3 && i < 99;
        EXPECT_LE(std::abs(got[k][i] - (inside ? terms : g)[k][i]), inside ? 2e-14 / (spread * spread) : 0.0) << i;
      }
  }
  complexes ideal[] = {{1.0}, {-1.0}, {0.0}};
  compute_terms(ideal, ideal, 0, 1);  // the terms overwrite the actual standards
  for (const int k : {0, 1, 2}) EXPECT_EQ(ideal[k][0], k == 2 ? 1.0 : 0.0);
}

// The same bits as the inverse of each point's matrix: for any order of pivots, a singular point, tiny and huge
// standards.
TEST(OnePort, StepsAreThoseOfTheMatrix) {
  const std::size_t n = 61;
  complexes g[3], a[3], expected[3];
  for (unsigned k = 0; k < 3; ++k) {
    g[k] = random_complexes(n, k);
    a[k] = random_complexes(n, 3 + k);
    const complex singular[] = {0.5, 0.5, {0.0, 1.0}};
    a[k][20] = g[k][20] = singular[k];
    a[k][36] *= 1e-11, g[k][36] *= 1e-11;
    a[k][47] *= 1e160;
  }
  for (std::size_t i = 0; i < n; ++i) {
    cmatrix m(3, 3), b(3, 1);
    for (uint32_t r = 0; r < 3; ++r) {
      m(r, 0) = a[r][i], m(r, 1) = 1.0, b(r, 0) = g[r][i];
      m(r, 2) = dsp::field::product(-a[r][i], g[r][i]);
    }
    EXPECT_EQ(m.inv(), i != 20 && i != 36) << i;
    const cmatrix x = m * b;
    expected[0].push_back(x(1, 0));
    expected[1].push_back(-x(2, 0));
    expected[2].push_back(x(0, 0) - dsp::field::product(x(1, 0), x(2, 0)));
  }
  on_each_isa([&] {
    complexes e[] = {g[0], g[1], g[2]};
    compute_terms(e, a, 0, static_cast<int32_t>(n));
    for (std::size_t k = 0; k < 3; ++k) EXPECT_TRUE(same(record(e[k]), record(expected[k]))) << k;
  });
}

struct circle {
  complex centre;
  double radius, rms;
};

int32_t fit_circle(const complexes &z, circle *c) {
  dsp_complex centre = {-7.0, -7.0};
  c->radius = c->rms = -7.0;
  const int32_t status = vfpd_CircleFit(points(z), 0, static_cast<int32_t>(z.size()), &centre, &c->radius, &c->rms);
  c->centre = {centre.re, centre.im};
  return status;
}

// Points of an arc, with errors of up to `noise` in their distances from the centre.
complexes noisy_arc(complex centre, double radius, double span, std::size_t n, double noise) {
  complexes z;
  for (const double r : random_reals(n, 5))
    z.push_back(centre + std::polar(radius + noise * r,
                                    0.4 + span * static_cast<double>(z.size()) / static_cast<double>(n - 1)));
  return z;
}

// Centre and radius after a Gauss-Newton step from c, in wide numbers.
complex gauss_newton_step(const complexes &z, const circle &c, double *of_radius) {
  wide m[3][4] = {};
  for (const complex p : z) {
    const wide x = wide(p.real()) - c.centre.real(), y = wide(p.imag()) - c.centre.imag();
    const wide d = sqrt(x * x + y * y), row[] = {x / d, y / d, 1, d - c.radius};
    for (int i = 0; i < 3; ++i)
      for (int j = 0; j < 4; ++j) m[i][j] += row[i] * row[j];
  }
  for (int k = 0; k < 3; ++k)
    for (int i = 0; i < 3; ++i) {
      const wide f = i == k ? wide(0) : m[i][k] / m[k][k];
      for (int j = k; j < 4; ++j) m[i][j] -= f * m[k][j];
    }
  *of_radius = static_cast<double>(m[2][3] / m[2][2]);
  return {static_cast<double>(m[0][3] / m[0][0]), static_cast<double>(m[1][3] / m[1][1])};
}

TEST(CircleFit, IsTheLeastSquaresSolution) {
  for (const double degrees : {5.0, 20.0, 90.0, 180.0, 355.0})
    for (const double noise : {0.0, 0.01, 0.1})
      for (const double scale : {1.0, 1e-150, 1e149, 1e-6, 1e3})
        for (const std::size_t n : {3u, 12u, 201u}) {
          const double span = degrees * M_PI / 180, rise = degrees < 180 ? 1 - std::cos(span / 2) : 1.0;
          const complex middle = scale == 1e-6 ? complex(1e3, -20) : scale * complex(0.3, 0.2);
          const complexes z = noisy_arc(middle, scale, span, n, scale * rise * noise);
          circle c;
          ASSERT_EQ(fit_circle(z, &c), 0) << degrees << ' ' << noise << ' ' << scale << ' ' << n;
          circle unit = c;  // in the scale of the circle, where squares are in range
          complexes scaled = z;
          for (complex &p : scaled) p /= scale;
          unit.centre /= scale, unit.radius /= scale;
          double of_radius;
          const complex step = gauss_newton_step(scaled, unit, &of_radius);
          const double rounding = 2e-16 * std::abs(unit.centre) * (rise < 1 ? 1 / rise : 1);
          EXPECT_LE(std::abs(step), 1e-10 * unit.radius + 2 * rounding) << degrees << ' ' << noise << ' ' << scale;
          EXPECT_LE(std::fabs(of_radius), 1e-10 * unit.radius + 2 * rounding)
              << degrees << ' ' << noise << ' ' << scale;
          double squares = 0;
          for (const complex p : scaled) squares += std::pow(std::abs(p - unit.centre) - unit.radius, 2);
          EXPECT_NEAR(c.rms / scale, std::sqrt(squares / static_cast<double>(n)), 1e-14 + 2 * rounding);
        }
  dsp_complex centre;
  double radius;
  const complexes z = noisy_arc(2, 3, 1, 9, 0);
  EXPECT_EQ(vfpd_CircleFit(points(z), 2, 8, &centre, &radius, nullptr), 0);
  EXPECT_NEAR(radius, 3, 1e-13);
  const complexes square = {0, 1, {0, 1}, {1, 1}, {0.5, 0.5}};  // a point where the first circle has its centre
  circle c;
  EXPECT_EQ(fit_circle(square, &c), 0);
  EXPECT_LT(c.rms, 0.25);
}

TEST(CircleFit, RefusesWhatHasNoCircle) {
  const double inf = std::numeric_limits<double>::infinity();
  complexes line, zigzag, wide_arc;  // the last with a radius of 2e308
  for (int k = 0; k < 10; ++k) {
    line.emplace_back(0.1 * k, 0.3 * k + 0.1);
    zigzag.emplace_back(k, k % 2 == 0 ? 1 : -1);
    wide_arc.push_back(1e308 * (complex(-1.2, -1.2) + std::polar(2.0, 0.65 + 0.03 * k)));
  }
  circle c;
  for (const complexes &z : {complexes{}, complexes{0, {1, 1}}, complexes(5, {1, 1}), complexes(4, 0.0), line, zigzag,
                             complexes{0, {0, inf}, 1}, complexes{0, 1, {std::nan(""), 0}}, complexes{0, {1, 1e-16}, 2},
                             complexes{-1.7e308, 1.7e308, {0, 1e300}}, wide_arc}) {
    EXPECT_EQ(fit_circle(z, &c), -1) << z.size();
    EXPECT_EQ(c.centre, complex(-7, -7));
    EXPECT_EQ(c.radius, -7);
    EXPECT_EQ(c.rms, -7);
  }
}

complexes interpolate(const reals &x, const complexes &z, const reals &xi, int32_t status = 0) {
  complexes zi(xi.size(), -7.0);
  EXPECT_EQ(CircularInterpolation(x.data(), points(z), static_cast<int32_t>(z.size()), xi.data(), points(zi),
                                  static_cast<int32_t>(xi.size())),
            status);
  return zi;
}

// A reflection behind a length of line, also one so short that its arc is straight but for rounding.
TEST(Arcs, ReproduceReflections) {
  const reals x = {0, 0.7, 1.5, 2.5, 3.1, 4};
  const reals xi = {3.3, -0.2, 0, 0.3, 2.5, 1.1, 4.2, 3.6, 2.0, 4, 0.7};
  for (const double turn : {1e-13, 1e-8, 1e-4, 0.1, 1.0, -2.0, 3.0})
    for (const double radius : {1e-3, 1.0, 1e3})
      for (const double scale : {1.0, 1e-300, 1e200}) {
        const auto reflection = [&](double at) {
          return scale * (complex(-radius, 0.2) + std::polar(radius, turn * at + 1));
        };
        complexes z;
        double largest = 0;
        for (const double at : x) {
          z.push_back(reflection(at));
          largest = std::max(largest, std::abs(z.back()));
        }
        const complexes zi = interpolate(x, z, xi);
        for (std::size_t i = 0; i < xi.size(); ++i)
          EXPECT_LE(std::abs(zi[i] - reflection(xi[i])), 1e-13 * largest) << turn << ' ' << radius << ' ' << xi[i];
      }
}

TEST(Arcs, KnownValues) {
  const double nan = std::nan("");
  const double h = std::sqrt(0.5);
  const auto close = [](const complexes &a, const complexes &b) { return near(record(a), record(b), 1e-15); };
  // To and fro on a line, by parabolas; half circles, counter-clockwise; a node's value is exact.
  EXPECT_TRUE(close(interpolate({0, 1, 2, 3}, {0, 1, 0, 1}, {0.5, 1.5, 2.5, 1}), {0.75, 0.5, 0.25, 1}));
  EXPECT_TRUE(close(interpolate({0, 1, 2}, {1, -1, {0, -1}}, {0.5}), {std::polar(1.0, 9 * M_PI / 16)}));
  EXPECT_TRUE(close(interpolate({0, 1, 2}, {1, {0, 1}, -1}, {0.5, 1.5}), {{h, h}, {-h, h}}));
  EXPECT_TRUE(close(interpolate({0, 1, 2}, {-1, {0, 1}, 1}, {0.5, 1.5}), {{-h, h}, {h, h}}));
  EXPECT_TRUE(close(interpolate({5}, {{0, 3}}, {1, 9}), {{0, 3}, {0, 3}}));
  EXPECT_TRUE(close(interpolate({0, 2}, {0, {0, 4}}, {1, 3}), {{0, 2}, {0, 6}}));
  EXPECT_TRUE(close(interpolate({0, 1, 2, 3}, {2, 2, 2, 2}, {0.3, 9}), {2, 2}));
  // The mean of two curves: half a turn up to node 2, a straight line from there on.
  const complex left = interpolate({0, 1, 2}, {1, {0, 1}, -1}, {1.25})[0];
  const complex right = interpolate({1, 2, 3}, {{0, 1}, -1, {-2, -1}}, {1.25})[0];
  EXPECT_TRUE(close(interpolate({0, 1, 2, 3}, {1, {0, 1}, -1, {-2, -1}}, {1.25}), {0.75 * left + 0.25 * right}));

  const complexes spoilt =
      interpolate({0, 1, 2, 3, 4, 5}, {1, {nan, 0}, 2, {3, 1}, 4, {0, 5}}, {2.5, 3.5, 4.5, 2, nan});
  for (std::size_t i = 0; i < 5; ++i) EXPECT_EQ(std::isnan(spoilt[i].real()), i == 0 || i == 4) << i;
  EXPECT_EQ(interpolate({}, {}, {1}, -1), complexes{-7});
  EXPECT_EQ(interpolate({0, 1, 1}, {1, 2, 3}, {1}, -1), complexes{-7});
  EXPECT_EQ(interpolate({0, nan, 1}, {1, 2, 3}, {1}, -1), complexes{-7});
  EXPECT_EQ(interpolate({nan}, {1}, {1}, -1), complexes{-7});
  EXPECT_EQ(interpolate({0}, {1}, {}), complexes());
}

}  // namespace
