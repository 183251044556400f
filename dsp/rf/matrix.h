// SPDX-License-Identifier: MIT
/** @file
 * A small dense matrix over a field, row-major and reference counted, with product and inverse. Complete in this
 * header; nothing to link.
 *
 *     matrix<std::complex<double>> m(3, 3);
 *     m(0, 0) = ...;                    // or m.row(0)[0]
 *     if (!m.inv()) ...                 // singular
 *     matrix<std::complex<double>> x = m * b;
 *
 * A matrix is a handle. Copies share their elements: a write through one is seen through all. Only inv() and *= first
 * give a handle elements of its own. Released element buffers stay in a pool of four for the next matrices of the same
 * shapes, until the last matrix of that element type is gone. One thread at a time.
 *
 * Needs C++17. The element type needs T(), T(0), T(1), copying, the operators + - * / and a modulus that compares with
 * double: a function abs(x), or modulus(x), in its own namespace. No other function of that namespace is called.
 * Products of std::complex do not recover infinities from NaN; quotients and moduli neither overflow nor underflow in
 * between.
 */
#ifndef DSP_RF_MATRIX_H
#define DSP_RF_MATRIX_H

#if __cplusplus < 201703L && (!defined(_MSVC_LANG) || _MSVC_LANG < 201703L)
#error "dsp/rf/matrix.h needs C++17, for instance -std=c++17"
#else

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <memory>
#include <new>
#include <stdexcept>
#include <utility>

