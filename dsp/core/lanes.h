// Vectors of doubles for kernels (*.isa.cpp files): the widest that the instruction set at hand has, two doubles where
// it has none. Everything here is local to the file that includes it.
#pragma once

namespace {

#if defined(__AVX512F__)
constexpr int lane_count = 8;
#elif defined(__AVX__)
constexpr int lane_count = 4;
#else
constexpr int lane_count = 2;
#endif

typedef double lanes __attribute__((vector_size(lane_count * sizeof(double))));
typedef double lane_pair __attribute__((vector_size(2 * sizeof(double))));

// carried<V> is a V that one pass of a loop leaves to the next. Without vector registers GCC would keep it in memory,
// but not its elements.
#if defined(__SSE2__) || defined(__aarch64__)
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

// From and to any address.
template <class V>
inline V load(const double *p) {
  V v;
  if constexpr (has_vector_registers || sizeof v == sizeof *p)
    __builtin_memcpy(&v, p, sizeof v);
  else
    for (unsigned i = 0; i < sizeof v / sizeof *p; ++i) v[i] = p[i];
  return v;
}

template <class V>
inline void store(double *p, const V &v) {
  if constexpr (has_vector_registers || sizeof v == sizeof *p)
    __builtin_memcpy(p, &v, sizeof v);
  else
    for (unsigned i = 0; i < sizeof v / sizeof *p; ++i) p[i] = v[i];
}

// (b, a, d, c, ...) of (a, b, c, d, ...): real and imaginary parts exchanged.
template <class V>
inline V swap_pairs(const V &v) {
  if constexpr (sizeof v == 2 * sizeof(double))
    return __builtin_shufflevector(v, v, 1, 0);
  else if constexpr (sizeof v == 4 * sizeof(double))
    return __builtin_shufflevector(v, v, 1, 0, 3, 2);
  else
    return __builtin_shufflevector(v, v, 1, 0, 3, 2, 5, 4, 7, 6);
}

inline lanes broadcast(double x) { return x - lanes{}; }

inline lanes alternating(double even, double odd) {
  lanes place{};
  for (int i = 0; i < lane_count; ++i) place[i] = i % 2;
  return place == 0.0 ? broadcast(even) : broadcast(odd);
}

// first, first + 1, ...
inline lanes counting_from(int first) {
  lanes v{};
  for (int i = 0; i < lane_count; ++i) v[i] = i;
  return v + first;
}

// The doubles from x[at] on; `missing` in place of those from `end` on.
inline lanes load_some(const double *x, int at, int end, double missing) {
  if (at + lane_count <= end) return load<lanes>(x + at);
  lanes some = broadcast(missing);
  for (int i = 0; i < lane_count - 1; ++i)
    if (at + i < end) some[i] = x[at + i];
  return some;
}

}  // namespace
