// Numbers wider than a double, for references: long double, or, where that is no wider, the sum of two doubles.
#pragma once

#include <cfloat>
#include <cmath>
#include <ostream>
#include <type_traits>

#include "dsp/math/double_double.h"

namespace support {

// The functions of both, to be called by their bare names.
using std::abs;
using std::cos;
using std::exp;
using std::floor;
using std::fmod;
using std::log;
using std::log10;
using std::pow;
using std::sin;
using std::sqrt;

#if LDBL_MANT_DIG > DBL_MANT_DIG

using wide = long double;
const wide wide_pi = 3.14159265358979323846264338327950288L;

#else

class wide {
 public:
  wide() = default;
  template <class T, class = std::enable_if_t<std::is_arithmetic_v<T> > >
  wide(T x) : v_{static_cast<double>(x), 0} {}
  wide(dsp::double_double v) : v_(v) {}
  explicit operator double() const { return v_.hi; }

  friend wide operator-(wide a) { return -a.v_; }
  friend wide operator+(wide a, wide b) { return either(a.v_ + b.v_, a.v_.hi + b.v_.hi); }
  friend wide operator-(wide a, wide b) { return a + -b; }
  friend wide operator*(wide a, wide b) { return either(a.v_ * b.v_, a.v_.hi * b.v_.hi); }
  friend wide operator/(wide a, wide b) {
    const wide quotient = a.v_.hi / b.v_.hi;
    return either((quotient + (a - quotient * b).v_.hi / b.v_.hi).v_, quotient.v_.hi);
  }
  wide &operator+=(wide b) { return *this = *this + b; }
  wide &operator-=(wide b) { return *this = *this - b; }
  wide &operator*=(wide b) { return *this = *this * b; }
  wide &operator/=(wide b) { return *this = *this / b; }

  friend bool operator==(wide a, wide b) { return a.v_.hi == b.v_.hi && a.v_.lo == b.v_.lo; }
  friend bool operator!=(wide a, wide b) { return !(a == b); }
  friend bool operator<(wide a, wide b) { return a.v_.hi < b.v_.hi || (a.v_.hi == b.v_.hi && a.v_.lo < b.v_.lo); }
  friend bool operator>(wide a, wide b) { return b < a; }
  friend bool operator<=(wide a, wide b) { return a < b || a == b; }
  friend bool operator>=(wide a, wide b) { return b <= a; }
  friend std::ostream &operator<<(std::ostream &out, wide a) { return out << a.v_.hi; }

  friend wide abs(wide a) { return a < 0 ? -a : a; }
  friend wide floor(wide a) {
    const double whole = std::floor(a.v_.hi);
    return whole == a.v_.hi ? wide(whole) + std::floor(a.v_.lo) : wide(whole);
  }
  friend wide fmod(wide a, wide b) { return a < 0 ? -fmod(-a, b) : a - floor(a / b) * b; }
  friend wide pow(wide a, int n) { return n == 0 ? wide(1) : a * pow(a, n - 1); }
  friend wide sqrt(wide a) {
    const wide root = std::sqrt(a.v_.hi);
    return root > 0 && root < HUGE_VAL ? root + (a - root * root) / (2 * root) : root;
  }
  friend wide exp(wide a) {
    if (!(std::abs(a.v_.hi) < 800)) return std::exp(a.v_.hi);
    const double halvings = std::nearbyint(a.v_.hi / ln2().v_.hi);
    const wide x = (a - halvings * ln2()) * 0x1p-6;
    wide sum = 0;  // e^x - 1, by its series
    for (int k = 16; k > 0; --k) sum = (1 + sum) * x / k;
    for (int k = 0; k < 6; ++k) sum *= 2 + sum;
    return (1 + sum).scaled(static_cast<int>(halvings));
  }
  friend wide log(wide a) {
    if (!(a.v_.hi > 0 && std::isfinite(a.v_.hi))) return std::log(a.v_.hi);
    const int power = std::ilogb(a.v_.hi);
    const wide x = a.scaled(-power), first = std::log(x.v_.hi);
    return power * ln2() + (first + (x * exp(-first) - 1));
  }
  friend wide log10(wide a) { return log(a) / log(wide(10)); }
  friend wide cos(wide a) { return sine(a, 1); }
  friend wide sin(wide a) { return sine(a, 0); }

 private:
  static wide ln2() { return dsp::double_double{0.6931471805599453, 2.3190468138462996e-17}; }

  // The plain result beyond the range of the exact one.
  static wide either(dsp::double_double exact, double plain) { return std::isfinite(exact.hi) ? wide(exact) : plain; }

  wide scaled(int power) const { return dsp::double_double{std::ldexp(v_.hi, power), std::ldexp(v_.lo, power)}; }

  // The sine of a and so many quarters of a turn: by the series within an eighth of a turn.
  static wide sine(wide a, int quarters) {
    const wide quarter = wide(dsp::exact_two_pi) / 4;
    const double whole = std::nearbyint((a / quarter).v_.hi);
    const wide x = a - whole * quarter;
    quarters = (quarters + static_cast<int>(std::fmod(whole, 4)) + 4) % 4;
    wide term = quarters % 2 != 0 ? 1 : x, sum = term;
    for (int k = 3 - quarters % 2; k < 30; k += 2) sum += term *= -x * x / (k * (k - 1));
    return quarters < 2 ? sum : -sum;
  }

  dsp::double_double v_ = {0, 0};
};

const wide wide_pi = wide(dsp::exact_two_pi) / 2;

#endif

}  // namespace support