namespace dsp {

// The operations that the matrix needs of its elements. The templates for std::complex are preferred over the general
// ones.
namespace field {

template <class T>
auto modulus(const T &x) {
  using std::abs;
  return abs(x);
}

template <class T>
T product(const T &a, const T &b) {
  return a * b;
}

template <class T>
T reciprocal(const T &x) {
  return T(1) / x;
}

template <class F>
F sum_of_squares(const std::complex<F> &z) {
  return z.real() * z.real() + z.imag() * z.imag();
}

// Whether the squares, their sum and its reciprocal are far from overflow and underflow.
template <class F>
bool is_safe(F sum_of_squares) {
  constexpr F digits = 1 / std::numeric_limits<F>::epsilon();
  constexpr F lowest = std::numeric_limits<F>::min() * digits * digits;
  return sum_of_squares >= lowest && sum_of_squares <= 1 / lowest;
}

// z / 2^*exponent, the larger part in [0.5, 1). For finite z other than 0.
template <class F>
std::complex<F> mantissa(const std::complex<F> &z, int *exponent) {
  std::frexp(std::max(std::abs(z.real()), std::abs(z.imag())), exponent);
  return {std::ldexp(z.real(), -*exponent), std::ldexp(z.imag(), -*exponent)};
}

template <class F>
bool has_mantissa(const std::complex<F> &z) {
  return std::isfinite(z.real()) && std::isfinite(z.imag()) && (z.real() != 0 || z.imag() != 0);
}

template <class F>
F scaled_modulus(const std::complex<F> &z) {
  if (!field::has_mantissa(z)) return std::abs(z.real()) + std::abs(z.imag());
  int exponent = 0;
  const std::complex<F> m = field::mantissa(z, &exponent);
  return std::ldexp(std::sqrt(field::sum_of_squares(m)), exponent);
}

template <class F>
F modulus(const std::complex<F> &z) {
  const F sum = field::sum_of_squares(z);
  return field::is_safe(sum) ? std::sqrt(sum) : field::scaled_modulus(z);
}

template <class F>
std::complex<F> product(const std::complex<F> &a, const std::complex<F> &b) {
  return {a.real() * b.real() - a.imag() * b.imag(), a.real() * b.imag() + a.imag() * b.real()};
}

template <class F>
std::complex<F> scaled_reciprocal(const std::complex<F> &z) {
  if (!field::has_mantissa(z)) {
    const F size = 1 / (std::abs(z.real()) + std::abs(z.imag()));  // infinite, 0 or NaN
    return {std::copysign(size, z.real()), -std::copysign(size, z.imag())};
  }
  int exponent = 0;
  const std::complex<F> m = field::mantissa(z, &exponent);
  const F scale = 1 / field::sum_of_squares(m);
  return {std::ldexp(m.real() * scale, -exponent), std::ldexp(-m.imag() * scale, -exponent)};
}

template <class F>
std::complex<F> reciprocal(const std::complex<F> &z) {
  const F sum = field::sum_of_squares(z);
  if (!field::is_safe(sum)) return field::scaled_reciprocal(z);
  const F scale = 1 / sum;
  return {z.real() * scale, -z.imag() * scale};
}

// row *= f
template <class T>
void scale_row(T *row, T f, std::size_t n) {
  for (std::size_t j = 0; j < n; ++j) row[j] = field::product(row[j], f);
}

// row -= f * other
template <class T>
void subtract_multiple(T *__restrict row, const T *__restrict other, T f, std::size_t n) {
  for (std::size_t j = 0; j < n; ++j) row[j] = row[j] - field::product(f, other[j]);
}

// The row of the element of largest size in column k, from row k down; the first of several.
template <class T, class Size>
std::size_t largest_in_column(const T *a, std::size_t n, std::size_t k, Size size) {
  auto best = size(a[k * n + k]);
  std::size_t row = k;
  for (std::size_t r = k + 1; r < n; ++r) {
    const auto candidate = size(a[r * n + k]);
    if (candidate > best) {
      best = candidate;
      row = r;
    }
  }
  return row;
}

template <class T>
std::size_t find_pivot(const T *a, std::size_t n, std::size_t k) {
  return field::largest_in_column(a, n, k, [](const T &x) { return modulus(x); });
}

// Compares squares, which is enough unless the largest is out of range.
template <class F>
std::size_t find_pivot(const std::complex<F> *a, std::size_t n, std::size_t k) {
  using T = std::complex<F>;
  const std::size_t row = field::largest_in_column(a, n, k, [](const T &z) { return field::sum_of_squares(z); });
  return field::is_safe(field::sum_of_squares(a[row * n + k])) ? row : field::find_pivot<T>(a, n, k);
}

// Below this modulus a pivot counts as 0, whatever the other elements are.
constexpr double least_pivot = 2.220446049250313e-12;

// Subtracts from every other row the multiple of row k that makes its element in column k 0. The column is not set to
// 0: it takes a column of the inverse.
template <class T>
void eliminate_rows(T *a, std::size_t n, std::size_t k) {
  for (std::size_t i = 0; i < n; ++i) {
    if (i == k) continue;
    T *const row = a + i * n;
    const T f = row[k];
    row[k] = T(0);
    field::subtract_multiple(row, a + k * n, f, n);
  }
}

template <class T>
void eliminate(T *a, std::size_t n, std::size_t k) {
  field::eliminate_rows(a, n, k);
}

// a becomes its inverse by Gauss-Jordan elimination with row pivoting. False: singular, a is left partly reduced.
// `order` has room for n indices. N is n if it is known at compile time, else 0.
template <std::size_t N, class T>
bool gauss_jordan(T *a, std::size_t size, std::size_t *order) {
  const std::size_t n = N != 0 ? N : size;
  for (std::size_t k = 0; k < n; ++k) order[k] = k;
  for (std::size_t k = 0; k < n; ++k) {
    const std::size_t pivot = field::find_pivot(a, n, k);
    if (modulus(a[pivot * n + k]) < least_pivot) return false;
    T *const row = a + k * n;
    if (pivot != k) {
      std::swap(order[k], order[pivot]);
      std::swap_ranges(row, row + n, a + pivot * n);
    }
    const T q = field::reciprocal(row[k]);
    row[k] = T(1);
    field::scale_row(row, q, n);
    field::eliminate(a, n, k);
  }
  for (std::size_t j = 0; j < n; ++j) {
    if (order[j] == j) continue;
    const auto t = static_cast<std::size_t>(std::find(order + j, order + n, j) - order);
    for (std::size_t i = 0; i < n; ++i) std::swap(a[i * n + j], a[i * n + t]);
    std::swap(order[j], order[t]);
  }
  return true;
}

template <class T>
bool invert_in_place(T *a, std::size_t n) {
  std::size_t few[3];
  if (n == 2) return field::gauss_jordan<2>(a, n, few);
  if (n == 3) return field::gauss_jordan<3>(a, n, few);
  return field::gauss_jordan<0>(a, n, std::make_unique<std::size_t[]>(n).get());
}

// The sums of W neighbouring elements of a product: the row `a` times columns of b, from t = 0 on.
template <std::size_t W, class T>
void multiply_row(const T *a, const T *b, T *out, std::size_t k, std::size_t p) {
  T sum[W];
  std::fill(sum, sum + W, T(0));
  for (std::size_t t = 0; t < k; ++t)
    for (std::size_t w = 0; w < W; ++w) sum[w] = sum[w] + field::product(a[t], b[t * p + w]);
  std::copy(sum, sum + W, out);
}

// out = a b, sizes m x k and k x p; out does not overlap the factors.
template <class T>
void multiply(const T *a, const T *b, T *out, std::size_t m, std::size_t k, std::size_t p) {
  for (std::size_t i = 0; i < m; ++i, a += k, out += p) {
    std::size_t j = 0;
    for (; j + 4 <= p; j += 4) field::multiply_row<4>(a, b + j, out + j, k, p);
    for (; j < p; ++j) field::multiply_row<1>(a, b + j, out + j, k, p);
  }
}

}  // namespace field

// The elements that handles share, and the pool that keeps some of those released.
template <class T>
class matrix_elements {
 public:
  static matrix_elements *acquire(std::uint32_t rows, std::uint32_t cols) {
    matrix_elements *e = locks_ == 0 ? take(rows, cols) : nullptr;
    if (e == nullptr) e = new matrix_elements(rows, cols);  // GCOVR_EXCL_BR_LINE: branches of exceptions
    e->handles = 1;
    ++live_;
    return e;
  }

