// The walk over samples with the kernel as a function object. Everything here is local to the file that includes it, so
// that kernel files (*.isa.cpp) get code of their own.
#pragma once

#include <cstdint>

#include "dsp/dsp.h"

// Tells the compiler that samples do not depend on each other: they do not when the output is exactly an input, but its
// overlap check would choose a scalar loop.
#if defined(__clang__)
#pragma clang diagnostic ignored "-Wpass-failed"  // not every kernel can be vectorised
#define DSP_INDEPENDENT _Pragma("clang loop vectorize(assume_safety)")
#else
#define DSP_INDEPENDENT _Pragma("GCC ivdep")
#endif

namespace dsp {

template <class Sample>
static inline Sample *as(double *data) {
  return reinterpret_cast<Sample *>(data);
}

template <class Sample>
static inline const Sample *as(const double *data) {
  return reinterpret_cast<const Sample *>(data);
}

// Calls f with a pointer to the samples by their own type, double or dsp_complex.
template <class Double, class F>
static inline void with_samples(Double *x, bool is_complex, F f) {
  if (is_complex)
    f(as<dsp_complex>(x));
  else
    f(x);
}

// The same for two signals at once.
template <class F>
static inline void with_samples(const double *x, bool x_complex, const double *y, bool y_complex, F f) {
  with_samples(x, x_complex, [=](const auto *p) { with_samples(y, y_complex, [=](const auto *q) { f(p, q); }); });
}

// out[i] = kernel(in[i]...); the inputs may be `out` itself. An output wider than an input is written from the back:
// first the upper half, then the upper half of the rest, and so on. Each half lies behind all samples still to be read,
// so the loops vectorise.
template <class Out, class Kernel, class... In>
static inline void walk(double *out, int64_t n, Kernel kernel, const In *...in) {
  Out *const to = as<Out>(out);
  constexpr bool widens = ((sizeof(In) < sizeof(Out)) || ...);
  for (int64_t end = n, begin; end > 0; end = begin) {
    begin = widens && end > 1 ? end - end / 2 : 0;
    DSP_INDEPENDENT
    for (int64_t i = begin; i < end; ++i) to[i] = kernel(in[i]...);
  }
}

// out[i] = kernel(in[i]) for a kernel overloaded on real and complex samples; what it returns is the representation of
// the output.
template <class Kernel>
static inline void each_sample(double *out, const double *in, int64_t n, bool is_complex, const Kernel &kernel) {
  if (is_complex)
    walk<decltype(kernel(dsp_complex()))>(out, n, kernel, as<dsp_complex>(in));
  else
    walk<decltype(kernel(double()))>(out, n, kernel, in);
}

}  // namespace dsp
