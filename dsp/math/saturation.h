// The bound that replaces infinity, and its comparisons. NaN counts as within bounds and propagates. The functions are
// static, so that each kernel file (*.isa.cpp) gets code of its own.
#pragma once

namespace dsp {

constexpr double overflow_bound = 1e100;
constexpr double overflow_square = 1e200;
constexpr double smallest_normal = 2.2250738585072014e-308;
constexpr double ln_smallest_normal = -708.3964185322641;
constexpr double log10_smallest_normal = -307.6526555685888;

static inline bool overflows(double x) { return __builtin_fabs(x) > overflow_bound; }

static inline double saturate(double x) {
  return x > overflow_bound ? overflow_bound : x < -overflow_bound ? -overflow_bound : x;
}

// The square of a component; `beyond` for a component beyond the bound. Comparing squares is enough: the bound's square
// rounds to 1e200, and that of the next double to more.
static inline double saturated_square(double x, double beyond = overflow_square) {
  const double square = x * x;
  return square > overflow_square ? beyond : square;
}

}  // namespace dsp
