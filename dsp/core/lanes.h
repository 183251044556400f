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

// From and to any address.
template <class V>
inline V load(const double *p) {
  V v;
  __builtin_memcpy(&v, p, sizeof v);
  return v;
}

template <class V>
inline void store(double *p, const V &v) {
  __builtin_memcpy(p, &v, sizeof v);
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
