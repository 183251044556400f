// The matrix template, products and inverses of plain arrays, one-port error terms.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <limits>
#include <new>

#include "dsp/core/isa.h"
#include "dsp/dsp.h"
#include "dsp/rf/matrix.h"
#include "tests/support/record.h"

namespace {
long failing_in = 0;  // which of the next requests for memory fails; 0: none
}

// Out of line, or the compiler pairs the inlined free() with new and warns.
#define OUT_OF_LINE __attribute__((noinline))
OUT_OF_LINE void *operator new(std::size_t bytes) {
  if (failing_in > 0 && --failing_in == 0) throw std::bad_alloc();
  if (void *block = std::malloc(bytes > 0 ? bytes : 1)) return block;
  throw std::bad_alloc();
}
OUT_OF_LINE void *operator new[](std::size_t bytes) { return operator new(bytes); }
OUT_OF_LINE void operator delete(void *block) noexcept { std::free(block); }
OUT_OF_LINE void operator delete[](void *block) noexcept { std::free(block); }
OUT_OF_LINE void operator delete(void *block, std::size_t) noexcept { std::free(block); }
OUT_OF_LINE void operator delete[](void *block, std::size_t) noexcept { std::free(block); }

namespace {

template <class Check>
void on_each_isa(Check check) {
  const dsp::isa before = dsp::active_isa();
  for (const dsp::isa set : {dsp::isa::baseline, dsp::isa::avx2, dsp::isa::avx512})
    if (dsp::force_isa(set)) check();
  dsp::force_isa(before);
}

using support::complex;
using support::complexes;
using wide = std::complex<long double>;
using plain = std::vector<dsp_complex>;
using cmatrix = matrix<complex>;

plain as_plain(const complexes &z) {
  plain p;
  for (const complex v : z) p.push_back({v.real(), v.imag()});
  return p;
}

complex value(const dsp_complex &z) { return {z.re, z.im}; }

// The integers modulo a prime: a field without rounding, and without a type that the header knows.
struct residue {
  static constexpr int64_t prime = 65521;
  int64_t v = 0;
  residue() = default;
  explicit residue(int64_t x) : v((x % prime + prime) % prime) {}
  friend residue operator+(residue a, residue b) { return residue(a.v + b.v); }
  friend residue operator-(residue a, residue b) { return residue(a.v - b.v); }
  friend residue operator*(residue a, residue b) { return residue(a.v * b.v); }
  friend residue operator/(residue a, residue b) {
    residue power(1);
    for (int64_t e = prime - 2; e > 0; e /= 2, b = b * b)
      if (e % 2 == 1) power = power * b;
    return a * power;
  }
  friend double modulus(residue x) { return x.v == 0 ? 0.0 : 1.0; }
};

template <class T>
T element(double re, double im) {
  return T(static_cast<int64_t>(re * 1e6) + static_cast<int64_t>(im * 1e6) * 7);
}
template <>
double element<double>(double re, double) {
  return re;
}
template <>
complex element<complex>(double re, double im) {
  return {re, im};
}

double distance(residue a, residue b) { return a.v == b.v ? 0.0 : 1.0; }
template <class T>
double distance(T a, T b) {
  return std::abs(a - b);
}

template <class T>
class MatrixOf : public testing::Test {};
using fields = testing::Types<double, complex, residue>;
TYPED_TEST_SUITE(MatrixOf, fields);

TYPED_TEST(MatrixOf, InverseUndoesTheProduct) {
  for (const uint32_t n : {0u, 1u, 2u, 3u, 4u, 16u, 17u, 33u}) {
    const complexes z = support::random_complexes(n * n, n);
    std::vector<TypeParam> by_row;
    for (const complex v : z) by_row.push_back(element<TypeParam>(v.real(), v.imag()));
    matrix<TypeParam> a(n, n, by_row.data(), 0), inverse(a);
    ASSERT_TRUE(inverse.inv());
    for (const auto &unit : {a * inverse, inverse * a})
      for (uint32_t i = 0; i < n * n; ++i)
        EXPECT_LE(distance(unit(i / n, i % n), TypeParam(i / n == i % n)), 1e-13 * n * n) << n;
    matrix<TypeParam> transposed(n, n, by_row.data(), 1);
    for (uint32_t i = 0; i < n * n; ++i) EXPECT_EQ(distance(transposed(i / n, i % n), by_row[i % n * n + i / n]), 0.0);
  }
}

TEST(Matrix, RefusesMisuseInFixedWords) {
  cmatrix a(2, 3), b(2, 3), square(2, 2);
  const cmatrix &constant = a;
  const struct {
    std::function<void()> misuse;
    const char *text;
  } cases[] = {
      {[&] { a.row(2); }, "matrix<T>::row: subscript is out of range!"},
      {[&] { constant.row(static_cast<uint32_t>(-1)); }, "matrix<T>::row: subscript is out of range!"},
      {[&] { a.row(1)[3]; }, "matrix<T>::operator[][]: Subscript out of range!"},
      {[&] { a(2, 0); }, "matrix<T>::operator(): subscript is out of range!"},
      {[&] { constant(0, 3); }, "matrix<T>::operator(): subscript is out of range!"},
      {[&] { a *= b; }, "matrix<T>::operator*=: Inconsistent matrix size in multiplication!"},
      {[&] { a *b; }, "matrix<T>::operator*=: Inconsistent matrix size in multiplication!"},
      {[&] { a.inv(); }, "matrix<T>::inv(): Inversion of non-square matrix!"},
  };
  for (const auto &c : cases) {
    std::string caught;
    try {
      c.misuse();
    } catch (const std::out_of_range &e) {
      caught =
          std::string(e.what()) + (std::string(e.what()).find("ubscript") == std::string::npos ? " wrong type" : "");
    } catch (const std::invalid_argument &e) {
      caught = e.what();
    }
    EXPECT_EQ(caught, c.text);
  }
  EXPECT_EQ(square.row(1)[1] = 3.0, square(1, 1));
  EXPECT_THROW(cmatrix(1u << 30, 1u << 30), std::bad_alloc);
  EXPECT_THROW(cmatrix(1u << 31, 1u << 31), std::bad_alloc);
}

TEST(Matrix, HandlesShareUntilInvertedOrMultiplied) {
  const complex values[] = {2.0, 0.0, 0.0, 4.0};
  cmatrix a(2, 2, values, 0), b(a), c(b);
  a.row(0)[1] = 1.0;
  EXPECT_EQ(b(0, 1), 1.0);
  auto row = b.row(0);
  ASSERT_TRUE(b.inv());
  EXPECT_EQ(b(0, 0), 0.5);
  EXPECT_EQ(a(0, 0), 2.0);
  EXPECT_EQ(row[0], 2.0);
  row[0] = 8.0;
  EXPECT_EQ(a(0, 0), 8.0);
  EXPECT_EQ(b(0, 0), 0.5);
  a *= a;
  EXPECT_EQ(a(0, 0), 64.0);
  EXPECT_EQ(c(0, 0), 8.0);
  c = a;
  a = *&a;
  EXPECT_EQ(c.data(), a.data());
}

TEST(Matrix, ReleasedElementsServeTheNextOfTheirShape) {
  using elements = dsp::matrix_elements<complex>;
  const int64_t before = elements::live();
  {
    cmatrix keeps_the_pool(1, 1);
    std::array<complex *, 5> released{};
    for (uint32_t i = 0; i < 5; ++i) {
      cmatrix m(3, i + 1);
      m(2, i) = i;
      released[i] = m.data();
    }
    EXPECT_EQ(elements::live(), before + 1);
    for (const uint32_t i : {1u, 4u, 2u, 3u}) EXPECT_EQ(cmatrix(3, i + 1).data(), released[i]);
    cmatrix first(3, 2), second(3, 2);
    EXPECT_EQ(first.data(), released[1]);
    EXPECT_NE(second.data(), released[1]);
  }
  EXPECT_EQ(elements::live(), before);
}

struct brittle {
  static inline int copies_left = 0;
  brittle() = default;
  brittle(const brittle &) { operator=(*this); }
  brittle &operator=(const brittle &) {
    if (copies_left-- == 0) throw std::runtime_error("copy");
    return *this;
  }
};

TEST(Matrix, FailedConstructionLeavesNothingBehind) {
  const brittle array[4];
  brittle::copies_left = 2;
  EXPECT_THROW(matrix<brittle>(2, 2, array, 0), std::runtime_error);
  EXPECT_EQ(dsp::matrix_elements<brittle>::live(), 0);
  for (const long k : {1, 2}) {
    failing_in = k;
    EXPECT_THROW(cmatrix(2, 2), std::bad_alloc);
    failing_in = 0;
  }
  EXPECT_EQ(dsp::matrix_elements<complex>::live(), 0);
}

TEST(Field, QuotientsAndModuliReachAsFarAsTheirResults) {
  const double parts[] = {0.0, 5e-324, 3e-310, 2e-200, 1e-154, 0.7, 3.0, 1e154, 2e200, 1e308};
  for (const double re : parts)
    for (const double im : parts)
      for (const double sign : {-1.0, 1.0}) {
        if (re + im == 0.0) continue;
        const complex z(re, sign * im);
        const long double square = static_cast<long double>(re) * re + static_cast<long double>(im) * im;
        const long double expected[] = {re / square, -sign * im / square};
        const complex got = dsp::field::reciprocal(z);
        const long double got_parts[] = {got.real(), got.imag()};
        for (int p = 0; p < 2; ++p) {
          const auto rounded = static_cast<double>(expected[p]);
          if (std::isinf(rounded))
            EXPECT_EQ(got_parts[p], rounded) << z;
          else
            EXPECT_LE(std::abs(got_parts[p] - expected[p]), 1e-15L * std::abs(expected[p]) + 5e-324L) << z;
        }
        EXPECT_NEAR(dsp::field::modulus(z) / std::hypot(re, im), 1.0, 5e-16) << z;
      }
  const double inf = std::numeric_limits<double>::infinity();
  EXPECT_EQ(dsp::field::modulus(complex(-inf, 1.0)), inf);
  EXPECT_EQ(dsp::field::reciprocal(complex(inf, 1.0)).real(), 0.0);
  EXPECT_TRUE(std::isnan(dsp::field::modulus(complex(std::nan(""), 1.0))));
}

TEST(Arrays, ProductAgainstSums) {
  for (const auto &[m, k, p] :
       {std::array{3, 2, 4}, {5, 5, 1}, {9, 7, 26}, {1, 1, 1}, {3, 0, 2}, {0, 0, 5}, {2, 1, 0}}) {
    const auto at = [](int i, int j, int cols) { return static_cast<std::size_t>(i * cols + j); };
    const complexes a = support::random_complexes(static_cast<std::size_t>(m * k), 1);
    const complexes b = support::random_complexes(static_cast<std::size_t>(k * p), 2);
    plain out(static_cast<std::size_t>(m * p) + 1, {7, 7});
    on_each_isa([&, rows = m, terms = k, cols = p] {
      ASSERT_EQ(MatrixMult(as_plain(a).data(), as_plain(b).data(), out.data(), rows, terms, cols), rows * cols);
      for (int i = 0; i < rows; ++i)
        for (int j = 0; j < cols; ++j) {
          wide sum = 0;
          for (int t = 0; t < terms; ++t) sum += wide(a[at(i, t, terms)]) * wide(b[at(t, j, cols)]);
          EXPECT_LE(std::abs(wide(value(out[at(i, j, cols)])) - sum), 2e-15L);
        }
      EXPECT_EQ(out.back().re, 7.0);
    });
  }
}

TEST(Arrays, RefuseWhatTheyMust) {
  plain a(64, {1, 0}), out(64, {7, 7});
  const int32_t huge = std::numeric_limits<int32_t>::max();
  for (const auto &[m, k, p] : {std::array{2, 3, 1},
                                {-1, 1, 1},
                                {1, -1, 1},
                                {1, 1, -1},
                                {0, 1, 1},
                                {1, 65536, 1},
                                {65536, 0, 65536},
                                {huge, 0, 2},
                                {1, huge, 1}})
    EXPECT_EQ(MatrixMult(a.data(), a.data(), out.data(), m, k, p), -1) << m << " " << k << " " << p;
  for (long k = 1; k <= 6; ++k) {
    failing_in = k;
    EXPECT_EQ(MatrixMult(a.data(), a.data(), out.data(), 2, 2, 2), -1);
  }
  EXPECT_EQ(failing_in, 0);
  EXPECT_EQ(out[0].re, 7.0);

  struct {
    std::vector<dsp_complex> m;
    int32_t n, expected;
  } cases[] = {
      {{{1, 0}, {0, 0}, {0, 0}, {0, 0}}, 2, 0},
      {{{1e-12, 0}, {0, 0}, {0, 0}, {1e-12, 0}}, 2, 0},
      {{{2.220446049250313e-12, 0}}, 1, 1},
      {{{0, 2.2204460492503127e-12}}, 1, 0},
      {{{1, 0}}, 0, 0},
      {{{1, 0}}, -5, 0},
  };
  for (auto &c : cases) {
    const plain before = c.m;
    EXPECT_EQ(invert(c.m.data(), c.n), c.expected);
    for (std::size_t i = 0; i < before.size() && c.expected == 0; ++i) EXPECT_EQ(value(c.m[i]), value(before[i]));
  }
  for (long k = 1; k <= 4; ++k) {
    plain unit = {{1, 0}, {0, 0}, {0, 0}, {1, 0}};
    unit.resize(16, {0, 0});
    failing_in = k;
    EXPECT_EQ(invert(unit.data(), 4), 0);
  }
  failing_in = 0;
  plain swapped = {{0, 0}, {1, 0}, {1, 0}, {0, 0}};
  ASSERT_EQ(invert(swapped.data(), 2), 1);
  EXPECT_EQ(value(swapped[0]), 0.0);
  EXPECT_EQ(value(swapped[1]), 1.0);
}

TEST(Arrays, InverseAgainstTheStandardElements) {
  for (const uint32_t n : {1u, 3u, 8u, 32u}) {
    const complexes z = support::random_complexes(n * n, 9 + n);
    cmatrix expected(n, n, z.data(), 0);
    ASSERT_TRUE(expected.inv());
    on_each_isa([&] {
      plain m = as_plain(z);
      ASSERT_EQ(invert(m.data(), static_cast<int32_t>(n)), 1);
      for (std::size_t i = 0; i < m.size(); ++i) EXPECT_EQ(value(m[i]), expected.data()[i]);
    });
  }
}

struct sweep {
  plain a[3], g[3];
  complexes e00, e11, tracking;
};

complex seen(complex actual, complex e00, complex e11, complex tracking) {
  return e00 + tracking * actual / (1.0 - e11 * actual);
}

// Three standards about short, open and load, `spread` apart at least, behind random lossy error boxes.
sweep random_sweep(std::size_t n, double spread) {
  sweep s;
  s.e00 = support::random_complexes(n, 1);
  s.e11 = support::random_complexes(n, 2);
  s.tracking = support::random_complexes(n, 3);
  for (std::size_t k = 0; k < 3; ++k) {
    const complexes off = support::random_complexes(n, 4 + static_cast<unsigned>(k));
    for (std::size_t i = 0; i < n; ++i) {
      if (k == 0) s.e00[i] *= 0.2, s.e11[i] *= 0.2, s.tracking[i] = 0.8 + 0.3 * s.tracking[i];
      const complex actual = spread * complex(k == 0 ? -1.0 : k == 1 ? 1.0 : 0.0, 0.0) + 0.05 * spread * off[i];
      const complex measured = seen(actual, s.e00[i], s.e11[i], s.tracking[i]);
      s.a[k].push_back({actual.real(), actual.imag()});
      s.g[k].push_back({measured.real(), measured.imag()});
    }
  }
  return s;
}

TEST(OnePort, FindsTheErrorBox) {
  for (const double spread : {1.0, 0.1}) {
    sweep s = random_sweep(101, spread);
    const sweep before = s;
    Compute1PortTerms(s.g[0].data(), s.g[1].data(), s.g[2].data(), s.a[0].data(), s.a[1].data(), s.a[2].data(), 3, 99);
    for (std::size_t i = 0; i < 101; ++i) {
      const bool inside = i >= 3 && i < 99;
      const complex expected[] = {inside ? s.e00[i] : value(before.g[0][i]), inside ? s.e11[i] : value(before.g[1][i]),
                                  inside ? s.tracking[i] : value(before.g[2][i])};
      for (int k = 0; k < 3; ++k) {
        EXPECT_LE(std::abs(value(s.g[k][i]) - expected[k]), inside ? 2e-14 / (spread * spread) : 0.0) << i;
        EXPECT_EQ(value(s.a[k][i]), value(before.a[k][i]));
      }
    }
  }
}

TEST(OnePort, IdealAndEmpty) {
  plain ideal[] = {{{1, 0}}, {{-1, 0}}, {{0, 0}}};
  plain g[] = {ideal[0], ideal[1], ideal[2]};
  for (const auto &[first, end] : {std::array{0, 0}, {1, 0}, {5, -5}}) {
    Compute1PortTerms(g[0].data(), g[1].data(), g[2].data(), g[0].data(), g[1].data(), g[2].data(), first, end);
    EXPECT_EQ(value(g[0][0]), 1.0);
  }
  // Measured and actual may be the same arrays.
  Compute1PortTerms(g[0].data(), g[1].data(), g[2].data(), g[0].data(), g[1].data(), g[2].data(), 0, 1);
  const complex expected[] = {0.0, 0.0, 1.0};
  for (int k = 0; k < 3; ++k) EXPECT_EQ(value(g[k][0]), expected[k]);
}

TEST(OnePort, SingularPointsComeFromTheHalfReducedMatrix) {
  const complex a[] = {0.5, 0.5, {0.0, 1.0}}, g[] = {0.25, 0.25, 3.0};
  cmatrix m(3, 3), b(3, 1, g, 0);
  plain measured[3], actual[3];
  for (uint32_t r = 0; r < 3; ++r) {
    m(r, 0) = a[r], m(r, 1) = 1.0, m(r, 2) = -a[r] * g[r];
    measured[r] = as_plain({g[r]});
    actual[r] = as_plain({a[r]});
  }
  EXPECT_FALSE(m.inv());
  const cmatrix x = m * b;
  Compute1PortTerms(measured[0].data(), measured[1].data(), measured[2].data(), actual[0].data(), actual[1].data(),
                    actual[2].data(), 0, 1);
  EXPECT_EQ(value(measured[0][0]), x(1, 0));
  EXPECT_EQ(value(measured[1][0]), -x(2, 0));
  EXPECT_EQ(value(measured[2][0]), x(0, 0) - x(1, 0) * x(2, 0));
  failing_in = 2;
  EXPECT_THROW(Compute1PortTerms(measured[0].data(), measured[1].data(), measured[2].data(), actual[0].data(),
                                 actual[1].data(), actual[2].data(), 0, 1),
               std::bad_alloc);
  failing_in = 0;
}

}  // namespace