  static void release(matrix_elements *e) noexcept {
    std::fill(std::begin(e->spare), std::end(e->spare), nullptr);
    --live_;
    if (locks_ == 0 && live_ == 0)
      empty_pool();
    else if (locks_ == 0)
      e = put(e);
    delete e;
  }

  static std::int64_t live() { return live_; }

  std::unique_ptr<T[]> data;
  void *spare[2] = {nullptr, nullptr};  // for extensions; null in the pool
  std::uint32_t rows;
  std::uint32_t cols;
  std::int32_t handles = 0;

 private:
  matrix_elements(std::uint32_t rows_, std::uint32_t cols_)
      : data(std::make_unique<T[]>(count(rows_, cols_))), rows(rows_), cols(cols_) {}

  static std::size_t count(std::uint32_t rows, std::uint32_t cols) {
    const std::uint64_t n = std::uint64_t{rows} * cols;
    if (n > static_cast<std::uint64_t>(PTRDIFF_MAX) / sizeof(T)) throw std::bad_alloc();
    return static_cast<std::size_t>(n);
  }

  static matrix_elements *take(std::uint32_t rows, std::uint32_t cols) {
    for (matrix_elements *&slot : pool_)
      if (slot != nullptr && slot->rows == rows && slot->cols == cols) return std::exchange(slot, nullptr);
    return nullptr;
  }

  // Puts e at the front of the pool and moves the others back by one slot, up to the first gap. Returns the one that
  // does not fit, or null.
  static matrix_elements *put(matrix_elements *e) {
    for (matrix_elements *&slot : pool_) {
      std::swap(slot, e);
      if (e == nullptr) break;
    }
    return e;
  }

  // Destructors of elements may use matrices: the pool is locked meanwhile.
  static void empty_pool() {
    ++locks_;
    for (matrix_elements *&slot : pool_) delete std::exchange(slot, nullptr);
    --locks_;
  }

  static inline matrix_elements *pool_[4] = {};
  static inline std::int64_t live_ = 0;   // acquired and not released
  static inline std::int32_t locks_ = 0;  // the pool is being emptied
};

}  // namespace dsp

/** A handle on rows x cols elements of a field, as described at the top of this file. */
template <class T>
class matrix {
  using elements = dsp::matrix_elements<T>;

  /** One row, with E = T, or const T of a constant matrix. */
  template <class E>
  class row_of {
   public:
    /** The element in column j. std::out_of_range: no such column. */
    E &operator[](std::uint32_t j) const {
      if (j >= cols_) throw std::out_of_range("matrix<T>::operator[][]: Subscript out of range!");
      return matrix_.at(row_, j);
    }

   private:
    friend class matrix;
    row_of(const matrix &m, std::uint32_t row) : matrix_(m), row_(row), cols_(m.cols()) {}

