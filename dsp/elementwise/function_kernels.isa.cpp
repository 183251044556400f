#include "dsp/elementwise/function_kernels.h"

#include "dsp/math/saturation.h"
#include "dsp/simd/traversal.h"

namespace dsp::elementwise {
namespace DSP_ISA {
namespace {

// a b + c with one rounding (FMA) where the processor has it: 25 % faster.
inline double fused(double a, double b, double c) {
#if defined(__FMA__) || defined(__ARM_FEATURE_FMA)
  return __builtin_fma(a, b, c);
#else
  return a * b + c;
#endif
}

constexpr double ln2_high = 0x1.62e42feep-1;  // 32 bits: its product with an exponent is exact
constexpr double ln2_low = 0x1.a39ef35793c76p-33;

inline uint64_t bits(double x) { return __builtin_bit_cast(uint64_t, x); }
inline double number(uint64_t b) { return __builtin_bit_cast(double, b); }

// Added to a number below 2^51 in size it leaves the nearest integer in the low bits.
constexpr double rounder = 0x1.8p52;

// 2^k for the k in the low bits of rounder + k.
inline double power_of_two(double rounded) { return number((bits(rounded) + 1023) << 52); }

// x = k ln 2 + r with |r| <= ln(2)/2; e^r is 1 + r + r^2 p(r) to 2e-17, p a Chebyshev fit from scripts/function_fits,
// its first coefficient rounded to 0.5. 1 + r is carried with its rounding error, so that only the last sum rounds: the
// result errs by less than 1 ulp. Terms are summed in pairs, here and below: a single chain of sums would wait for each
// addition to finish.
struct split_power {
  double rounded, fraction;  // rounder + k, e^r
};

inline split_power split(double x) {
  const double rounded = fused(x, 0x1.71547652b82fep+0, rounder);
  const double k = rounded - rounder;
  const double high = fused(k, -ln2_high, x);
  const double low = k * -ln2_low;
  const double r = high + low;
  const double r2 = r * r;
  const double r4 = r2 * r2;
  const double p0 = fused(r, 0x1.5555555555556p-3, 0.5);
  const double p2 = fused(r, 0x1.11111111109b2p-7, 0x1.5555555553d5ep-5);
  const double p4 = fused(r, 0x1.a01a01a7c54aep-13, 0x1.6c16c1788dc33p-10);
  const double p6 = fused(r, 0x1.71de0da9d06acp-19, 0x1.a019b905bafb1p-16);
  const double p8 = fused(r, 0x1.af38b4925be09p-26, 0x1.28918e390a71ep-22);
  const double p = fused(r4, fused(r4, p8, fused(r2, p6, p4)), fused(r2, p2, p0));
  const double sum = 1.0 + high;
  const double lost = (1.0 - sum) + high;
  return {rounded, sum + (lost + fused(r2, p, low))};
}

// For normal results, and NaN.
inline double exponential(double x) {
  const split_power y = split(x);
  return y.fraction * power_of_two(y.rounded);
}

// For x up to 700. A subnormal result rounds twice.
inline double vanishing_exponential(double x) {
  const split_power y = split(x < -800.0 ? -800.0 : x);
  const double k = y.rounded - rounder;
  const double half = 0.5 * k + rounder;
  const double rest = (k - (half - rounder)) + rounder;
  return y.fraction * power_of_two(half) * power_of_two(rest);
}

// x = 2^k (1 + f) with 1 + f in [sqrt(1/2), sqrt(2)), and ln(1 + f) = f - f^2/2 + rest: with s = f/(2 + f) the rest is
// s (f^2/2 + R(s^2)), where R(s^2) = 2 artanh(s)/s - 2 to 1e-17, a Chebyshev fit from scripts/function_fits. x is
// normal.
struct reduced {
  double k, f, half_square, rest;
};

inline reduced reduce(double x) {
  constexpr uint64_t one = 0x3ff0000000000000;
  constexpr uint64_t root_half = 0x3fe6a09e667f3bcd;
  const uint64_t exponent = (bits(x) + (one - root_half)) >> 52;  // 1023 + k
  const double f = number(bits(x) - (exponent << 52) + one) - 1.0;
  const double s = f / (2.0 + f);
  const double z = s * s;
  const double z2 = z * z;
  const double p0 = fused(z, 0x1.99999999952d7p-2, 0x1.5555555555558p-1);
  const double p2 = fused(z, 0x1.c71c62e3f11e6p-3, 0x1.2492492df281ap-2);
  const double p4 = fused(z2, 0x1.2b5900de53b32p-3, fused(z, 0x1.39fe51a7c18f9p-3, 0x1.7462b51cb66b1p-3));
  const double p = fused(z2, fused(z2, p4, p2), p0);
  const double half_square = 0.5 * f * f;
  return {number(exponent | bits(0x1p52)) - (0x1p52 + 1023.0), f, half_square, s * fused(z, p, half_square)};
}

// Infinity and NaN are returned unchanged.
inline double settled(double x, double floor, double value) {
  return x < smallest_normal ? floor : x <= 0x1.fffffffffffffp1023 ? value : x;
}

// The error is below 1 ulp.
inline double natural(double x) {
  const reduced y = reduce(x);
  return fused(y.k, ln2_high, y.f - (y.half_square - fused(y.k, ln2_low, y.rest)));
}

// ln(1 + f) in two parts, the high one short, times log10 e in two parts, so that all large products are exact.
inline double common(double x) {
  constexpr double log10_2_high = 0x1.34413508p-2;
  constexpr double log10_2_low = 0x1.f79fef311f12bp-34;
  constexpr double log10_e_high = 0x1.bcb7b1p-2;
  constexpr double log10_e_low = 0x1.49b9438ca9aaep-28;
  const reduced y = reduce(x);
  const double high = number(bits(y.f - y.half_square) & ~uint64_t{0x7ffffff});
  const double low = ((y.f - high) - y.half_square) + y.rest;
  const double whole = y.k * log10_2_high;
  const double part = high * log10_e_high;
  const double sum = whole + part;
  const double lost = (whole - sum) + part;
  return sum + (lost + fused(y.k, log10_2_low, fused(low + high, log10_e_low, low * log10_e_high)));
}

// Block by block: a block stays in the L1 cache, so testing it first for results that are not normal, which are rare,
// costs little.
void exponentials(double *x, int64_t n, double by, double limit) {
  constexpr int64_t block = 1024;
  const double least = -708.0 / by;
  for (int64_t done = 0; done < n; done += block) {
    double *const y = x + done;
    const int64_t m = n - done < block ? n - done : block;
    int64_t vanishing = 0;
    for (int64_t i = 0; i < m; ++i) vanishing |= y[i] < least ? 1 : 0;
    const auto each = [=](auto power) {
      walk<double>(
          y, m, [=](double t) { return t > limit ? overflow_bound : power(t * by); }, static_cast<const double *>(y));
    };
    if (vanishing != 0)
      each([](double t) { return vanishing_exponential(t); });
    else
      each([](double t) { return exponential(t); });
  }
}

void logarithms(double *x, int64_t n) {
  walk<double>(
      x, n, [](double t) { return settled(t, ln_smallest_normal, natural(t)); }, static_cast<const double *>(x));
}

void decibels(double *x, int64_t n, double factor) {
  const double floor = factor * log10_smallest_normal;
  walk<double>(
      x, n,
      [=](double t) { return t < smallest_normal ? floor : factor * (t <= 0x1.fffffffffffffp1023 ? common(t) : t); },
      static_cast<const double *>(x));
}

}  // namespace

extern const function_kernel_set function_set = {exponentials, logarithms, decibels};

}  // namespace DSP_ISA
}  // namespace dsp::elementwise
