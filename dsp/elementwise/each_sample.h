// The loop of a kernel that is overloaded on real and complex samples, and made from the constant if it holds any. What
// the kernel returns is the new representation.
#pragma once

#include <cstdint>
#include <type_traits>

#include "dsp/dsp.h"
#include "dsp/simd/traversal.h"

namespace dsp::elementwise {

template <class Kernel>
static inline Kernel made(dsp_complex c) {
  if constexpr (std::is_empty_v<Kernel>)
    return Kernel{};
  else
    return Kernel{c};
}

template <class Kernel>
static void each_sample(double *out, const double *in, std::int64_t n, bool is_complex, dsp_complex c) {
  const auto kernel = made<Kernel>(c);
  if (is_complex)
    walk<decltype(kernel(dsp_complex()))>(out, n, kernel, as<dsp_complex>(in));
  else
    walk<decltype(kernel(double()))>(out, n, kernel, in);
}

}  // namespace dsp::elementwise
