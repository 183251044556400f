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
  __builtin_memcpy(&v, p, sizeof v);
  return v;
}

template <int W>
DSP_INLINE void store(double *p, const lanes<W> &v) {
  __builtin_memcpy(p, &v, sizeof v);
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

// The even and the odd lanes of a and b, and back.
template <int W>
DSP_INLINE points<W> unzip(const lanes<W> &a, const lanes<W> &b) {
  if constexpr (W == 1)
    return {a, b};
  else if constexpr (W == 2)
    return {__builtin_shufflevector(a, b, 0, 2), __builtin_shufflevector(a, b, 1, 3)};
  else if constexpr (W == 4)
    return {__builtin_shufflevector(a, b, 0, 2, 4, 6), __builtin_shufflevector(a, b, 1, 3, 5, 7)};
  else
    return {__builtin_shufflevector(a, b, 0, 2, 4, 6, 8, 10, 12, 14),
            __builtin_shufflevector(a, b, 1, 3, 5, 7, 9, 11, 13, 15)};
}

template <int W>
DSP_INLINE lanes<W> zip_low(const lanes<W> &a, const lanes<W> &b) {
  if constexpr (W == 1)
    return a;
  else if constexpr (W == 2)
    return __builtin_shufflevector(a, b, 0, 2);
  else if constexpr (W == 4)
    return __builtin_shufflevector(a, b, 0, 4, 1, 5);
  else
    return __builtin_shufflevector(a, b, 0, 8, 1, 9, 2, 10, 3, 11);
}

template <int W>
DSP_INLINE lanes<W> zip_high(const lanes<W> &a, const lanes<W> &b) {
  if constexpr (W == 1)
    return b;
  else if constexpr (W == 2)
    return __builtin_shufflevector(a, b, 1, 3);
  else if constexpr (W == 4)
    return __builtin_shufflevector(a, b, 2, 6, 3, 7);
  else
    return __builtin_shufflevector(a, b, 4, 12, 5, 13, 6, 14, 7, 15);
}

template <int W>
DSP_INLINE lanes<W> reversed(const lanes<W> &a) {
  if constexpr (W == 1)
    return a;
  else if constexpr (W == 2)
    return __builtin_shufflevector(a, a, 1, 0);
  else if constexpr (W == 4)
    return __builtin_shufflevector(a, a, 3, 2, 1, 0);
  else
    return __builtin_shufflevector(a, a, 7, 6, 5, 4, 3, 2, 1, 0);
}

// W complex samples as they lie in a signal: re, im, re, im, ...
template <int W>
DSP_INLINE points<W> load_pairs(const double *p) {
  return unzip<W>(load<W>(p), load<W>(p + W));
}

template <int W>
DSP_INLINE void store_pairs(double *p, const points<W> &v) {
  store<W>(p, zip_low<W>(v.re, v.im));
  store<W>(p + W, zip_high<W>(v.re, v.im));
}

// The same from the last sample to the first.
template <int W>
DSP_INLINE points<W> load_pairs_reversed(const double *p) {
  const points<W> v = load_pairs<W>(p);
  return {reversed<W>(v.re), reversed<W>(v.im)};
}

template <int W>
DSP_INLINE void store_pairs_reversed(double *p, const points<W> &v) {
  store_pairs<W>(p, {reversed<W>(v.re), reversed<W>(v.im)});
}

// One exchange of a transposition: of every 2 x 2 block of D x D lanes in rows a and b, those off the diagonal.
template <int W, int D>
DSP_INLINE void exchange(lanes<W> &a, lanes<W> &b) {
  const lanes<W> x = a;
  const lanes<W> y = b;
  if constexpr (W == 2) {
    a = __builtin_shufflevector(x, y, 0, 2);
    b = __builtin_shufflevector(x, y, 1, 3);
  } else if constexpr (W == 4 && D == 1) {
    a = __builtin_shufflevector(x, y, 0, 4, 2, 6);
    b = __builtin_shufflevector(x, y, 1, 5, 3, 7);
  } else if constexpr (W == 4) {
    a = __builtin_shufflevector(x, y, 0, 1, 4, 5);
    b = __builtin_shufflevector(x, y, 2, 3, 6, 7);
  } else if constexpr (W == 8 && D == 1) {
    a = __builtin_shufflevector(x, y, 0, 8, 2, 10, 4, 12, 6, 14);
    b = __builtin_shufflevector(x, y, 1, 9, 3, 11, 5, 13, 7, 15);
  } else if constexpr (W == 8 && D == 2) {
    a = __builtin_shufflevector(x, y, 0, 1, 8, 9, 4, 5, 12, 13);
    b = __builtin_shufflevector(x, y, 2, 3, 10, 11, 6, 7, 14, 15);
  } else if constexpr (W == 8) {
    a = __builtin_shufflevector(x, y, 0, 1, 2, 3, 8, 9, 10, 11);
    b = __builtin_shufflevector(x, y, 4, 5, 6, 7, 12, 13, 14, 15);
  }
}

template <int W, int D = W / 2>
DSP_INLINE void transpose(points<W> (&row)[W]) {
  if constexpr (D > 0) {
    for (int i = 0; i < W; ++i) {
      if ((i & D) != 0) continue;
      exchange<W, D>(row[i].re, row[i + D].re);
      exchange<W, D>(row[i].im, row[i + D].im);
    }
    transpose<W, D / 2>(row);
  }
}

}  // namespace
}  // namespace dsp
