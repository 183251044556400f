// Roots of unity: points on the unit circle by the fraction of a turn.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>

#include "dsp/math/constants.h"

namespace dsp {

struct root {
  double cos;
  double sin;
};
constexpr int root_values = 2;  // doubles that a table holds for one

// cos and sin of 2 pi k/n for k = first .. last <= n/8, `spacing` doubles apart.
void fill_roots(double *cosines, double *sines, std::ptrdiff_t spacing, int64_t first, int64_t last, int64_t n);

// cos and sin of 2 pi k/n for the first eighth of the circle, k = 0 .. n/8; n is a power of two from 8 on.
void fill_octant(double *cosines, double *sines, int64_t n);

// cos and sin of 2 pi k/n for 0 <= k < n from such an octant.
root root_from_octant(const double *cosines, const double *sines, int64_t n, int64_t k);

// At part/period of a turn, part >= 0. The part is reduced to the first octant before it is multiplied by pi; each step
// of the reduction is exact, so the result is right to about an ulp for any number of turns. An infinite period gives
// the angle 0.
inline root root_at(double part, double period) {
  double t = std::fmod(part, period);
  const bool below = t > period / 2;
  if (below) t = period - t;
  const bool left = t > period / 4;
  if (left) t = period / 2 - t;
  const bool steep = t > period / 8;
  if (steep) t = period / 4 - t;
  const double angle = 2 * pi * (t / period);
  const double near = std::cos(angle);
  const double far = std::sin(angle);
  const double c = steep ? far : near;
  const double s = steep ? near : far;
  return {left ? -c : c, below ? -s : s};
}

}  // namespace dsp
