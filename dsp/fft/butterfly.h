// Transforms of 2 to 15 samples, forward and unscaled, on whole vectors. Natural order in and out.
#pragma once

#include "dsp/math/angle.h"
#include "dsp/simd/vector.h"

namespace dsp::fft {
namespace {

template <int W>
DSP_INLINE points<W> operator+(const points<W> &a, const points<W> &b) {
  return {a.re + b.re, a.im + b.im};
}

template <int W>
DSP_INLINE points<W> operator-(const points<W> &a, const points<W> &b) {
  return {a.re - b.re, a.im - b.im};
}

template <int W>
DSP_INLINE points<W> times_minus_i(const points<W> &a) {
  return {a.im, -a.re};
}

// a + half_sqrt2 b and a - half_sqrt2 b.
template <int W>
DSP_INLINE points<W> plus_scaled(const points<W> &a, const points<W> &b) {
  return {a.re + b.re * half_sqrt2, a.im + b.im * half_sqrt2};
}

template <int W>
DSP_INLINE points<W> minus_scaled(const points<W> &a, const points<W> &b) {
  return {a.re - b.re * half_sqrt2, a.im - b.im * half_sqrt2};
}

template <int W>
DSP_INLINE void butterfly(points<W> (&x)[2]) {
  const points<W> difference = x[0] - x[1];
  x[0] = x[0] + x[1];
  x[1] = difference;
}

template <int W>
DSP_INLINE void butterfly(points<W> (&x)[4]) {
  const points<W> a = x[0] + x[2];
  const points<W> b = x[1] + x[3];
  const points<W> c = x[0] - x[2];
  const points<W> d = x[1] - x[3];
  x[0] = a + b;
  x[1] = {c.re + d.im, c.im - d.re};
  x[2] = a - b;
  x[3] = {c.re - d.im, c.im + d.re};
}

template <int W>
DSP_INLINE void butterfly(points<W> (&x)[8]) {
  points<W> even[4] = {x[0] + x[4], x[1] + x[5], x[2] + x[6], x[3] + x[7]};
  const points<W> d0 = x[0] - x[4];
  const points<W> d1 = x[1] - x[5];
  const points<W> d2 = x[2] - x[6];
  const points<W> d3 = x[3] - x[7];
  butterfly<W>(even);
  // The odd outputs: d1 turned by -45 and d3 by -135 degrees, both still to be scaled by half_sqrt2.
  const points<W> t1 = {d1.re + d1.im, d1.im - d1.re};
  const points<W> t3 = {d3.im - d3.re, -d3.re - d3.im};
  const points<W> a = {d0.re + d2.im, d0.im - d2.re};
  const points<W> c = {d0.re - d2.im, d0.im + d2.re};
  const points<W> b = t1 + t3;
  const points<W> d = times_minus_i<W>(t1 - t3);
  x[0] = even[0];
  x[1] = plus_scaled<W>(a, b);
  x[2] = even[1];
  x[3] = plus_scaled<W>(c, d);
  x[4] = even[2];
  x[5] = minus_scaled<W>(a, b);
  x[6] = even[3];
  x[7] = minus_scaled<W>(c, d);
}

// Loops over the samples of a butterfly, which are to stay in registers.
#ifdef __clang__
#define DSP_UNROLL _Pragma("clang loop unroll(full)")
#else
#define DSP_UNROLL _Pragma("GCC unroll 16")
#endif

// cos and sin of 2 pi j/R, j = 1 .. R/2.
template <int R>
struct circle_points;
template <>
struct circle_points<3> {
  static constexpr double cos[] = {-0.5};
  static constexpr double sin[] = {0.86602540378443865};
};
template <>
struct circle_points<5> {
  static constexpr double cos[] = {0.30901699437494742, -0.80901699437494742};
  static constexpr double sin[] = {0.95105651629515357, 0.58778525229247313};
};
template <>
struct circle_points<7> {
  static constexpr double cos[] = {0.62348980185873353, -0.22252093395631440, -0.90096886790241913};
  static constexpr double sin[] = {0.78183148246802981, 0.97492791218182361, 0.43388373911755812};
};
template <>
struct circle_points<9> {
  static constexpr double cos[] = {0.76604444311897804, 0.17364817766693035, -0.5, -0.93969262078590838};
  static constexpr double sin[] = {0.64278760968653933, 0.98480775301220806, 0.86602540378443865, 0.34202014332566873};
};
template <>
struct circle_points<11> {
  static constexpr double cos[] = {0.84125353283118117, 0.41541501300188643, -0.14231483827328514, -0.65486073394528506,
                                   -0.95949297361449739};
  static constexpr double sin[] = {0.54064081745559758, 0.90963199535451837, 0.98982144188093273, 0.75574957435425828,
                                   0.28173255684142969};
};
template <>
struct circle_points<13> {
  static constexpr double cos[] = {0.88545602565320989,  0.56806474673115580,  0.12053668025532305,
                                   -0.35460488704253562, -0.74851074817110109, -0.97094181742605203};
  static constexpr double sin[] = {0.46472317204376855, 0.82298386589365640, 0.99270887409805400,
                                   0.93501624268541483, 0.66312265824079520, 0.23931566428755777};
};

template <int R>
constexpr double circle_cos(int i) {
  const int r = i % R;
  return r == 0 ? 1.0 : circle_points<R>::cos[(r <= R / 2 ? r : R - r) - 1];
}

template <int R>
constexpr double circle_sin(int i) {
  const int r = i % R;
  if (r == 0) return 0.0;
  return r <= R / 2 ? circle_points<R>::sin[r - 1] : -circle_points<R>::sin[R - r - 1];
}

// Odd R: the sums x[j] + x[R - j] meet cosines only, the differences sines only.
template <int W, int R>
DSP_INLINE void odd_butterfly(points<W> (&x)[R]) {
  constexpr int half = R / 2;
  points<W> sum[half];
  points<W> difference[half];
  DSP_UNROLL for (int j = 0; j < half; ++j) {
    sum[j] = x[j + 1] + x[R - 1 - j];
    difference[j] = x[j + 1] - x[R - 1 - j];
  }
  const points<W> first = x[0];
  DSP_UNROLL for (int j = 0; j < half; ++j) x[0] = x[0] + sum[j];
  DSP_UNROLL for (int k = 1; k <= half; ++k) {
    points<W> even = {first.re + sum[0].re * circle_cos<R>(k), first.im + sum[0].im * circle_cos<R>(k)};
    points<W> odd = {difference[0].re * circle_sin<R>(k), difference[0].im * circle_sin<R>(k)};
    DSP_UNROLL for (int j = 2; j <= half; ++j) {
      even.re = even.re + sum[j - 1].re * circle_cos<R>(j * k);
      even.im = even.im + sum[j - 1].im * circle_cos<R>(j * k);
      odd.re = odd.re + difference[j - 1].re * circle_sin<R>(j * k);
      odd.im = odd.im + difference[j - 1].im * circle_sin<R>(j * k);
    }
    x[k] = {even.re + odd.im, even.im - odd.re};
    x[R - k] = {even.re - odd.im, even.im + odd.re};
  }
}

template <int W>
DSP_INLINE void butterfly(points<W> (&x)[3]) {
  odd_butterfly<W, 3>(x);
}

template <int W>
DSP_INLINE void butterfly(points<W> (&x)[5]) {
  odd_butterfly<W, 5>(x);
}

template <int W>
DSP_INLINE void butterfly(points<W> (&x)[7]) {
  odd_butterfly<W, 7>(x);
}

template <int W>
DSP_INLINE void butterfly(points<W> (&x)[11]) {
  odd_butterfly<W, 11>(x);
}

template <int W>
DSP_INLINE void butterfly(points<W> (&x)[13]) {
  odd_butterfly<W, 13>(x);
}

// The k below A B with k mod A = a and k mod B = b.
template <int A, int B>
constexpr int by_remainders(int a, int b) {
  while (b % A != a) b += B;
  return b;
}

// Coprime factors need no roots between them (Good 1958): samples aB + bA go in, frequencies come out by remainders.
template <int W, int A, int B>
DSP_INLINE void coprime_butterfly(points<W> (&x)[A * B]) {
  points<W> row[A][B];
  DSP_UNROLL for (int a = 0; a < A; ++a) {
    DSP_UNROLL for (int b = 0; b < B; ++b) row[a][b] = x[(a * B + b * A) % (A * B)];
    butterfly<W>(row[a]);
  }
  DSP_UNROLL for (int b = 0; b < B; ++b) {
    points<W> column[A];
    DSP_UNROLL for (int a = 0; a < A; ++a) column[a] = row[a][b];
    butterfly<W>(column);
    DSP_UNROLL for (int a = 0; a < A; ++a) x[by_remainders<A, B>(a, b)] = column[a];
  }
}

template <int W>
DSP_INLINE void butterfly(points<W> (&x)[6]) {
  coprime_butterfly<W, 2, 3>(x);
}

template <int W>
DSP_INLINE void butterfly(points<W> (&x)[10]) {
  coprime_butterfly<W, 2, 5>(x);
}

template <int W>
DSP_INLINE void butterfly(points<W> (&x)[12]) {
  coprime_butterfly<W, 4, 3>(x);
}

template <int W>
DSP_INLINE void butterfly(points<W> (&x)[15]) {
  coprime_butterfly<W, 3, 5>(x);
}

// a times the k-th ninth root of unity.
template <int W>
DSP_INLINE points<W> times_ninth_root(const points<W> &a, int k) {
  const double cos = circle_cos<9>(k);
  const double sin = circle_sin<9>(k);
  return {a.re * cos + a.im * sin, a.im * cos - a.re * sin};
}

template <int W>
DSP_INLINE void butterfly(points<W> (&x)[9]) {
  points<W> row[3][3];
  DSP_UNROLL for (int b = 0; b < 3; ++b) {
    DSP_UNROLL for (int a = 0; a < 3; ++a) row[b][a] = x[b + 3 * a];
    butterfly<W>(row[b]);
  }
  DSP_UNROLL for (int k = 0; k < 3; ++k) {
    points<W> column[3] = {row[0][k], row[1][k], row[2][k]};
    if (k > 0) {
      column[1] = times_ninth_root<W>(column[1], k);
      column[2] = times_ninth_root<W>(column[2], 2 * k);
    }
    butterfly<W>(column);
    DSP_UNROLL for (int a = 0; a < 3; ++a) x[k + 3 * a] = column[a];
  }
}

}  // namespace
}  // namespace dsp::fft
