// The index of the first largest or smallest value of a range, with or without an excluded band.
#include <algorithm>
#include <cstdint>
#include <limits>

#include "dsp/dsp.h"
#include "dsp/trace/trace_kernels.h"

namespace dsp::trace {
namespace {

struct largest {
  static bool better(double a, double b) { return a > b; }
  static double of(const double *x, int64_t n, double than) { return trace_kernels().largest(x, n, than); }
};

struct smallest {
  static bool better(double a, double b) { return a < b; }
  static double of(const double *x, int64_t n, double than) { return trace_kernels().smallest(x, n, than); }
};

struct candidate {
  double value;
  int64_t at;
};

// Compares block by block, and searches only the best block for the index.
template <class Extreme>
void search(const double *x, int64_t begin, int64_t end, candidate *best) {
  constexpr int64_t block = 512;
  int64_t found = -1;
  for (int64_t i = begin; i < end; i += block) {
    const double value = Extreme::of(x + i, std::min(block, end - i), best->value);
    if (!Extreme::better(value, best->value)) continue;
    best->value = value;
    found = i;
  }
  if (found >= 0) best->at = std::find(x + found, x + end, best->value) - x;
}

template <class Extreme>
int32_t search_outside(const double *x, int64_t start, int64_t stop, int64_t skip_lo, int64_t skip_hi) {
  const bool starts_inside = start >= skip_lo && start < skip_hi;
  const int64_t first = starts_inside ? skip_hi : start;
  if (starts_inside && first >= stop) return -1;
  if (first + 1 >= stop) return static_cast<int32_t>(first);
  candidate best = {x[first], first};
  const bool band_ahead = skip_lo > first && skip_lo < skip_hi;
  search<Extreme>(x, first + 1, band_ahead ? std::min(skip_lo, stop) : stop, &best);
  if (band_ahead) search<Extreme>(x, skip_hi, stop, &best);
  return static_cast<int32_t>(best.at);
}

}  // namespace
}  // namespace dsp::trace

using namespace dsp;
using namespace dsp::trace;

int32_t vfpd_FindMax(const double *arr, int32_t start, int32_t stop) {
  return search_outside<largest>(arr, start, stop, 0, 0);
}

int32_t vfpd_FindMin(const double *arr, int32_t start, int32_t stop) {
  if (int64_t{start} + 1 >= stop) return start;
  candidate best = {std::numeric_limits<double>::max(), start};  // the first element itself is never chosen
  search<smallest>(arr, int64_t{start} + 1, stop, &best);
  return static_cast<int32_t>(best.at);
}

int32_t vfpd_FindMax2(const double *arr, int32_t start, int32_t stop, int32_t skip_lo, int32_t skip_hi) {
  return search_outside<largest>(arr, start, stop, skip_lo, skip_hi);
}

int32_t vfpd_FindMin2(const double *arr, int32_t start, int32_t stop, int32_t skip_lo, int32_t skip_hi) {
  return search_outside<smallest>(arr, start, stop, skip_lo, skip_hi);
}