    matrix matrix_;  // a handle of its own: the row outlives an inv() or *= of the matrix, with its old elements
    std::uint32_t row_;
    std::uint32_t cols_;
  };

 public:
  /** Elements start as T() or with the contents of a pooled buffer: write before reading. std::bad_alloc: no memory. */
  matrix(std::uint32_t rows, std::uint32_t cols) : elements_(elements::acquire(rows, cols)) {}

  /** Copies rows x cols elements, stored row after row when `by_column` is 0, else column after column. */
  matrix(std::uint32_t rows, std::uint32_t cols, const T *array, int by_column) : matrix(rows, cols) {
    T *to = data();
    for (std::size_t i = 0; i < rows; ++i)
      for (std::size_t j = 0; j < cols; ++j) *to++ = by_column == 0 ? array[i * cols + j] : array[j * rows + i];
  }

  /** Shares the elements of `other`. */
  matrix(const matrix &other) noexcept : elements_(other.elements_) { ++elements_->handles; }

  /** Releases its elements, and shares those of `other`. */
  matrix &operator=(const matrix &other) noexcept {
    matrix copy(other);
    std::swap(elements_, copy.elements_);
    return *this;
  }

  /** The last handle releases the elements. */
  ~matrix() {
    if (--elements_->handles == 0) elements::release(elements_);
  }

  /** Number of rows. */
  std::uint32_t rows() const { return elements_->rows; }
  /** Number of columns. */
  std::uint32_t cols() const { return elements_->cols; }
  /** Number of elements. */
  std::size_t size() const { return std::size_t{rows()} * cols(); }

  /** Row after row; as all elements, shared with the other handles. */
  T *data() { return elements_->data.get(); }
  /** Row after row, to be read. */
  const T *data() const { return elements_->data.get(); }

  /** The element in row r, column j. std::out_of_range: no such element. */
  T &operator()(std::uint32_t r, std::uint32_t j) { return checked(r, j); }
  /** The same, to be read. */
  const T &operator()(std::uint32_t r, std::uint32_t j) const { return checked(r, j); }

  /** Row r, whose [j] is the element in column j; it keeps the elements that the matrix has now. std::out_of_range: no
   * such row or column. */
  row_of<T> row(std::uint32_t r) { return checked_row<T>(r); }
  /** The same, to be read. */
  row_of<const T> row(std::uint32_t r) const { return checked_row<const T>(r); }

  /** this = this * b; other handles keep the elements they shared. std::invalid_argument: b does not have as many rows
   * as this has columns. */
  matrix &operator*=(const matrix &b) {
    if (cols() != b.rows())
      throw std::invalid_argument("matrix<T>::operator*=: Inconsistent matrix size in multiplication!");
    matrix result(rows(), b.cols());
    dsp::field::multiply(data(), b.data(), result.data(), rows(), cols(), b.cols());
    std::swap(elements_, result.elements_);
    return *this;
  }

  /** The product a b, as *= forms it. */
  friend matrix operator*(const matrix &a, const matrix &b) {
    matrix result(a);
    result *= b;
    return result;
  }

  /** Inverts its elements, a copy of them if other handles share them. False: a pivot's modulus was below
   * 2.220446049250313e-12, an absolute bound; the elements are then left partly reduced. std::invalid_argument: not
   * square. */
  bool inv() {
    if (rows() != cols()) throw std::invalid_argument("matrix<T>::inv(): Inversion of non-square matrix!");
    if (elements_->handles > 1) {
      matrix own(rows(), cols(), data(), 0);
      std::swap(elements_, own.elements_);
    }
    return dsp::field::invert_in_place(data(), rows());
  }

 private:
  T &at(std::uint32_t r, std::uint32_t j) const { return elements_->data[std::size_t{r} * cols() + j]; }

  T &checked(std::uint32_t r, std::uint32_t j) const {
    if (r >= rows() || j >= cols()) throw std::out_of_range("matrix<T>::operator(): subscript is out of range!");
    return at(r, j);
  }

  template <class E>
  row_of<E> checked_row(std::uint32_t r) const {
    if (r >= rows()) throw std::out_of_range("matrix<T>::row: subscript is out of range!");
    return {*this, r};
  }

  elements *elements_;
};

#endif  // C++17

#endif
