// Angles of phase traces, in radians.
#pragma once

namespace dsp {

constexpr double pi = 3.14159265358979323846;
constexpr double turn = 2.0 * pi;

}  // namespace dsp
