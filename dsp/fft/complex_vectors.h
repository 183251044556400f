// Vectors of complex samples in two layouts, and the operations that butterflies are made of.
#pragma once

#include "dsp/simd/vector.h"

namespace dsp::fft {
namespace {

// Unrolls the loops over the samples of a butterfly, so that they stay in registers.
#ifdef __clang__
#define DSP_UNROLL _Pragma("clang loop unroll(full)")
#else
#define DSP_UNROLL _Pragma("GCC unroll 16")
#endif

// W complex samples in one vector, real and imaginary parts in turn as in a signal: half the registers of `points`,
// which suits short records. A turn by a quarter costs a shuffle, a product with a root one more.
template <int W>
struct pairs {
  static constexpr int width = W;
  static constexpr bool in_pairs = true;
  lanes<2 * W> parts;
};

// One complex sample: a vector where there are vector registers, else two numbers.
template <bool InPairs>
struct one_sample_type {
  using type = pairs<1>;
};
template <>
struct one_sample_type<false> {
  using type = points<1>;
};
using one_sample = one_sample_type<has_vector_registers>::type;

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

// The inverse transform is the forward one with real and imaginary parts exchanged before and after.
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
  return {a.parts + swap_pairs(b.parts) * alternating<lanes<2 * W>>(1.0, -1.0)};
}

template <int W>
DSP_INLINE points<W> plus_i(const points<W> &a, const points<W> &b) {
  return {a.re - b.im, a.im + b.re};
}
template <int W>
DSP_INLINE pairs<W> plus_i(const pairs<W> &a, const pairs<W> &b) {
  const lanes<2 *W> t = swap_pairs(b.parts);
#ifdef __AVX__  // one instruction subtracts and adds in turn, in vectors of up to 256 bits
  if constexpr (W == 1) return {__builtin_shufflevector(a.parts - t, a.parts + t, 0, 3)};
  if constexpr (W == 2) return {__builtin_shufflevector(a.parts - t, a.parts + t, 0, 5, 2, 7)};
#endif
  return {a.parts - t * alternating<lanes<2 * W>>(1.0, -1.0)};
}

// a - i k b and a + i k b.
template <int W>
DSP_INLINE points<W> minus_i(const points<W> &a, const points<W> &b, double k) {
  return {a.re + b.im * k, a.im - b.re * k};
}
template <int W>
DSP_INLINE pairs<W> minus_i(const pairs<W> &a, const pairs<W> &b, double k) {
  return {a.parts + swap_pairs(b.parts) * alternating<lanes<2 * W>>(k, -k)};
}

template <int W>
DSP_INLINE points<W> plus_i(const points<W> &a, const points<W> &b, double k) {
  return {a.re - b.im * k, a.im + b.re * k};
}
template <int W>
DSP_INLINE pairs<W> plus_i(const pairs<W> &a, const pairs<W> &b, double k) {
  return {a.parts - swap_pairs(b.parts) * alternating<lanes<2 * W>>(k, -k)};
}

// a (cos - i sin).
template <int W>
DSP_INLINE points<W> turned(const points<W> &a, double cos, double sin) {
  return {a.re * cos + a.im * sin, a.im * cos - a.re * sin};
}
template <int W>
DSP_INLINE pairs<W> turned(const pairs<W> &a, double cos, double sin) {
  return {a.parts * cos + swap_pairs(a.parts) * (alternating<lanes<2 * W>>(1.0, -1.0) * sin)};
}

// W samples of the record: points in lane order, pairs in the record's. The widest pairs are loaded in halves: a load
// across two vectors that were stored just before would stall until both are in the cache.
template <class P>
DSP_INLINE P load_samples(const double *p) {
  if constexpr (P::in_pairs && P::width == 4)
    return {__builtin_shufflevector(load<lanes<4>>(p), load<lanes<4>>(p + 4), 0, 1, 2, 3, 4, 5, 6, 7)};
  else if constexpr (P::in_pairs)
    return {load_once<lanes<2 * P::width>>(p)};
  else
    return load_pairs<P::width>(p);
}
template <int W>
DSP_INLINE void store_samples(double *p, const points<W> &v) {
  store_pairs<W>(p, v);
}
template <int W>
DSP_INLINE void store_samples(double *p, const pairs<W> &v) {
  store(p, v.parts);
}

// W samples of a work area, in the layout of the vector.
template <class P>
DSP_INLINE P load_vector(const double *p) {
  if constexpr (P::in_pairs)
    return {load<lanes<2 * P::width>>(p)};
  else
    return load_split<P::width>(p);
}
template <int W>
DSP_INLINE void store_vector(double *p, const points<W> &v) {
  store_split<W>(p, v);
}
template <int W>
DSP_INLINE void store_vector(double *p, const pairs<W> &v) {
  store(p, v.parts);
}

// Lane l of load_pairs holds sample lane_order(l), and store_pairs puts it there.
template <int W>
constexpr int lane_order(int l) {
  return W < 4 ? l : l % 2 * (W / 2) + l / 2;
}

template <int W>
DSP_INLINE void transpose(lanes<W> (&row)[W]) {
  lanes<W> firsts[W / 2];
  lanes<W> seconds[W / 2];
  DSP_UNROLL for (int i = 0; i < W / 2; ++i) {
    firsts[i] = first_lanes<W>(row[2 * i], row[2 * i + 1]);
    seconds[i] = second_lanes<W>(row[2 * i], row[2 * i + 1]);
  }
  transpose_units<W>(firsts);
  transpose_units<W>(seconds);
  DSP_UNROLL for (int i = 0; i < W / 2; ++i) row[2 * i] = firsts[i], row[2 * i + 1] = seconds[i];
}

// Transposes W vectors of W samples. Points: lane l of the argument holds sample lane_order(l), and result
// lane_order(i) holds the samples i of all vectors.
template <int W>
DSP_INLINE void transpose(points<W> (&v)[W]) {
  lanes<W> re[W];
  lanes<W> im[W];
  DSP_UNROLL for (int l = 0; l < W; ++l) re[l] = v[lane_order<W>(l)].re, im[l] = v[lane_order<W>(l)].im;
  transpose<W>(re);
  transpose<W>(im);
  DSP_UNROLL for (int i = 0; i < W; ++i) v[lane_order<W>(i)] = {re[i], im[i]};
}
template <int W>
DSP_INLINE void transpose(pairs<W> (&v)[W]) {
  lanes<2 * W> row[W];
  DSP_UNROLL for (int i = 0; i < W; ++i) row[i] = v[i].parts;
  transpose_units<2 * W>(row);
  DSP_UNROLL for (int i = 0; i < W; ++i) v[i].parts = row[i];
}

}  // namespace
}  // namespace dsp::fft
