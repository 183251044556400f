// Sums of many terms in blocks of 2048 samples, whose partial sums start at 0. Inside a block a sum runs in 32 lanes,
// each taking every 32nd double, in runs of eight additions; the lanes are added pairwise at the end. The total of the
// blocks is compensated (Knuth's two-sum). So the order is the same on every processor, additions do not wait for one
// another, and a mean is right to about 2 ulp at any length. Several sums come out of one pass. Everything is local to
// the file that includes it, as in simd/vector.h.
//
// A kernel turns the doubles x, which begin at index `at` of their block, into the terms of its sums:
//
//     struct kernel {
//       static constexpr int sums = 2;
//       void operator()(const widest &x, int at, widest *term) const;
//     };
#pragma once

#include <cstdint>

#include "dsp/simd/vector.h"

namespace dsp::stats {
namespace {

constexpr int sum_lanes = 32;
constexpr int sum_round = 8 * sum_lanes;
constexpr int sum_block = 2048;  // samples

// Adds whole rows to the `Groups` vectors of lanes from `first` on. Lanes that do not fit into registers are summed in
// another pass over the block, which stays in the L1 cache.
template <int Groups, class Kernel>
void sum_some_lanes(const double *x, int n, int first, const Kernel &kernel, double (*lane)[sum_lanes]) {
  const int rows_end = n - n % sum_lanes;
  carried<widest> total[Kernel::sums][Groups] = {};
  for (int begin = 0; begin < rows_end; begin += sum_round) {
    const int end = begin + sum_round < rows_end ? begin + sum_round : rows_end;
    carried<widest> sum[Kernel::sums][Groups] = {};
    for (int at = begin + first; at < end; at += sum_lanes)
#pragma GCC unroll 8
      for (int g = 0; g < Groups; ++g) {
        widest term[Kernel::sums];
        kernel(load<widest>(x + at + g * lane_count), at + g * lane_count, term);
        for (int k = 0; k < Kernel::sums; ++k) sum[k][g] += term[k];
      }
    for (int k = 0; k < Kernel::sums; ++k)
      for (int g = 0; g < Groups; ++g) total[k][g] += sum[k][g];
  }
  for (int k = 0; k < Kernel::sums; ++k)
    for (int g = 0; g < Groups; ++g) store(lane[k] + first + g * lane_count, total[k][g]);
}

// The last row of a signal, which may have fewer than 32 doubles.
template <class Kernel>
void sum_incomplete_row(const double *x, int begin, int end, const Kernel &kernel, double (*lane)[sum_lanes]) {
  for (int at = begin; at < end; at += lane_count) {
    widest term[Kernel::sums];
    kernel(load_some(x, at, end, 0.0), at, term);
    for (int k = 0; k < Kernel::sums; ++k) {
      double *total = lane[k] + (at - begin);
      store(total, load<widest>(total) + (counting_from(at) < end ? term[k] : widest{}));
    }
  }
}

// The vectors of lanes that fit into registers at once.
constexpr int groups_at_once(int sums) {
  const int registers = lane_count == 2 ? 4 : 8;
  int groups = sum_lanes / lane_count;
  while (groups > 1 && groups * sums > registers) groups /= 2;
  return groups;
}

// Adds the even elements and the odd elements.
template <class V>
inline lanes<2> fold(const V &v) {
  if constexpr (sizeof v == 2 * sizeof(double))
    return v;
  else if constexpr (sizeof v == 4 * sizeof(double))
    return __builtin_shufflevector(v, v, 0, 1) + __builtin_shufflevector(v, v, 2, 3);
  else
    return fold(__builtin_shufflevector(v, v, 0, 1, 2, 3) + __builtin_shufflevector(v, v, 4, 5, 6, 7));
}

inline lanes<2> fold_lanes(const double *lane) {
  constexpr int count = sum_lanes / lane_count;
  widest sum[count];
  for (int i = 0; i < count; ++i) sum[i] = load<widest>(lane + i * lane_count);
  for (int half = count / 2; half > 0; half /= 2)
    for (int i = 0; i < half; ++i) sum[i] += sum[i + half];
  return fold(sum[0]);
}

// The sums of the even and of the odd elements of n doubles. Not inlined: inside its caller it would run out of
// registers.
template <int Groups, class Kernel>
__attribute__((noinline)) void sum_one_block(const double *x, int n, const Kernel &kernel, lanes<2> *pair) {
  double lane[Kernel::sums][sum_lanes];
  for (int first = 0; first < sum_lanes; first += Groups * lane_count)
    sum_some_lanes<Groups>(x, n, first, kernel, lane);
  if (n % sum_lanes != 0) sum_incomplete_row(x, n - n % sum_lanes, n, kernel, lane);
  for (int k = 0; k < Kernel::sums; ++k) pair[k] = fold_lanes(lane[k]);
}

// Compensated sums (Knuth's two-sum).
struct running_totals {
  lanes<2> value;
  lanes<2> rest = {};

  void add(const lanes<2> &x) {
    const lanes<2> sum = value + x;
    rest += sum_error(value, x, sum);
    value = sum;
  }
  // The compensation of an infinite sum is NaN.
  lanes<2> result() const { return rest == rest ? value + rest : value; }
};

// block(x, n, pair) sums the even and the odd elements of a block's n doubles. total[k * width + part] becomes the k-th
// sum; width is 2 for complex samples, whose components are summed separately, else 1.
template <int Sums, class Block>
void add_blocks(const double *x, int64_t samples, int width, const Block &block, double *total) {
  running_totals sum[Sums] = {};
  for (int64_t done = 0; done < samples; done += sum_block, x += sum_block * width) {
    lanes<2> pair[Sums];
    block(x, static_cast<int>(samples - done < sum_block ? samples - done : sum_block) * width, pair);
    for (int k = 0; k < Sums; ++k) {
      if (width == 1) pair[k] = lanes<2>{pair[k][0] + pair[k][1], 0.0};
      if (done == 0)
        sum[k].value = pair[k];
      else
        sum[k].add(pair[k]);
    }
  }
  for (int k = 0; k < Sums; ++k) {
    const lanes<2> pair = sum[k].result();
    total[k * width] = pair[0];
    if (width == 2) total[2 * k + 1] = pair[1];
  }
}

template <class Kernel>
void blocked_sum(const double *x, int64_t samples, int width, const Kernel &kernel, double *total) {
  const auto block = [&](const double *at, int n, lanes<2> *pair) {
    sum_one_block<groups_at_once(Kernel::sums)>(at, n, kernel, pair);
  };
  add_blocks<Kernel::sums>(x, samples, width, block, total);
}

// The same for a kernel that treats rare values in a costly way: `fast` omits that. A block whose sum number `Guard`,
// of non-negative terms, exceeds `limit` is summed again with `exact`.
template <int Guard, class Fast, class Exact>
void blocked_sum(const double *x, int64_t samples, int width, const Fast &fast, const Exact &exact, double limit,
                 double *total) {
  const auto block = [&](const double *at, int n, lanes<2> *pair) {
    sum_one_block<groups_at_once(Fast::sums)>(at, n, fast, pair);
    if (pair[Guard][0] <= limit && pair[Guard][1] <= limit) return;
    sum_one_block<1>(at, n, exact, pair);
  };
  add_blocks<Fast::sums>(x, samples, width, block, total);
}

}  // namespace
}  // namespace dsp::stats
