// Vectors of doubles for kernels (*.isa.cpp files), and complex samples in them. Everything here is local to the file
// that includes it, so that each instruction set gets code of its own.
#pragma once

#define DSP_INLINE inline __attribute__((always_inline))

namespace dsp {
namespace {

// The widest vector that the instruction set has; two doubles where it has none.
#if defined(__AVX512F__)
constexpr int lane_count = 8;
#elif defined(__AVX__)
constexpr int lane_count = 4;
#else
constexpr int lane_count = 2;
#endif

// W doubles in a vector; W = 1 is a plain double.
template <int W>
struct lanes_type {
  typedef double type __attribute__((vector_size(W * sizeof(double))));
  typedef double at_any_double __attribute__((vector_size(W * sizeof(double)), aligned(sizeof(double)), may_alias));
};
template <>
struct lanes_type<1> {
  typedef double type;
};

template <int W>
using lanes = typename lanes_type<W>::type;

using widest = lanes<lane_count>;

template <class V>
constexpr int width_of = static_cast<int>(sizeof(V) / sizeof(double));

// Whether the compiler fuses a product and a sum where it may.
#if defined(__FMA__) || defined(__ARM_FEATURE_FMA)
constexpr bool has_fused_products = true;
#else
constexpr bool has_fused_products = false;
#endif

// A vector that a loop carries from one pass to the next. Without vector registers GCC keeps a vector in memory but an
// array of its elements in registers.
#if defined(__SSE2__) || defined(__aarch64__) || defined(__wasm_simd128__)
constexpr bool has_vector_registers = true;
template <class V>
using carried = V;
#else
constexpr bool has_vector_registers = false;
template <class V>
struct elements_of {
  double part[sizeof(V) / sizeof(double)];

