// Mathematical constants, rounded to double.
#pragma once

namespace dsp {

constexpr double pi = 3.141592653589793;
constexpr double two_pi = 6.283185307179586;
constexpr double half_sqrt2 = 0.7071067811865476;
constexpr double log10_e = 0.4342944819032518;
constexpr double epsilon = 0x1p-52;  // from 1 to the next double

}  // namespace dsp
