#include "dsp/stats/extremes.h"

#include "dsp/core/lanes.h"
#include "dsp/core/saturation.h"

namespace dsp {
namespace DSP_ISA {
namespace {

constexpr int block_doubles = 512;
constexpr int groups = 4;
constexpr double missing = __builtin_nan("");  // never chosen

struct value_key {
  lanes operator()(const lanes &x) const { return x; }
};

// The same in both places of a pair.
struct plain_magnitude_key {
  lanes operator()(const lanes &z) const {
    const lanes square = z * z;
    return square + swap_pairs(square);
  }
};

struct magnitude_key {
  lanes operator()(const lanes &z) const {
    const auto beyond = (z > overflow_bound) | (z < -overflow_bound);
    const auto number = z == z;
    const auto saturated = (beyond | swap_pairs(beyond)) & number & swap_pairs(number);
    return saturated ? broadcast(overflow_bound) : plain_magnitude_key()(z);
  }
};

template <bool Least>
auto better(const lanes &a, const lanes &b) {
  return Least ? a < b : a > b;
}

// The best key among n doubles, `best` if none beats it.
template <class Key, bool Least>
double best_key(const double *x, int n, double best) {
  lanes m[groups];
  for (lanes &v : m) v = broadcast(best);
  const auto take = [](const lanes &key, lanes &v) { v = better<Least>(key, v) ? key : v; };
  int at = 0;
  for (; at + groups * lane_count <= n; at += groups * lane_count)
    for (int g = 0; g < groups; ++g) take(Key()(load<lanes>(x + at + g * lane_count)), m[g]);
  for (; at < n; at += lane_count) take(Key()(load_some(x, at, n, missing)), m[0]);
  for (int g = 1; g < groups; ++g) take(m[g], m[0]);
  for (int i = 0; i < lane_count; ++i) best = (Least ? m[0][i] < best : m[0][i] > best) ? m[0][i] : best;
  return best;
}

// The place of the first double with this key: from the back, so that the first is noted last.
template <class Key>
int find_key(const double *x, int n, double key) {
  lanes place = broadcast(n);
  for (int at = (n - 1) / lane_count * lane_count; at >= 0; at -= lane_count)
    place = Key()(load_some(x, at, n, missing)) == key ? counting_from(at) : place;
  double first = place[0];
  for (int i = 1; i < lane_count; ++i) first = place[i] < first ? place[i] : first;
  return static_cast<int>(first);
}

// Block by block, noting only in which one the best key turned up; that one is searched for its place. `Fast` keys
// serve up to a block whose best is so great that a part may be beyond the bound. (No least key is: it would not beat
// the start.)
template <class Fast, class Exact, bool Least>
std::int64_t search(const double *x, std::int64_t n, int parts) {
  const std::int64_t doubles = n * parts;
  double best = Least ? overflow_bound : -overflow_bound;
  std::int64_t found = -1;
  bool exact = false;
  const auto length = [&](std::int64_t at) {
    return static_cast<int>(doubles - at < block_doubles ? doubles - at : block_doubles);
  };
  for (std::int64_t at = 0; at < doubles; at += block_doubles) {
    double key = best_key<Fast, Least>(x + at, length(at), best);
    if (key == best) continue;
    const bool suspect = key > 0.5 * overflow_square;
    if (suspect) key = best_key<Exact, Least>(x + at, length(at), best);
    if (key == best) continue;
    best = key;
    found = at;
    exact = suspect;
  }
  if (found < 0) return -1;
  const double *block = x + found;
  const int place = exact ? find_key<Exact>(block, length(found), best) : find_key<Fast>(block, length(found), best);
  return (found + place) / parts;
}

template <bool Least>
std::int64_t find(const double *x, std::int64_t n, int parts) {
  return parts == 1 ? search<value_key, value_key, Least>(x, n, parts)
                    : search<plain_magnitude_key, magnitude_key, Least>(x, n, parts);
}

}  // namespace

extern const extreme_kernels extreme_table = {find<false>, find<true>};

}  // namespace DSP_ISA
}  // namespace dsp
