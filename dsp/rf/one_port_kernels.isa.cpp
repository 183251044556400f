// The calibration of one point per lane, with the same steps, and so the same bits, as the matrix's inverse and
// product.
#pragma GCC diagnostic ignored "-Wpsabi"  // vectors are passed between functions of this file only

#include "dsp/rf/one_port_kernels.h"

#include "dsp/simd/vector.h"

namespace dsp::rf {
namespace {

using choice = decltype(widest{} < widest{});

bool everywhere(const choice &c) {
  long long all = -1;
  for (int i = 0; i < lane_count; ++i) all &= c[i];
  return all != 0;
}

// One complex number per point. The order of the points in the lanes does not matter: load_pairs() and store_pairs()
// agree on it.
using numbers = points<lane_count>;

numbers same(double re) { return {broadcast(re), widest{}}; }
numbers operator-(const numbers &z) { return {-z.re, -z.im}; }
numbers operator+(const numbers &x, const numbers &y) { return {x.re + y.re, x.im + y.im}; }
numbers operator-(const numbers &x, const numbers &y) { return {x.re - y.re, x.im - y.im}; }
numbers operator*(const numbers &x, const numbers &y) { return {x.re * y.re - x.im * y.im, x.re * y.im + x.im * y.re}; }
widest sum_of_squares(const numbers &z) { return z.re * z.re + z.im * z.im; }

// Exchanges x and y in the lanes where c is true.
void exchange(const choice &c, numbers *x, numbers *y) {
  const numbers was = *x;
  *x = {c ? y->re : x->re, c ? y->im : x->im};
  *y = {c ? was.re : y->re, c ? was.im : y->im};
}

// Squared pivots within these bounds are far from underflow, which counts as 0, and from overflow.
constexpr double least_square = 1e-22;
constexpr double largest_square = 1e200;

struct inverse {
  numbers a[3][3];
  choice exchanged[3][3];  // whether rows k and r > k were exchanged
  choice safe;

  template <int K>
  void choose_pivot() {
    widest best = sum_of_squares(a[K][K]);
    for (int r = K + 1; r < 3; ++r) {
      const widest candidate = sum_of_squares(a[r][K]);
      const choice larger = candidate > best;
      for (int earlier = K + 1; earlier < r; ++earlier) exchanged[K][earlier] &= ~larger;
      exchanged[K][r] = larger;
      best = larger ? candidate : best;
    }
    safe &= (best >= least_square) & (best <= largest_square);
    for (int r = K + 1; r < 3; ++r)
      for (int j = 0; j < 3; ++j) exchange(exchanged[K][r], &a[K][j], &a[r][j]);
  }

  template <int K>
  void reduce() {
    choose_pivot<K>();
    const widest scale = 1.0 / sum_of_squares(a[K][K]);
    const numbers q = {a[K][K].re * scale, -a[K][K].im * scale};
    a[K][K] = same(1.0);
    for (int j = 0; j < 3; ++j) a[K][j] = a[K][j] * q;
    for (int i = 0; i < 3; ++i) {
      if (i == K) continue;
      const numbers f = a[i][K];
      a[i][K] = same(0.0);
      for (int j = 0; j < 3; ++j) a[i][j] = a[i][j] - f * a[K][j];
    }
  }

  template <int K>
  void restore_columns() {
    for (int r = K + 1; r < 3; ++r)
      for (int i = 0; i < 3; ++i) exchange(exchanged[K][r], &a[i][K], &a[i][r]);
  }

  // False when the pivot of a point is so small or large that the matrix template must solve it.
  bool compute() {
    safe = widest{} == 0.0;
    reduce<0>();
    reduce<1>();
    reduce<2>();
    restore_columns<1>();
    restore_columns<0>();
    return everywhere(safe);
  }
};

bool solve(double *const *g, const double *const *a, int64_t at) {
  inverse m;
  numbers measured[3], unknown[3];
  for (int r = 0; r < 3; ++r) {
    const numbers actual = load_pairs<lane_count>(a[r] + at);
    measured[r] = load_pairs<lane_count>(g[r] + at);
    m.a[r][0] = actual;
    m.a[r][1] = same(1.0);
    m.a[r][2] = -actual * measured[r];
  }
  if (!m.compute()) return false;
  for (int r = 0; r < 3; ++r) {
    unknown[r] = same(0.0);
    for (int t = 0; t < 3; ++t) unknown[r] = unknown[r] + m.a[r][t] * measured[t];
  }
  store_pairs<lane_count>(g[0] + at, unknown[1]);
  store_pairs<lane_count>(g[1] + at, -unknown[2]);
  store_pairs<lane_count>(g[2] + at, unknown[0] - unknown[1] * unknown[2]);
  return true;
}

int64_t solve_points(double *const *g, const double *const *a, int64_t count) {
  int64_t n = 0;
  if constexpr (has_vector_registers)
    while (n + lane_count <= count && solve(g, a, 2 * n)) n += lane_count;
  return n;
}

}  // namespace

namespace DSP_ISA {
extern const one_port_kernel_set one_port_set = {solve_points};
}

}  // namespace dsp::rf
