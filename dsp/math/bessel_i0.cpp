#include "dsp/math/bessel_i0.h"

#include <cmath>

#include "dsp/math/angle.h"
#include "dsp/math/double_double.h"
#include "dsp/math/saturation.h"

namespace dsp {
namespace {

constexpr double largest_for_series = 100.0;  // x = 20

// sum of y^k / (k!)^2
struct power_series {
  static constexpr int terms = 35;
  double c[terms];
  constexpr power_series() : c() {
    double factorial = 1.0;  // exact while its square matters
    for (int k = 0; k < terms; ++k) {
      if (k > 0) factorial *= k;
      c[k] = 1.0 / factorial / factorial;
    }
  }
};
constexpr power_series series;

// e^x / sqrt(2 pi x) times the sum of ((2k - 1)!!)^2 / k! (1/(8x))^k
struct asymptotic_series {
  static constexpr int terms = 22;
  double c[terms];
  constexpr asymptotic_series() : c() {
    c[0] = 1.0;
    for (int k = 1; k < terms; ++k) c[k] = c[k - 1] * (2 * k - 1) * (2 * k - 1) / k;
  }
};
constexpr asymptotic_series tail;

double asymptotic(double y, double rest) {
  const double half = std::sqrt(y);
  const double_double square = double_double::product(half, half);
  const double x = 2 * half;
  const double x_rest = ((y - square.hi) - square.lo + rest) / half;
  double sum = 0.0;
  for (int k = asymptotic_series::terms; k-- > 0;) sum = sum * (0.125 / x) + tail.c[k];
  return std::exp(x) * (1 + x_rest) / std::sqrt(2 * pi * x) * sum;
}

}  // namespace

void bessel_i0(const double *y, const double *rest, double *value) {
  // Two terms at a time: half the steps of Horner's rule and half the rounding. The rounding error of the square of y
  // is passed on as a correction of y.
  double square[bessel_batch];
  double lost[bessel_batch];
  for (int i = 0; i < bessel_batch; ++i) {
    const double_double exact = double_double::product(y[i], y[i]);
    square[i] = exact.hi;
    lost[i] = exact.lo / (2 * y[i] + smallest_normal);
    value[i] = series.c[power_series::terms - 1];
  }
  for (int k = power_series::terms - 3; k >= 0; k -= 2)
    for (int i = 0; i < bessel_batch; ++i) value[i] = value[i] * square[i] + (series.c[k + 1] * y[i] + series.c[k]);
  for (int i = 0; i < bessel_batch; ++i) {
    if (y[i] > largest_for_series)
      value[i] = asymptotic(y[i], rest[i]);
    else  // first-order correction; I1(x)/(x/2) to about 1 % is enough for an ulp
      value[i] += value[i] * ((rest[i] + lost[i]) * 2 / (0.5 + std::sqrt(4 * y[i] + 2.25)));
  }
}

}  // namespace dsp
