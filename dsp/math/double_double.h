// Numbers of twice the precision of a double: the unevaluated sum of two doubles. Right only when compiled without
// contraction. (Dekker 1971; Knuth, TAOCP 2, 4.2.2.)
#pragma once

namespace dsp {

struct double_double {
  double hi;
  double lo;

  // a + b without error; ordered_sum needs |a| >= |b|.
  static double_double ordered_sum(double a, double b) {
    const double rounded = a + b;
    return {rounded, b - (rounded - a)};
  }

  static double_double sum(double a, double b) {
    const double rounded = a + b;
    const double b_part = rounded - a;
    return {rounded, (a - (rounded - b_part)) + (b - b_part)};
  }

  // a b without error, unless it overflows.
  static double_double product(double a, double b) {
    constexpr double split = 134217729.0;  // 2^27 + 1 splits a double into halves whose products are exact
    const double a_high = split * a - (split * a - a);
    const double b_high = split * b - (split * b - b);
    const double a_low = a - a_high;
    const double b_low = b - b_high;
    const double rounded = a * b;
    return {rounded, ((a_high * b_high - rounded) + a_high * b_low + a_low * b_high) + a_low * b_low};
  }
};

inline double_double operator-(double_double a) { return {-a.hi, -a.lo}; }

inline double_double operator+(double_double a, double_double b) {
  const double_double sum = double_double::sum(a.hi, b.hi);
  return double_double::ordered_sum(sum.hi, sum.lo + (a.lo + b.lo));
}

inline double_double operator-(double_double a, double_double b) { return a + -b; }

inline double_double operator*(double_double a, double_double b) {
  const double_double product = double_double::product(a.hi, b.hi);
  return double_double::ordered_sum(product.hi, product.lo + (a.hi * b.lo + a.lo * b.hi));
}

inline double_double operator/(double_double a, double b) {
  const double quotient = a.hi / b;
  const double_double back = double_double::product(quotient, b);
  return double_double::ordered_sum(quotient, (((a.hi - back.hi) - back.lo) + a.lo) / b);
}

constexpr double_double exact_two_pi = {6.283185307179586, 2.4492935982947064e-16};

}  // namespace dsp
