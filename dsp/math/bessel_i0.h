// The modified Bessel function of order 0, I0(x), as a function of (x/2)^2.
#pragma once

namespace dsp {

// value[i] = I0 at (x/2)^2 = y[i] + rest[i], where |rest| is an ulp of y or less: the square, unlike x, is what a
// window knows to more digits than a double holds, and near the top every digit of it counts.
constexpr int bessel_batch = 16;
void bessel_i0(const double *y, const double *rest, double *value);

}  // namespace dsp
