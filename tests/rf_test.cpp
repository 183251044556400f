// The matrix template, products and inverses of plain arrays, one-port error terms.
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

namespace {

using support::complex;
using support::complexes;
using support::heap_fail;
using support::on_each_isa;
using support::random_complexes;
using support::record;
using support::same;
using wide = std::complex<long double>;
using cmatrix = matrix<complex>;
using elements = dsp::matrix_elements<complex>;

constexpr int32_t huge = std::numeric_limits<int32_t>::max();

dsp_complex *points(complexes &z) { return reinterpret_cast<dsp_complex *>(z.data()); }
const dsp_complex *points(const complexes &z) { return reinterpret_cast<const dsp_complex *>(z.data()); }

// Corrects the measured standards g by the actual ones.
void compute_terms(complexes (&g)[3], const complexes (&a)[3], int32_t first, int32_t end) {
  Compute1PortTerms(points(g[0]), points(g[1]), points(g[2]), points(a[0]), points(a[1]), points(a[2]), first, end);
}

// The integers modulo a prime: a field without rounding, of a type that the header has never seen.
struct residue {
  static constexpr int64_t prime = 65521;
  int64_t v = 0;
  residue() = default;
  explicit residue(int64_t x) : v((x % prime + prime) % prime) {}
  explicit residue(complex z) : residue(static_cast<int64_t>(z.real() * 1e6)) {}
  friend residue operator+(residue a, residue b) { return residue(a.v + b.v); }
  friend residue operator-(residue a, residue b) { return residue(a.v - b.v); }
  friend residue operator*(residue a, residue b) { return residue(a.v * b.v); }
  friend residue operator/(residue a, residue b) {
    for (int64_t e = prime - 2; e > 0; e /= 2, b = b * b) a = e % 2 == 1 ? a * b : a;
    return a;
  }
  friend double modulus(residue x) { return x.v == 0 ? 0.0 : 1.0; }
};

template <class T>
class MatrixOf : public testing::Test {};
using fields = testing::Types<complex, std::complex<float>, residue>;
TYPED_TEST_SUITE(MatrixOf, fields);

TYPED_TEST(MatrixOf, InverseUndoesTheProduct) {
  using dsp::field::modulus;
  for (const uint32_t n : {0u, 1u, 2u, 3u, 4u, 17u, 33u}) {
    std::vector<TypeParam> by_row;
    for (const complex v : random_complexes(n * n, n)) by_row.push_back(TypeParam(v));
    const matrix<TypeParam> a(n, n, by_row.data(), 0), transposed(n, n, by_row.data(), 1);
    matrix<TypeParam> inverse(a);
    ASSERT_TRUE(inverse.inv());
    const auto from_left = inverse * a, from_right = a * inverse;
    const double tolerance = (std::is_same_v<TypeParam, complex> ? 1e-14 : 1e-5) * n * n;
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
      {[&] { cmatrix(1u << 30, 1u << 30); }, "memory"},
      {[&] { cmatrix(1u << 31, 1u << 31); }, "memory"},
  };
  for (const auto &[misuse, expected] : cases) {
    std::string caught;
    try {
      misuse();
    } catch (const std::out_of_range &e) {
      caught = std::string("range ") + e.what();
    } catch (const std::invalid_argument &e) {
      caught = std::string("argument ") + e.what();
    } catch (const std::bad_alloc &) {
      caught = "memory";
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
    std::array<complex *, 5> released{};
    for (uint32_t i = 0; i < 5; ++i) released[i] = cmatrix(3, i + 1).data();
    EXPECT_EQ(elements::live(), 1);
    for (const uint32_t i : {1u, 4u, 2u, 3u}) EXPECT_EQ(cmatrix(3, i + 1).data(), released[i]);
    const cmatrix first(3, 2), second(3, 2);
    EXPECT_EQ(first.data(), released[1]);
    EXPECT_NE(second.data(), released[1]);
  }
  EXPECT_EQ(elements::live(), 0);
}

// Makes a matrix of its like when it dies, be it in the pool.
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
  const support::raising heap;
  for (const long k : {1, 2}) {
    heap_fail(k);
    EXPECT_THROW(cmatrix(2, 2), std::bad_alloc);
  }
  EXPECT_EQ(elements::live(), 0);
}

TEST(Field, QuotientsAndModuliReachAsFarAsTheirResults) {
  const double parts[] = {0.0, 5e-324, 3e-310, 2e-200, 1e-154, 0.7, 3.0, 1e154, 2e200, 1e308};
  for (const double re : parts)
    for (const double im : parts) {
      if (re + im == 0.0) continue;
      const complex z(re, -im), got = dsp::field::reciprocal(z);
      const int power = std::ilogb(std::max(re, im));
      const double x = std::ldexp(re, -power), y = std::ldexp(im, -power), square = x * x + y * y;
      const std::pair<double, double> results[] = {{std::ldexp(x / square, -power), got.real()},
                                                   {std::ldexp(y / square, -power), got.imag()},
                                                   {std::ldexp(std::sqrt(square), power), dsp::field::modulus(z)}};
      for (const auto &[expected, result] : results) {
        if (std::isinf(expected))
          EXPECT_EQ(result, expected) << z;
        else
          EXPECT_LE(std::abs(result - expected), 1e-15 * expected + 5e-324) << z;
      }
    }
  const double inf = std::numeric_limits<double>::infinity();
  EXPECT_EQ(dsp::field::modulus(complex(-inf, 1.0)), inf);
  EXPECT_EQ(dsp::field::reciprocal(complex(inf, 1.0)).real(), 0.0);
  EXPECT_TRUE(std::isnan(dsp::field::modulus(complex(std::nan(""), 1.0))));
}

TEST(Arrays, ProductAgainstSums) {
  const std::array<std::size_t, 3> sizes[] = {{3, 2, 4}, {5, 5, 1}, {9, 7, 26}, {1, 1, 1}, {3, 0, 2}, {0, 0, 5}};
  for (const auto [m, k, p] : sizes) {
    const complexes a = random_complexes(m * k, 1), b = random_complexes(k * p, 2);
    complexes expected;
    for (std::size_t at = 0; at < m * p; ++at) {
      wide sum = 0;
      for (std::size_t t = 0; t < k; ++t) sum += wide(a[at / p * k + t]) * wide(b[t * p + at % p]);
      expected.emplace_back(sum);
    }
    complexes out(m * p + 1, 7.0);
    on_each_isa([&, size = std::array{static_cast<int32_t>(m), static_cast<int32_t>(k), static_cast<int32_t>(p)}] {
      ASSERT_EQ(MatrixMult(points(a), points(b), points(out), size[0], size[1], size[2]), size[0] * size[2]);
      for (std::size_t i = 0; i < expected.size(); ++i) EXPECT_LE(std::abs(out[i] - expected[i]), 2e-15);
      EXPECT_EQ(out.back(), 7.0);
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
    const complexes before[] = {g[0], g[1], g[2], a[0], a[1], a[2]};
    compute_terms(g, a, 3, 99);
    for (std::size_t i = 0; i < n; ++i)
      for (std::size_t k = 0; k < 3; ++k) {
        const bool inside = i >= 3 && i < 99;
        const complex expected = inside ? terms[k][i] : before[k][i];
        EXPECT_LE(std::abs(g[k][i] - expected), inside ? 2e-14 / (spread * spread) : 0.0) << i;
        EXPECT_EQ(a[k][i], before[k + 3][i]);
      }
  }
}

TEST(OnePort, IdealEmptyAndInPlace) {
  complexes g[] = {{1.0}, {-1.0}, {0.0}};
  for (const auto &[first, end] : {std::pair(0, 0), {1, 0}, {5, -5}}) compute_terms(g, g, first, end);
  EXPECT_EQ(g[0][0], 1.0);
  compute_terms(g, g, 0, 1);
  for (const int k : {0, 1, 2}) EXPECT_EQ(g[k][0], k == 2 ? 1.0 : 0.0);
}

// Any pivots, a singular point, tiny and huge standards: whatever the inverse of its matrix leaves, at every point.
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
    for (uint32_t r = 0; r < 3; ++r) m(r, 0) = a[r][i], m(r, 1) = 1.0, b(r, 0) = g[r][i];
    for (uint32_t r = 0; r < 3; ++r) m(r, 2) = dsp::field::product(-a[r][i], g[r][i]);
    EXPECT_EQ(m.inv(), i != 20 && i != 36) << i;
    const cmatrix x = m * b;
    const complex delta = x(0, 0) - dsp::field::product(x(1, 0), x(2, 0));
    const complex terms[] = {x(1, 0), -x(2, 0), delta};
    for (std::size_t k = 0; k < 3; ++k) expected[k].push_back(terms[k]);
  }
  on_each_isa([&] {
    complexes e[] = {g[0], g[1], g[2]};
    compute_terms(e, a, 0, static_cast<int32_t>(n));
    for (std::size_t k = 0; k < 3; ++k) EXPECT_TRUE(same(record(e[k]), record(expected[k]))) << k;
  });
}

}  // namespace
