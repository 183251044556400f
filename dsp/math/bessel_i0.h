// The modified Bessel function of order 0, I0(x), as a function of (x/2)^2.
#pragma once

namespace dsp {

// value[i] = I0 at (x/2)^2 = y[i] + rest[i], where |rest| is at most an ulp of y. Windows know (x/2)^2, unlike x, to
// more digits than a double holds, and for large x the value depends on all of them.
constexpr int bessel_batch = 16;
void bessel_i0(const double *y, const double *rest, double *value);

}  // namespace dsp
