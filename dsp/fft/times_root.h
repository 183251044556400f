// Products with roots of unity as tables hold them, for kernels.
#pragma once

#include "dsp/fft/complex_vectors.h"

namespace dsp::fft {
namespace {

// With fused products four multiplications cost no more than three and round less.
#if defined(__FMA__) || defined(__ARM_FEATURE_FMA)
constexpr int root_values = 2;
#else
constexpr int root_values = 3;
#endif

// Doubles that tables hold for the root of a lane: for pairs (cos, cos) and (sin, -sin), one value for each part.
template <class P>
constexpr int values_of_root = P::in_pairs ? 4 : root_values;

// a times cos - i sin, one root for each lane: the values of all lanes follow each other.
template <int W>
DSP_INLINE points<W> times_root(const points<W> &a, const double *root) {
  const auto cos = load<lanes<W>>(root);
  if constexpr (root_values == 2) {
    const auto sin = load<lanes<W>>(root + W);
    return {a.re * cos + a.im * sin, a.im * cos - a.re * sin};
  } else {
    const lanes<W> common = (a.re + a.im) * cos;
    return {common + a.im * load<lanes<W>>(root + 2 * W), common + a.re * load<lanes<W>>(root + W)};
  }
}
template <int W>
DSP_INLINE pairs<W> times_root(const pairs<W> &a, const double *root) {
  return {swap_pairs(a.parts) * load<lanes<2 * W>>(root + 2 * W) + a.parts * load<lanes<2 * W>>(root)};
}

// The same root for all lanes.
template <int W>
DSP_INLINE points<W> times_one_root(const points<W> &a, const double *root) {
  if constexpr (root_values == 2) {
    return {a.re * root[0] + a.im * root[1], a.im * root[0] - a.re * root[1]};
  } else {
    const lanes<W> common = (a.re + a.im) * root[0];
    return {common + a.im * root[2], common + a.re * root[1]};
  }
}
template <int W>
DSP_INLINE pairs<W> times_one_root(const pairs<W> &a, const double *root) {
  return {swap_pairs(a.parts) * (alternating_signs<W>(1.0) * root[1]) + a.parts * root[0]};
}

}  // namespace
}  // namespace dsp::fft
