// Walking one signal or two, front to back or back to front, with the kernel as a lambda. Everything is a template on
// the kernel, so a kernel file (*.isa.cpp) that passes local lambdas gets code of its own.
#pragma once

#include <cstdint>
#include <type_traits>

#include "dsp/core/sizing.h"
#include "dsp/dsp.h"

// An output that is an input exactly depends on nothing but its own sample; the compiler's overlap check would send
// that case to a scalar loop.
#if defined(__clang__)
#define DSP_INDEPENDENT _Pragma("clang loop vectorize(assume_safety)")
#else
#define DSP_INDEPENDENT _Pragma("GCC ivdep")
#endif

namespace dsp {

template <class Sample>
using samples_of = std::conditional_t<std::is_const_v<Sample>, const double, double>;

template <class Sample>
Sample *as(double *data) {
  return reinterpret_cast<Sample *>(data);
}

template <class Sample>
const Sample *as(const double *data) {
  return reinterpret_cast<const Sample *>(data);
}

// out[i] = kernel(in[i]...); the inputs may be `out` itself. An output wider than an input is written from the back.
template <class Out, class Kernel, class... In>
void walk(double *out, std::int32_t n, Kernel kernel, const In *...in) {
  Out *const to = as<Out>(out);
  if constexpr (((sizeof(In) == sizeof(Out)) && ...)) {
    DSP_INDEPENDENT
    for (std::int32_t i = 0; i < n; ++i) to[i] = kernel(in[i]...);
  } else if constexpr (((sizeof(In) >= sizeof(Out)) && ...)) {
    for (std::int32_t i = 0; i < n; ++i) to[i] = kernel(in[i]...);
  } else {
    for (std::int32_t i = n; i-- > 0;) to[i] = kernel(in[i]...);
  }
}

// In place on a signal of either representation.
template <class Real, class Complex>
void each(dsp_vec *v, Real real, Complex complex) {
  if (v->is_complex != 0)
    walk<dsp_complex>(v->data, samples(*v), complex, as<dsp_complex>(static_cast<const double *>(v->data)));
  else
    walk<double>(v->data, samples(*v), real, static_cast<const double *>(v->data));
}

}  // namespace dsp
