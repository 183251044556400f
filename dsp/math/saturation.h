// The bound that stands for infinity, and the comparisons that go with it. NaN is within bounds everywhere: it runs
// through the formulas. Local to the file that includes it: kernel files (*.isa.cpp) do.
#pragma once

namespace dsp {

constexpr double overflow_bound = 1e100;
constexpr double overflow_square = 1e200;
constexpr double smallest_normal = 2.2250738585072014e-308;

static inline bool overflows(double x) { return __builtin_fabs(x) > overflow_bound; }

static inline double saturate(double x) {
  return x > overflow_bound ? overflow_bound : x < -overflow_bound ? -overflow_bound : x;
}

// The square of a component, and what stands for the square of one beyond the bound: the squares tell as well, since
// that of the bound is 1e200 and that of the next number above is more.
static inline double saturated_square(double x, double beyond = overflow_square) {
  const double square = x * x;
  return square > overflow_square ? beyond : square;
}

}  // namespace dsp
