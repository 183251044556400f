// Vectors of complex samples in two layouts, and the operations that butterflies are made of.
#pragma once

#include "dsp/simd/vector.h"

namespace dsp::fft {
namespace {

// W complex samples in one vector, real and imaginary parts in turn as a signal holds them. Half as long as `points`:
// for short records. Turns by a quarter cost a shuffle, and products with roots one more.
template <int W>
struct pairs {
  lanes<2 * W> parts;
};

// (x, -x, x, -x, ...)
template <int W>
DSP_INLINE lanes<2 * W> alternating_signs(double x) {
  if constexpr (W == 1)
    return lanes<2>{x, -x};
  else if constexpr (W == 2)
    return lanes<4>{x, -x, x, -x};
  else
    return lanes<8>{x, -x, x, -x, x, -x, x, -x};
}

template <int W>
DSP_INLINE points<W> operator+(const points<W> &a, const points<W> &b) {
  return {a.re + b.re, a.im + b.im};
}
template <int W>
DSP_INLINE pairs<W> operator+(const pairs<W> &a, const pairs<W> &b) {
  return {a.parts + b.parts};
}

template <int W>
DSP_INLINE points<W> operator-(const points<W> &a, const points<W> &b) {
  return {a.re - b.re, a.im - b.im};
}
template <int W>
DSP_INLINE pairs<W> operator-(const pairs<W> &a, const pairs<W> &b) {
  return {a.parts - b.parts};
}

template <int W>
DSP_INLINE points<W> operator*(const points<W> &a, double k) {
  return {a.re * k, a.im * k};
}
template <int W>
DSP_INLINE pairs<W> operator*(const pairs<W> &a, double k) {
  return {a.parts * k};
}

// An inverse transform is the forward one of exchanged parts, its parts exchanged again.
template <int W>
DSP_INLINE points<W> exchanged(const points<W> &a) {
  return {a.im, a.re};
}
template <int W>
DSP_INLINE pairs<W> exchanged(const pairs<W> &a) {
  return {swap_pairs(a.parts)};
}

template <bool Exchange, class P>
DSP_INLINE P exchanged_if(const P &a) {
  if constexpr (Exchange)
    return exchanged(a);
  else
    return a;
}

// a - i b and a + i b.
template <int W>
DSP_INLINE points<W> minus_i(const points<W> &a, const points<W> &b) {
  return {a.re + b.im, a.im - b.re};
}
template <int W>
DSP_INLINE pairs<W> minus_i(const pairs<W> &a, const pairs<W> &b) {
  return {a.parts + swap_pairs(b.parts) * alternating_signs<W>(1.0)};
}

template <int W>
DSP_INLINE points<W> plus_i(const points<W> &a, const points<W> &b) {
  return {a.re - b.im, a.im + b.re};
}
template <int W>
DSP_INLINE pairs<W> plus_i(const pairs<W> &a, const pairs<W> &b) {
  return {a.parts - swap_pairs(b.parts) * alternating_signs<W>(1.0)};
}

// a - i k b and a + i k b.
template <int W>
DSP_INLINE points<W> minus_i(const points<W> &a, const points<W> &b, double k) {
  return {a.re + b.im * k, a.im - b.re * k};
}
template <int W>
DSP_INLINE pairs<W> minus_i(const pairs<W> &a, const pairs<W> &b, double k) {
  return {a.parts + swap_pairs(b.parts) * alternating_signs<W>(k)};
}

template <int W>
DSP_INLINE points<W> plus_i(const points<W> &a, const points<W> &b, double k) {
  return {a.re - b.im * k, a.im + b.re * k};
}
template <int W>
DSP_INLINE pairs<W> plus_i(const pairs<W> &a, const pairs<W> &b, double k) {
  return {a.parts - swap_pairs(b.parts) * alternating_signs<W>(k)};
}

// a (cos - i sin).
template <int W>
DSP_INLINE points<W> turned(const points<W> &a, double cos, double sin) {
  return {a.re * cos + a.im * sin, a.im * cos - a.re * sin};
}
template <int W>
DSP_INLINE pairs<W> turned(const pairs<W> &a, double cos, double sin) {
  return {a.parts * cos + swap_pairs(a.parts) * alternating_signs<W>(sin)};
}

template <int W>
DSP_INLINE pairs<W> load_as_pairs(const double *p) {
  return {load<lanes<2 * W>>(p)};
}
template <int W>
DSP_INLINE void store_as_pairs(double *p, const pairs<W> &v) {
  store(p, v.parts);
}

// The W samples of `count` vectors change places with the vectors: W at a time of what was one lane are one vector,
// `count`/W of them follow each other for each lane.
template <int W, int Count>
DSP_INLINE void transpose(const pairs<W> (&from)[Count], pairs<W> (&to)[Count]) {
  static_assert(Count % W == 0);
  for (int at = 0; at < Count; at += W) {
    lanes<2 * W> row[W];
    for (int i = 0; i < W; ++i) row[i] = from[at + i].parts;
    transpose_units<2 * W>(row);
    for (int i = 0; i < W; ++i) to[i * (Count / W) + at / W].parts = row[i];
  }
}

}  // namespace
}  // namespace dsp::fft
