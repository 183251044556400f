#include "dsp/rf/matrix_kernels.h"

#include "dsp/simd/vector.h"

namespace dsp::rf {
namespace DSP_ISA {
namespace {

// -1, 1, -1, 1, ...
template <class V>
V signs() {
  V s{};
  for (unsigned i = 0; i < sizeof s / sizeof(double); ++i) s[i] = i % 2 == 0 ? -1.0 : 1.0;
  return s;
}

// A factor spread over lanes of complex numbers: re, re, ... and -im, im, ...
template <class V>
struct factor {
  V re, im;
  explicit factor(const double *f) : re(f[0] - V{}), im(signs<V>() * f[1]) {}
  V times(const V &z, const V &swapped) const { return re * z + im * swapped; }
};

// V is `widest`, or lanes<2> for the last element.
template <class V>
void subtract_multiple(double *row, const double *pivot, const factor<V> &f) {
  const V z = load<V>(pivot);
  store(row, load<V>(row) - f.times(z, swap_pairs(z)));
}

void eliminate(double *a, int64_t n, int64_t k) {
  const int64_t width = 2 * n;
  const double *const pivot = a + k * width;
  for (int64_t i = 0; i < n; ++i) {
    if (i == k) continue;
    double *const row = a + i * width;
    const double f[2] = {row[2 * k], row[2 * k + 1]};
    row[2 * k] = row[2 * k + 1] = 0.0;
    const factor<widest> wide(f);
    const factor<lanes<2>> narrow(f);
    int64_t j = 0;
    for (; j + lane_count <= width; j += lane_count) subtract_multiple(row + j, pivot + j, wide);
    for (; j < width; j += 2) subtract_multiple(row + j, pivot + j, narrow);  // GCOVR_EXCL_BR_LINE: none if lanes are 2
  }
}

// R rows of a times C neighbouring vectors of columns of b. Each sum starts with its first term.
template <class V, int R, int C>
void multiply_tile(const double *a, const double *b, double *out, int64_t k, int64_t p) {
  constexpr int size = sizeof(V) / sizeof(double);
  V sum[R][C] = {};
  for (int64_t t = 0; t < k; ++t, b += 2 * p) {
    for (int r = 0; r < R; ++r) {
      const factor<V> f(a + 2 * (r * k + t));
      for (int c = 0; c < C; ++c) {
        const V z = load<V>(b + c * size);
        sum[r][c] = sum[r][c] + f.times(z, swap_pairs(z));
      }
    }
  }
  for (int r = 0; r < R; ++r)
    for (int c = 0; c < C; ++c) store(out + 2 * r * p + c * size, sum[r][c]);
}

template <int R>
void multiply_rows(const double *a, const double *b, double *out, int64_t k, int64_t p) {
  int64_t j = 0;
  for (; j + 4 * lane_count <= 2 * p; j += 4 * lane_count) multiply_tile<widest, R, 4>(a, b + j, out + j, k, p);
  for (; j + lane_count <= 2 * p; j += lane_count) multiply_tile<widest, R, 1>(a, b + j, out + j, k, p);
  for (; j < 2 * p; j += 2) multiply_tile<lanes<2>, R, 1>(a, b + j, out + j, k, p);
}

void multiply(const double *a, const double *b, double *out, int64_t m, int64_t k, int64_t p) {
  int64_t i = 0;
  for (; i + 2 <= m; i += 2) multiply_rows<2>(a + 2 * i * k, b, out + 2 * i * p, k, p);
  if (i < m) multiply_rows<1>(a + 2 * i * k, b, out + 2 * i * p, k, p);
}

}  // namespace

extern const matrix_kernel_set matrix_set = {eliminate, multiply};

}  // namespace DSP_ISA
}  // namespace dsp::rf
