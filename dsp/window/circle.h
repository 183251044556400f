// Points on the unit circle.
#pragma once

#include <cmath>

namespace dsp {

constexpr double pi = 3.141592653589793;

struct circle_point {
  double cos;
  double sin;
};

// At part/period of a turn, part >= 0. The part is folded into the first octant before it meets pi, each step exact, so
// that the result is right to the last bit or nearly however many turns were made. A period without bound is no turn.
inline circle_point on_circle(double part, double period) {
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
