// Transforms of 2, 4 and 8 samples, forward and unscaled, on whole vectors. Natural order in and out.
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

}  // namespace
}  // namespace dsp::fft
