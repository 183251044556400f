#include "dsp/stats/extremes_kernels.h"

#include "dsp/math/saturation.h"
#include "dsp/simd/vector.h"

namespace dsp::stats {
namespace DSP_ISA {
namespace {

constexpr int block_doubles = 256;
constexpr int groups = 4;
constexpr double missing = __builtin_nan("");  // never chosen
constexpr double nowhere = 0x1p62;             // beyond every place

struct value_key {
  widest operator()(const widest &x) const { return x; }
};

// Both elements of a pair get the squared magnitude.
struct plain_magnitude_key {
  widest operator()(const widest &z) const {
    const widest square = z * z;
    return square + swap_pairs(square);
  }
};

struct magnitude_key {
  widest operator()(const widest &z) const {
    const auto beyond = (z > overflow_bound) | (z < -overflow_bound);
    const auto number = z == z;
    const auto saturated = (beyond | swap_pairs(beyond)) & number & swap_pairs(number);
    return saturated ? broadcast(overflow_bound) : plain_magnitude_key()(z);
  }
};

template <bool Least, class V>
auto better(const V &a, const V &b) {
  return Least ? a < b : a > b;
}

// The best keys so far and the indices of their doubles, as vectors or as one number.
template <class V>
struct best_of {
  V key;
  V place;

  template <class Wins>
  void replace(const Wins &wins, const best_of &other) {
    key = wins ? other.key : key;
    place = wins ? other.place : place;
  }
};

// Of two equal keys the earlier wins.
template <bool Least, class V>
void merge(best_of<V> &into, const best_of<V> &other) {
  into.replace(better<Least>(other.key, into.key) | ((other.key == into.key) & (other.place < into.place)), other);
}

template <bool Least>
best_of<double> best_lane(const best_of<widest> &b) {
  best_of<double> first = {b.key[0], b.place[0]};
  for (int i = 1; i < lane_count; ++i) merge<Least>(first, best_of<double>{b.key[i], b.place[i]});
  return first;
}

// Calls take(key, row, group) along n doubles, a row being a fixed number of vectors. Missing doubles of the last row
// are NaN.
template <class Key, class Take>
void each_key(const double *x, int n, const Take &take) {
  constexpr int row = groups * lane_count;
  int at = 0;
  for (; at + row <= n; at += row)
    for (int g = 0; g < groups; ++g) take(Key()(load<widest>(x + at + g * lane_count)), at, g);
  for (int g = 0; g < groups; ++g)
    if (at + g * lane_count < n) take(Key()(load_some(x, at + g * lane_count, n, missing)), at, g);
}

template <bool Least>
constexpr double start = Least ? overflow_bound : -overflow_bound;

// The first double with the best key of a block; `nowhere` if none beats the start.
template <class Key, bool Least>
best_of<double> best_in_block(const double *x, int n) {
  best_of<widest> best[groups];
  for (auto &b : best) b = {broadcast(start<Least>), broadcast(nowhere)};
  each_key<Key>(x, n, [&best](const widest &key, int row, int g) {
    best[g].replace(better<Least>(key, best[g].key), {key, broadcast(row)});
  });
  for (int g = 0; g < groups; ++g) best[g].place += counting_from(g * lane_count);
  for (int g = 1; g < groups; ++g) merge<Least>(best[0], best[g]);
  return best_lane<Least>(best[0]);
}

// The same for any number of doubles: finds the best key of each block, then searches the first block that has it.
template <class Key, bool Least>
best_of<double> first_best(const double *x, int64_t n) {
  if (n <= block_doubles) return best_in_block<Key, Least>(x, static_cast<int>(n));
  const auto length = [n](int64_t at) { return static_cast<int>(n - at < block_doubles ? n - at : block_doubles); };
  best_of<widest> best = {broadcast(start<Least>), broadcast(nowhere)};
  for (int64_t at = 0; at < n; at += block_doubles) {
    widest m[groups];
    for (widest &v : m) v = broadcast(start<Least>);
    each_key<Key>(x + at, length(at),
                  [&m](const widest &key, int, int g) { m[g] = better<Least>(key, m[g]) ? key : m[g]; });
    for (int g = 1; g < groups; ++g) m[0] = better<Least>(m[g], m[0]) ? m[g] : m[0];
    best.replace(better<Least>(m[0], best.key), {m[0], broadcast(static_cast<double>(at))});
  }
  best_of<double> first = best_lane<Least>(best);
  if (first.place < nowhere) {
    const auto at = static_cast<int64_t>(first.place);
    first.place += best_in_block<Key, Least>(x + at, length(at)).place;
  }
  return first;
}

// Searches complex samples by plain keys first, and again with saturation when the best is so great that a component
// may be beyond the bound. (A least key never is: it would not beat the start.)
template <bool Least>
int64_t find(const double *x, int64_t n, int width) {
  best_of<double> first =
      width == 1 ? first_best<value_key, Least>(x, n) : first_best<plain_magnitude_key, Least>(x, 2 * n);
  if constexpr (!Least)
    if (width == 2 && first.key > 0.5 * overflow_square) first = first_best<magnitude_key, Least>(x, 2 * n);
  return first.place < nowhere ? static_cast<int64_t>(first.place) / width : -1;
}

}  // namespace

extern const extremes_kernel_set extremes_set = {find<false>, find<true>};

}  // namespace DSP_ISA
}  // namespace dsp::stats
