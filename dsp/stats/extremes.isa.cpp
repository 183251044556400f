#include "dsp/stats/extremes.h"

#include "dsp/core/lanes.h"
#include "dsp/core/saturation.h"

namespace dsp {
namespace DSP_ISA {
namespace {

constexpr int block_doubles = 2048;
constexpr int groups = 4;

struct value_key {
  lanes operator()(const lanes &x) const { return x; }
};

// The same in both places of a pair.
struct magnitude_key {
  lanes operator()(const lanes &z) const {
    const lanes square = z * z;
    const auto beyond = (z > overflow_bound) | (z < -overflow_bound);
    const auto number = z == z;
    const auto saturated = (beyond | swap_pairs(beyond)) & number & swap_pairs(number);
    return saturated ? lanes{} + overflow_bound : square + swap_pairs(square);
  }
};

template <bool Least>
auto better(const lanes &a, const lanes &b) {
  return Least ? a < b : a > b;
}

// The doubles from `at` on, NaN from `end` on.
lanes load_some(const double *x, int at, int end) {
  if (at + lane_count <= end) return load<lanes>(x + at);
  lanes v = lanes{} / lanes{};
  for (int i = 0; at + i < end; ++i) v[i] = x[at + i];
  return v;
}

// The best key among n doubles, `best` if none beats it.
template <class Key, bool Least>
double best_key(const double *x, int n, double best) {
  lanes m[groups];
  for (lanes &v : m) v = lanes{} + best;
  const auto take = [](const lanes &key, lanes &v) { v = better<Least>(key, v) ? key : v; };
  int at = 0;
  for (; at + groups * lane_count <= n; at += groups * lane_count)
    for (int g = 0; g < groups; ++g) take(Key()(load<lanes>(x + at + g * lane_count)), m[g]);
  for (; at < n; at += lane_count) take(Key()(load_some(x, at, n)), m[0]);
  for (int g = 1; g < groups; ++g) take(m[g], m[0]);
  for (int i = 0; i < lane_count; ++i) best = (Least ? m[0][i] < best : m[0][i] > best) ? m[0][i] : best;
  return best;
}

// The place of the first double with this key.
template <class Key>
int find_key(const double *x, int n, double key) {
  for (int at = 0; at < n; at += lane_count) {
    const lanes here = Key()(load_some(x, at, n));
    for (int i = 0; i < lane_count; ++i)
      if (here[i] == key) return at + i;
  }
  return n;
}

// Block by block, noting only in which one the best key turned up; that one is searched for its place.
template <class Key, bool Least>
std::int64_t search(const double *x, std::int64_t n, int parts) {
  const std::int64_t doubles = n * parts;
  double best = Least ? overflow_bound : -overflow_bound;
  std::int64_t found = -1;
  const auto length = [&](std::int64_t at) {
    return static_cast<int>(doubles - at < block_doubles ? doubles - at : block_doubles);
  };
  for (std::int64_t at = 0; at < doubles; at += block_doubles) {
    const double key = best_key<Key, Least>(x + at, length(at), best);
    if (key == best) continue;
    best = key;
    found = at;
  }
  return found < 0 ? -1 : (found + find_key<Key>(x + found, length(found), best)) / parts;
}

template <bool Least>
std::int64_t find(const double *x, std::int64_t n, int parts) {
  return parts == 1 ? search<value_key, Least>(x, n, parts) : search<magnitude_key, Least>(x, n, parts);
}

}  // namespace

extern const extreme_kernels extreme_table = {find<false>, find<true>};

}  // namespace DSP_ISA
}  // namespace dsp