  double operator[](unsigned i) const { return part[i]; }
  template <class W>
  void operator=(const W &v) {
    for (unsigned i = 0; i < sizeof(V) / sizeof(double); ++i) part[i] = v[i];
  }
  template <class W>
  void operator+=(const W &v) {
    for (unsigned i = 0; i < sizeof(V) / sizeof(double); ++i) part[i] += v[i];
  }
};
template <class V>
struct carried_form {
  using type = elements_of<V>;
};
template <>
struct carried_form<double> {
  using type = double;
};
template <class V>
using carried = typename carried_form<V>::type;
#endif

// load() and store() take any address that is aligned for a double.
template <class V>
DSP_INLINE V load(const double *p) {
  if constexpr (width_of<V> == 1) {
    return *p;  // NOLINT(clang-analyzer-core.uninitialized.UndefReturn): it loses track of arrays filled in part
  } else {
    V v;
    if constexpr (has_vector_registers)
      __builtin_memcpy(&v, p, sizeof v);
    else
      for (unsigned i = 0; i < sizeof v / sizeof *p; ++i) v[i] = p[i];
    return v;
  }
}

// The same for a vector of many uses: GCC would repeat a plain load as an operand of each.
template <class V>
DSP_INLINE V load_once(const double *p) {
  if constexpr (has_vector_registers && sizeof(V) > sizeof *p)
    return *reinterpret_cast<const volatile typename lanes_type<width_of<V>>::at_any_double *>(p);
  else
    return load<V>(p);
}

template <class V>
DSP_INLINE void store(double *p, const V &v) {
  if constexpr (width_of<V> == 1)
    *p = v;
  else if constexpr (has_vector_registers)
    __builtin_memcpy(p, &v, sizeof v);
  else
    for (unsigned i = 0; i < sizeof v / sizeof *p; ++i) p[i] = v[i];
}

// The rounding error of sum = a + b, exactly. Right only without contraction. (Knuth, TAOCP 2, 4.2.2.)
template <class V>
DSP_INLINE V sum_error(const V &a, const V &b, const V &sum) {
  const V b_part = sum - a;
  return (a - (sum - b_part)) + (b - b_part);
}

// (b, a, d, c, ...) of (a, b, c, d, ...): real and imaginary parts exchanged.
template <class V>
inline V swap_pairs(const V &v) {
  if constexpr (width_of<V> == 2)
    return __builtin_shufflevector(v, v, 1, 0);
  else if constexpr (width_of<V> == 4)
    return __builtin_shufflevector(v, v, 1, 0, 3, 2);
  else
    return __builtin_shufflevector(v, v, 1, 0, 3, 2, 5, 4, 7, 6);
}

inline widest broadcast(double x) { return x - widest{}; }

// (even, odd, even, odd, ...)
template <class V = widest>
DSP_INLINE V alternating(double even, double odd) {
  V place{};
  for (int i = 0; i < width_of<V>; ++i) place[i] = i % 2;
  return place == 0.0 ? even - V{} : odd - V{};
}

// first, first + 1, ...
inline widest counting_from(int first) {
  widest v{};
  for (int i = 0; i < lane_count; ++i) v[i] = i;
  return v + first;
}

// The doubles from x[at] on; `missing` in place of those from `end` on.
inline widest load_some(const double *x, int at, int end, double missing) {
  if (at + lane_count <= end) return load<widest>(x + at);
  widest some = broadcast(missing);
  for (int i = 0; i < lane_count - 1; ++i)
    if (at + i < end) some[i] = x[at + i];
  return some;
}

// W complex samples: a vector of their real parts and one of their imaginary parts.
template <int W>
struct points {
  static constexpr int width = W;
  static constexpr bool in_pairs = false;
  lanes<W> re;
  lanes<W> im;
};

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
  return {load<lanes<W>>(p), load<lanes<W>>(p + W)};
}

template <int W>
DSP_INLINE void store_split(double *p, const points<W> &v) {
  store(p, v.re);
  store(p + W, v.im);
}

// Puts samples that are in order into the order that load_pairs() leaves them in.
template <int W>
DSP_INLINE lanes<W> in_lane_order(const lanes<W> &a) {
  if constexpr (W == 4)
    return __builtin_shufflevector(a, a, 0, 2, 1, 3);
  else if constexpr (W == 8)
    return __builtin_shufflevector(a, a, 0, 4, 1, 5, 2, 6, 3, 7);
  else
    return a;
}

// The even lanes of a and b in turn: a0, b0, a2, b2, ...; second_lanes() gives the odd ones: a1, b1, a3, b3, ...
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

// Pairs of lanes in reverse order; the two lanes of a pair keep theirs.
template <int W>
DSP_INLINE lanes<W> pairs_reversed(const lanes<W> &a) {
  if constexpr (W == 4)
    return __builtin_shufflevector(a, a, 2, 3, 0, 1);
  else if constexpr (W == 8)
    return __builtin_shufflevector(a, a, 6, 7, 4, 5, 2, 3, 0, 1);
  else
    return a;
}

// W complex samples from a signal, re, im, re, im, ...; store_pairs() writes them back. One shuffle for each vector:
// the lanes hold the samples in an order of their own, that of in_lane_order().
template <int W>
DSP_INLINE points<W> load_pairs(const double *p) {
  const lanes<W> a = load<lanes<W>>(p);
  const lanes<W> b = load<lanes<W>>(p + W);
  return {first_lanes<W>(a, b), second_lanes<W>(a, b)};
}

// The same with sample l in lane l, which takes costlier shuffles.
template <int W>
DSP_INLINE points<W> load_pairs_in_order(const double *p) {
  const lanes<W> a = load<lanes<W>>(p);
  const lanes<W> b = load<lanes<W>>(p + W);
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
  store(p, first_lanes<W>(v.re, v.im));
  store(p + W, second_lanes<W>(v.re, v.im));
}

// load_pairs() and store_pairs() with the samples in reverse order.
template <int W>
DSP_INLINE points<W> load_pairs_reversed(const double *p) {
  if constexpr (W == 1) return load_pairs<W>(p);
  const lanes<W> a = pairs_reversed<W>(load<lanes<W>>(p + W));
  const lanes<W> b = pairs_reversed<W>(load<lanes<W>>(p));
  return {first_lanes<W>(a, b), second_lanes<W>(a, b)};
}

template <int W>
DSP_INLINE void store_pairs_reversed(double *p, const points<W> &v) {
  if constexpr (W == 1) return store_pairs<W>(p, v);
  store(p, pairs_reversed<W>(second_lanes<W>(v.re, v.im)));
  store(p + W, pairs_reversed<W>(first_lanes<W>(v.re, v.im)));
}

// a becomes the lower halves of a and b, b the upper halves.
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

// Transposes a square of W/2 rows and W/2 columns whose elements are pairs of lanes.
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
