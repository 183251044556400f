// Products with roots of unity as tables hold them, for kernels.
#pragma once

#include "dsp/fft/complex_vectors.h"
#include "dsp/math/angle.h"

namespace dsp::fft {
namespace {

// Doubles that tables hold for the root of a lane: for pairs (cos, cos) and (sin, -sin).
template <class P>
constexpr int values_of_root = P::in_pairs ? 4 : root_values;

// a times cos - i sin, one root for each lane: the cosines of all lanes, then their sines. Three multiplications and
// three additions would do as well, but they round more, and additions limit the speed.
template <int W>
DSP_INLINE points<W> times_root(const points<W> &a, const double *root) {
  const auto cos = load<lanes<W>>(root);
  const auto sin = load<lanes<W>>(root + W);
  return {a.re * cos + a.im * sin, a.im * cos - a.re * sin};
}
template <int W>
DSP_INLINE pairs<W> times_root(const pairs<W> &a, const double *root) {
  return {swap_pairs(a.parts) * load<lanes<2 * W>>(root + 2 * W) + a.parts * load<lanes<2 * W>>(root)};
}

// The same root for all lanes.
template <class P>
DSP_INLINE P times_one_root(const P &a, const double *root) {
  return turned(a, root[0], root[1]);
}

}  // namespace
}  // namespace dsp::fft
