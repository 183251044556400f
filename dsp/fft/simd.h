// Runs of complex samples in vector registers, for kernels (*.isa.cpp files): W lanes of real parts and W of imaginary
// ones. W = 1 is a plain double. Everything here is local to the file that includes it.
#pragma once

namespace dsp {
namespace {

template <int W>
struct lanes_type;
template <>
struct lanes_type<1> {
  typedef double type;
};
template <>
struct lanes_type<2> {
  typedef double type __attribute__((vector_size(16)));
};
template <>
struct lanes_type<4> {
  typedef double type __attribute__((vector_size(32)));
};
template <>
struct lanes_type<8> {
  typedef double type __attribute__((vector_size(64)));
};

template <int W>
using lanes = typename lanes_type<W>::type;

template <int W>
struct points {
  lanes<W> re;
  lanes<W> im;
};

#define DSP_INLINE inline __attribute__((always_inline))

template <int W>
DSP_INLINE lanes<W> load(const double *p) {
  lanes<W> v;
  __builtin_memcpy(&v, __builtin_assume_aligned(p, alignof(double)), sizeof v);
  return v;
}

template <int W>
DSP_INLINE void store(double *p, const lanes<W> &v) {
  __builtin_memcpy(__builtin_assume_aligned(p, alignof(double)), &v, sizeof v);
}

template <int W>
DSP_INLINE double first_lane(const lanes<W> &a) {
  if constexpr (W == 1)
    return a;
  else
    return a[0];
}

template <int W>
DSP_INLINE void set_first_lane(lanes<W> &a, double value) {
  if constexpr (W == 1)
    a = value;
  else
    a[0] = value;
}

// W real parts, then W imaginary parts.
template <int W>
DSP_INLINE points<W> load_split(const double *p) {
  return {load<W>(p), load<W>(p + W)};
}

template <int W>
DSP_INLINE void store_split(double *p, const points<W> &v) {
  store<W>(p, v.re);
  store<W>(p + W, v.im);
}

// Samples in the order in which the cheap way between pairs and lanes leaves them.
template <int W>
DSP_INLINE lanes<W> in_lane_order(const lanes<W> &a) {
  if constexpr (W == 4)
    return __builtin_shufflevector(a, a, 0, 2, 1, 3);
  else if constexpr (W == 8)
    return __builtin_shufflevector(a, a, 0, 4, 1, 5, 2, 6, 3, 7);
  else
    return a;
}

// Of every two neighbouring lanes the first ones of a and b, and the second ones.
template <int W>
DSP_INLINE lanes<W> first_lanes(const lanes<W> &a, const lanes<W> &b) {
  if constexpr (W == 1)
    return a;
  else if constexpr (W == 2)
    return __builtin_shufflevector(a, b, 0, 2);
  else if constexpr (W == 4)
    return __builtin_shufflevector(a, b, 0, 4, 2, 6);
  else
    return __builtin_shufflevector(a, b, 0, 8, 2, 10, 4, 12, 6, 14);
}

template <int W>
DSP_INLINE lanes<W> second_lanes(const lanes<W> &a, const lanes<W> &b) {
  if constexpr (W == 1)
    return b;
  else if constexpr (W == 2)
    return __builtin_shufflevector(a, b, 1, 3);
  else if constexpr (W == 4)
    return __builtin_shufflevector(a, b, 1, 5, 3, 7);
  else
    return __builtin_shufflevector(a, b, 1, 9, 3, 11, 5, 13, 7, 15);
}

// The pairs of lanes from the last to the first.
template <int W>
DSP_INLINE lanes<W> pairs_reversed(const lanes<W> &a) {
  if constexpr (W == 4)
    return __builtin_shufflevector(a, a, 2, 3, 0, 1);
  else if constexpr (W == 8)
    return __builtin_shufflevector(a, a, 6, 7, 4, 5, 2, 3, 0, 1);
  else
    return a;
}

// W complex samples as they lie in a signal, re, im, re, im, ..., to lane order and back.
template <int W>
DSP_INLINE points<W> load_pairs(const double *p) {
  const lanes<W> a = load<W>(p);
  const lanes<W> b = load<W>(p + W);
  return {first_lanes<W>(a, b), second_lanes<W>(a, b)};
}

// Lane l holds sample l.
template <int W>
DSP_INLINE points<W> load_pairs_in_order(const double *p) {
  const lanes<W> a = load<W>(p);
  const lanes<W> b = load<W>(p + W);
  if constexpr (W == 4)
    return {__builtin_shufflevector(a, b, 0, 2, 4, 6), __builtin_shufflevector(a, b, 1, 3, 5, 7)};
  else if constexpr (W == 8)
    return {__builtin_shufflevector(a, b, 0, 2, 4, 6, 8, 10, 12, 14),
            __builtin_shufflevector(a, b, 1, 3, 5, 7, 9, 11, 13, 15)};
  else
    return {first_lanes<W>(a, b), second_lanes<W>(a, b)};
}

template <int W>
DSP_INLINE void store_pairs(double *p, const points<W> &v) {
  store<W>(p, first_lanes<W>(v.re, v.im));
  store<W>(p + W, second_lanes<W>(v.re, v.im));
}

// The same with the last sample where the first would be.
template <int W>
DSP_INLINE points<W> load_pairs_reversed(const double *p) {
  if constexpr (W == 1) return load_pairs<W>(p);
  const lanes<W> a = pairs_reversed<W>(load<W>(p + W));
  const lanes<W> b = pairs_reversed<W>(load<W>(p));
  return {first_lanes<W>(a, b), second_lanes<W>(a, b)};
}

template <int W>
DSP_INLINE void store_pairs_reversed(double *p, const points<W> &v) {
  if constexpr (W == 1) return store_pairs<W>(p, v);
  store<W>(p, pairs_reversed<W>(second_lanes<W>(v.re, v.im)));
  store<W>(p + W, pairs_reversed<W>(first_lanes<W>(v.re, v.im)));
}

// Halves of a followed by halves of b: the lower ones, then the upper ones.
template <int W>
DSP_INLINE void exchange_halves(lanes<W> &a, lanes<W> &b) {
  const lanes<W> x = a;
  const lanes<W> y = b;
  if constexpr (W == 4) {
    a = __builtin_shufflevector(x, y, 0, 1, 4, 5);
    b = __builtin_shufflevector(x, y, 2, 3, 6, 7);
  } else if constexpr (W == 8) {
    a = __builtin_shufflevector(x, y, 0, 1, 2, 3, 8, 9, 10, 11);
    b = __builtin_shufflevector(x, y, 4, 5, 6, 7, 12, 13, 14, 15);
  }
}

// Units of two lanes change places as in a square.
template <int W>
DSP_INLINE void transpose_units(lanes<W> (&row)[W / 2]) {
  if constexpr (W == 4) {
    exchange_halves<W>(row[0], row[1]);
  } else if constexpr (W == 8) {
    exchange_halves<W>(row[0], row[1]);
    exchange_halves<W>(row[2], row[3]);
    const lanes<W> t[] = {row[0], row[1], row[2], row[3]};
    row[0] = __builtin_shufflevector(t[0], t[2], 0, 1, 4, 5, 8, 9, 12, 13);
    row[1] = __builtin_shufflevector(t[0], t[2], 2, 3, 6, 7, 10, 11, 14, 15);
    row[2] = __builtin_shufflevector(t[1], t[3], 0, 1, 4, 5, 8, 9, 12, 13);
    row[3] = __builtin_shufflevector(t[1], t[3], 2, 3, 6, 7, 10, 11, 14, 15);
  }
}

}  // namespace
}  // namespace dsp
