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

// One complex number per point.
struct numbers {
  widest re, im;
};

numbers same(double re) { return {broadcast(re), widest{}}; }
numbers operator-(const numbers &z) { return {-z.re, -z.im}; }
numbers operator+(const numbers &x, const numbers &y) { return {x.re + y.re, x.im + y.im}; }
numbers operator-(const numbers &x, const numbers &y) { return {x.re - y.re, x.im - y.im}; }
numbers operator*(const numbers &x, const numbers &y) { return {x.re * y.re - x.im * y.im, x.re * y.im + x.im * y.re}; }
widest sum_of_squares(const numbers &z) { return z.re * z.re + z.im * z.im; }

// The even and the odd elements of two vectors: real and imaginary components of points. The order of the points does
// not matter, since packing and unpacking agree.
template <class V>
struct halves {
  V even, odd;
  halves(const V &a, const V &b) {
    if constexpr (sizeof(V) == 2 * sizeof(double)) {
      even = __builtin_shufflevector(a, b, 0, 2);
      odd = __builtin_shufflevector(a, b, 1, 3);
    } else if constexpr (sizeof(V) == 4 * sizeof(double)) {
      even = __builtin_shufflevector(a, b, 0, 4, 2, 6);
      odd = __builtin_shufflevector(a, b, 1, 5, 3, 7);
    } else {
      even = __builtin_shufflevector(a, b, 0, 8, 2, 10, 4, 12, 6, 14);
      odd = __builtin_shufflevector(a, b, 1, 9, 3, 11, 5, 13, 7, 15);
    }
  }
};

numbers unpack(const double *z) {
  const halves<widest> parts(load<widest>(z), load<widest>(z + lane_count));
  return {parts.even, parts.odd};
}

void pack(double *z, const numbers &x) {
  const halves<widest> parts(x.re, x.im);
  store(z, parts.even);
  store(z + lane_count, parts.odd);
}

void trade(const choice &c, numbers *x, numbers *y) {
  const numbers was = *x;
  *x = {c ? y->re : x->re, c ? y->im : x->im};
  *y = {c ? was.re : y->re, c ? was.im : y->im};
}

// Squared pivots within these bounds are far from underflow, which counts as 0, and from overflow.
constexpr double least_square = 1e-22;
constexpr double largest_square = 1e200;

struct inverse {
  numbers a[3][3];
  choice traded[3][3];  // whether rows k and r > k were exchanged
  choice safe;

  template <int K>
  void choose_pivot() {
    widest best = sum_of_squares(a[K][K]);
    for (int r = K + 1; r < 3; ++r) {
      const widest candidate = sum_of_squares(a[r][K]);
      const choice larger = candidate > best;
      for (int earlier = K + 1; earlier < r; ++earlier) traded[K][earlier] &= ~larger;
      traded[K][r] = larger;
      best = larger ? candidate : best;
    }
    safe &= (best >= least_square) & (best <= largest_square);
    for (int r = K + 1; r < 3; ++r)
      for (int j = 0; j < 3; ++j) trade(traded[K][r], &a[K][j], &a[r][j]);
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
      for (int i = 0; i < 3; ++i) trade(traded[K][r], &a[i][K], &a[i][r]);
  }

  // False when a point has an extreme pivot and needs the general way.
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
    const numbers actual = unpack(a[r] + at);
    measured[r] = unpack(g[r] + at);
    m.a[r][0] = actual;
    m.a[r][1] = same(1.0);
    m.a[r][2] = -actual * measured[r];
  }
  if (!m.compute()) return false;
  for (int r = 0; r < 3; ++r) {
    unknown[r] = same(0.0);
    for (int t = 0; t < 3; ++t) unknown[r] = unknown[r] + m.a[r][t] * measured[t];
  }
  pack(g[0] + at, unknown[1]);
  pack(g[1] + at, -unknown[2]);
  pack(g[2] + at, unknown[0] - unknown[1] * unknown[2]);
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
