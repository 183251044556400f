// Transforms of 2 to 15 values, each a vector: forward, unscaled, in natural order before and after.
#pragma once

#include "dsp/fft/complex_vectors.h"
#include "dsp/math/angle.h"

namespace dsp::fft {
namespace {

template <class P>
DSP_INLINE void butterfly(P (&x)[2]) {
  const P difference = x[0] - x[1];
  x[0] = x[0] + x[1];
  x[1] = difference;
}

template <class P>
DSP_INLINE void butterfly(P (&x)[4]) {
  const P a = x[0] + x[2];
  const P b = x[1] + x[3];
  const P c = x[0] - x[2];
  const P d = x[1] - x[3];
  x[0] = a + b;
  x[1] = minus_i(c, d);
  x[2] = a - b;
  x[3] = plus_i(c, d);
}

template <class P>
DSP_INLINE void butterfly(P (&x)[8]) {
  P even[4] = {x[0] + x[4], x[1] + x[5], x[2] + x[6], x[3] + x[7]};
  const P d0 = x[0] - x[4];
  const P d1 = x[1] - x[5];
  const P d2 = x[2] - x[6];
  const P d3 = x[3] - x[7];
  butterfly(even);
  // d1 turned by -45 and d3 by 45 degrees, both still to be scaled by half_sqrt2.
  const P t1 = minus_i(d1, d1);
  const P t3 = plus_i(d3, d3);
  const P a = minus_i(d0, d2);
  const P c = plus_i(d0, d2);
  x[0] = even[0];
  x[1] = a + (t1 - t3) * half_sqrt2;
  x[2] = even[1];
  x[3] = minus_i(c, t1 + t3, half_sqrt2);
  x[4] = even[2];
  x[5] = a - (t1 - t3) * half_sqrt2;
  x[6] = even[3];
  x[7] = plus_i(c, t1 + t3, half_sqrt2);
}

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

// i is no multiple of R.
template <int R>
constexpr double circle_cos(int i) {
  const int r = i % R;
  return circle_points<R>::cos[(r <= R / 2 ? r : R - r) - 1];
}

template <int R>
constexpr double circle_sin(int i) {
  const int r = i % R;
  return r <= R / 2 ? circle_points<R>::sin[r - 1] : -circle_points<R>::sin[R - r - 1];
}

// Odd R: the sums x[j] + x[R - j] are multiplied by cosines only, the differences by sines only.
template <class P, int R>
DSP_INLINE void odd_butterfly(P (&x)[R]) {
  constexpr int half = R / 2;
  P sum[half];
  P difference[half];
  DSP_UNROLL for (int j = 0; j < half; ++j) {
    sum[j] = x[j + 1] + x[R - 1 - j];
    difference[j] = x[j + 1] - x[R - 1 - j];
  }
  const P first = x[0];
  DSP_UNROLL for (int j = 0; j < half; ++j) x[0] = x[0] + sum[j];
  DSP_UNROLL for (int k = 1; k <= half; ++k) {
    P even = first + sum[0] * circle_cos<R>(k);
    P odd = difference[0] * circle_sin<R>(k);
    DSP_UNROLL for (int j = 2; j <= half; ++j) {  // GCOVR_EXCL_BR_LINE: three legs have one of each
      even = even + sum[j - 1] * circle_cos<R>(j * k);
      odd = odd + difference[j - 1] * circle_sin<R>(j * k);
    }
    x[k] = minus_i(even, odd);
    x[R - k] = plus_i(even, odd);
  }
}

template <class P, int R>
DSP_INLINE void butterfly(P (&x)[R]) {
  static_assert(R == 3 || R == 5 || R == 7 || R == 11 || R == 13);
  odd_butterfly(x);
}

// The k < A B with k mod A = a and k mod B = b.
template <int A, int B>
constexpr int by_remainders(int a, int b) {
  while (b % A != a) b += B;
  return b;
}

// Coprime factors need no roots between them (Good 1958): sample aB + bA (mod AB) is element (a, b) of the matrix, and
// element (a, b) of its transform is the bin with the remainders a and b.
template <int A, int B, class P>
DSP_INLINE void coprime_butterfly(P (&x)[A * B]) {
  P row[A][B];
  DSP_UNROLL for (int a = 0; a < A; ++a) {
    DSP_UNROLL for (int b = 0; b < B; ++b) row[a][b] = x[(a * B + b * A) % (A * B)];
    butterfly(row[a]);
  }
  DSP_UNROLL for (int b = 0; b < B; ++b) {
    P column[A];
    DSP_UNROLL for (int a = 0; a < A; ++a) column[a] = row[a][b];
    butterfly(column);
    DSP_UNROLL for (int a = 0; a < A; ++a) x[by_remainders<A, B>(a, b)] = column[a];
  }
}

template <class P>
DSP_INLINE void butterfly(P (&x)[6]) {
  coprime_butterfly<2, 3>(x);
}

template <class P>
DSP_INLINE void butterfly(P (&x)[10]) {
  coprime_butterfly<2, 5>(x);
}

template <class P>
DSP_INLINE void butterfly(P (&x)[12]) {
  coprime_butterfly<4, 3>(x);
}

template <class P>
DSP_INLINE void butterfly(P (&x)[14]) {
  coprime_butterfly<2, 7>(x);
}

template <class P>
DSP_INLINE void butterfly(P (&x)[15]) {
  coprime_butterfly<3, 5>(x);
}

template <class P>
DSP_INLINE void butterfly(P (&x)[9]) {
  P row[3][3];
  DSP_UNROLL for (int b = 0; b < 3; ++b) {
    DSP_UNROLL for (int a = 0; a < 3; ++a) row[b][a] = x[b + 3 * a];
    butterfly(row[b]);
  }
  DSP_UNROLL for (int k = 0; k < 3; ++k) {
    P column[3] = {row[0][k], row[1][k], row[2][k]};
    if (k > 0) {
      column[1] = turned(column[1], circle_cos<9>(k), circle_sin<9>(k));
      column[2] = turned(column[2], circle_cos<9>(2 * k), circle_sin<9>(2 * k));
    }
    butterfly(column);
    DSP_UNROLL for (int a = 0; a < 3; ++a) x[k + 3 * a] = column[a];
  }
}

}  // namespace
}  // namespace dsp::fft
