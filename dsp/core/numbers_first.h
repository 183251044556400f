// NaN has no place in an order: it is set aside, behind the numbers.
#pragma once

#include <cmath>
#include <cstdint>

#include "dsp/core/quicksort.h"
#include "dsp/dsp.h"

namespace dsp {

inline bool is_nan(double x) { return std::isnan(x); }
inline bool is_nan(dsp_complex z) { return std::isnan(z.re) || std::isnan(z.im); }

inline bool any_nan(const double *x, std::int64_t n) {
  std::int64_t found = 0;
  for (std::int64_t i = 0; i < n; ++i) found |= x[i] != x[i] ? 1 : 0;
  return found != 0;
}

// Counts the numbers of n samples, having moved them to the front.
template <class Sample>
std::int64_t numbers_first(Sample *x, std::int64_t n) {
  constexpr int parts = sizeof(Sample) / sizeof(double);  // NOLINT(bugprone-sizeof-expression): 1 or 2
  if (!any_nan(reinterpret_cast<const double *>(x), n * parts)) return n;
  return split(x, n, [](const Sample &s) { return !is_nan(s); });
}

}  // namespace dsp
