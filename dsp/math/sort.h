// Sorting and selecting without branches that depend on the data, since the processor would mispredict half of them.
// `before` is a strict weak order.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

#include "dsp/dsp.h"

namespace dsp {

// Moves the samples that belong in front to the front and returns their count; n >= 1. The first sample is held back,
// so that every other one moves into a free place.
template <class Sample, class Belongs>
int64_t split(Sample *x, int64_t n, Belongs belongs) {
  const Sample first = x[0];
  int64_t front = 0;
  for (int64_t i = 1; i < n; ++i) {
    const Sample sample = x[i];
    x[i - 1] = x[front];
    x[front] = sample;
    front += belongs(sample) ? 1 : 0;
  }
  x[n - 1] = x[front];
  x[front] = first;
  return front + (belongs(first) ? 1 : 0);
}

template <class Sample, class Before>
Sample median(const Sample &a, const Sample &b, const Sample &c, Before before) {
  return std::max(std::min(a, b, before), std::min(std::max(a, b, before), c, before), before);
}

// The samples still to be sorted. `patience` counts the partitions left before heap sort takes over, which bounds the
// worst case.
template <class Sample>
struct unsorted {
  Sample *x;
  int64_t n;
  int patience;

  static constexpr int64_t few = 24;

  unsorted(Sample *samples, int64_t count) : x(samples), n(count), patience(0) {
    for (; count > 0; count /= 2) patience += 2;
  }
  Sample *end() const { return x + n; }
  void drop_front(int64_t count) {
    x += count;
    n -= count;
  }

  template <class Before>
  Sample pivot(Before before) const {
    const auto middle = [&](int64_t step, int64_t i) { return median(x[i], x[i + step], x[i + 2 * step], before); };
    if (n < 256) return middle(n / 4, n / 4);
    return median(middle(n / 10, n / 10), middle(n / 10, n / 10 * 4), middle(n / 10, n / 10 * 7), before);
  }

  // Moves the samples before a pivot to the front and returns their count. When there are none, those that equal the
  // pivot are in their final place and are dropped.
  template <class Before>
  int64_t partition(Before before) {
    const Sample p = pivot(before);
    const int64_t front = split(x, n, [&](const Sample &s) { return before(s, p); });
    if (front == 0) drop_front(split(x, n, [&](const Sample &s) { return !before(p, s); }));
    return front;
  }

  template <class Before>
  void insert_each(Before before) {
    for (int64_t i = 1; i < n; ++i) {
      const Sample sample = x[i];
      int64_t at = i;
      for (; at > 0 && before(sample, x[at - 1]); --at) x[at] = x[at - 1];
      x[at] = sample;
    }
  }
};

template <class Sample, class Before>
void quicksort(unsorted<Sample> rest, Before before) {
  while (rest.n > unsorted<Sample>::few) {
    if (rest.patience-- == 0) {
      std::make_heap(rest.x, rest.end(), before);
      return std::sort_heap(rest.x, rest.end(), before);
    }
    const int64_t front = rest.partition(before);
    if (front == 0) continue;
    unsorted<Sample> smaller = rest;
    smaller.n = front;
    rest.drop_front(front);
    if (rest.n < front) std::swap(rest, smaller);
    quicksort(smaller, before);
  }
  rest.insert_each(before);
}

template <class Sample, class Before>
void sort(Sample *x, int64_t n, Before before) {
  const auto behind = [before](const Sample &a, const Sample &b) { return before(b, a); };
  if (std::is_sorted(x, x + n, before)) return;
  if (std::is_sorted(x, x + n, behind)) return std::reverse(x, x + n);
  quicksort(unsorted<Sample>(x, n), before);
}

// Selects the k-th smallest sample in place, as std::nth_element does.
template <class Sample, class Before>
void select(Sample *x, int64_t n, int64_t k, Before before) {
  Sample *const wanted = x + k;
  unsorted<Sample> rest(x, n);
  while (rest.n > unsorted<Sample>::few) {
    if (rest.patience-- == 0) return std::partial_sort(rest.x, wanted + 1, rest.end(), before);
    const int64_t front = rest.partition(before);
    if (wanted < rest.x) return;
    if (wanted < rest.x + front)
      rest.n = front;
    else
      rest.drop_front(front);
  }
  rest.insert_each(before);
}

// NaN has no order: it is moved behind the numbers.
inline bool is_nan(double x) { return std::isnan(x); }
inline bool is_nan(dsp_complex z) { return std::isnan(z.re) || std::isnan(z.im); }

inline bool any_nan(const double *x, int64_t n) {
  int64_t found = 0;
  for (int64_t i = 0; i < n; ++i) found |= x[i] != x[i] ? 1 : 0;
  return found != 0;
}

// Moves the samples without NaN to the front and returns their count.
template <class Sample>
int64_t numbers_first(Sample *x, int64_t n) {
  constexpr int width = sizeof(Sample) / sizeof(double);  // NOLINT(bugprone-sizeof-expression): 1 or 2
  if (!any_nan(reinterpret_cast<const double *>(x), n * width)) return n;
  return split(x, n, [](const Sample &s) { return !is_nan(s); });
}

}  // namespace dsp
