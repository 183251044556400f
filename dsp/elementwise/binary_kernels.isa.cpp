#include "dsp/elementwise/binary_kernels.h"

#include <cstdint>

#include "dsp/elementwise/complex_product.h"
#include "dsp/elementwise/magnitude.h"
#include "dsp/simd/traversal.h"

namespace dsp::elementwise {
namespace DSP_ISA {
namespace {

// a + w b: the sum, and with w = -1 the difference.
struct weighted_sum {
  double w;
  double operator()(double a, double b) const { return a + w * b; }
  dsp_complex operator()(dsp_complex a, double b) const { return {(*this)(a.re, b), a.im}; }
  dsp_complex operator()(double a, dsp_complex b) const { return {(*this)(a, b.re), w * b.im}; }
};

struct product_of {
  template <class A, class B>
  auto operator()(A a, B b) const {
    return multiply(a, b);
  }
};

// b is complex.
struct conjugate_product_of {
  dsp_complex operator()(dsp_complex a, dsp_complex b) const {
    return {a.re * b.re + a.im * b.im, a.im * b.re + minus(a.re) * b.im};
  }
  dsp_complex operator()(double a, dsp_complex b) const { return {a * b.re, -a * b.im}; }
};

// A divisor whose squared magnitude vanishes counts as zero; zero over zero is zero.
struct quotient_of {
  // Tests all parts for zeros of either sign at once, by their bits.
  static uint64_t bits(double x) { return __builtin_bit_cast(uint64_t, x); }
  static bool zero(uint64_t x) { return x << 1 == 0; }
  static dsp_complex chosen(bool divides, double re, double im, bool all_zero) {
    const double instead = all_zero ? 0.0 : overflow_bound;
    return {divides ? re : instead, divides ? im : instead};
  }
  double operator()(double a, double b) const { return b != 0.0 ? a / b : a == 0.0 ? 0.0 : overflow_bound; }
  dsp_complex operator()(dsp_complex a, double b) const {
    return chosen(b != 0.0, a.re / b, a.im / b, zero(bits(a.re) | bits(a.im)));
  }
  dsp_complex operator()(double a, dsp_complex b) const {
    const double q = b.re * b.re + b.im * b.im;
    return chosen(q > 0.0, a * b.re / q, -a * b.im / q, zero(bits(a) | bits(b.re) | bits(b.im)));
  }
  dsp_complex operator()(dsp_complex a, dsp_complex b) const {
    const double q = b.re * b.re + b.im * b.im;
    return chosen(q > 0.0, (a.re * b.re + a.im * b.im) / q, (a.im * b.re + minus(a.re) * b.im) / q,
                  zero(bits(a.re) | bits(a.im) | bits(b.re) | bits(b.im)));
  }
};

// b + w (a - b)
struct blend_of {
  double w;
  double operator()(double a, double b) const { return b + w * (a - b); }
  dsp_complex operator()(dsp_complex a, double b) const { return {(*this)(a.re, b), w * a.im}; }
  dsp_complex operator()(double a, dsp_complex b) const { return {(*this)(a, b.re), (1.0 - w) * b.im}; }
};

inline double re(double x) { return x; }
inline double re(dsp_complex z) { return z.re; }
inline double im(double) { return 0.0; }
inline double im(dsp_complex z) { return z.im; }

// The winner by squared magnitude, whole: the larger, or with sign -1 the smaller.
struct better_of {
  double sign;
  template <class A, class B>
  dsp_complex operator()(A a, B b) const {
    const bool first = sign * magnitude_squared(a) > sign * magnitude_squared(b);
    return {first ? re(a) : re(b), first ? im(a) : im(b)};
  }
};

struct pair_of {
  dsp_complex operator()(double a, double b) const { return {a, b}; }
};

// Chooses the kernel's overload for the operands' representations.
template <class Kernel>
void with_complex_second(double *out, const operands &in, const Kernel &kernel) {
  if (in.a_complex)
    walk<dsp_complex>(out, in.length, kernel, as<dsp_complex>(in.a), as<dsp_complex>(in.b));
  else
    walk<dsp_complex>(out, in.length, kernel, in.a, as<dsp_complex>(in.b));
}

template <class Kernel>
void with_complex(double *out, const operands &in, const Kernel &kernel) {
  if (in.b_complex)
    with_complex_second(out, in, kernel);
  else
    walk<dsp_complex>(out, in.length, kernel, as<dsp_complex>(in.a), in.b);
}

template <class Kernel>
void each_pair(double *out, const operands &in, double) {
  if (in.a_complex || in.b_complex)
    with_complex(out, in, Kernel());
  else
    walk<double>(out, in.length, Kernel(), in.a, in.b);
}

void conjugate_products(double *out, const operands &in, double) {
  with_complex_second(out, in, conjugate_product_of());
}

// A tie, or a NaN, leaves b.
void better(double *out, const operands &in, double sign) {
  if (in.a_complex || in.b_complex)
    with_complex(out, in, better_of{sign});
  else if (sign > 0.0)
    walk<double>(
        out, in.length, [](double a, double b) { return a > b ? a : b; }, in.a, in.b);
  else
    walk<double>(
        out, in.length, [](double a, double b) { return a < b ? a : b; }, in.a, in.b);
}

// For kernels that treat both components alike.
template <class Kernel>
void each_double_pair(double *out, const operands &in, double w) {
  const Kernel kernel{w};
  const int64_t n = in.length;
  if (in.a_complex == in.b_complex)
    walk<double>(out, in.a_complex ? 2 * n : n, kernel, in.a, in.b);
  else if (in.a_complex)
    walk<dsp_complex>(out, n, kernel, as<dsp_complex>(in.a), in.b);
  else
    walk<dsp_complex>(out, n, kernel, in.a, as<dsp_complex>(in.b));
}

void each_real_pair(double *out, const operands &in, double) {
  walk<dsp_complex>(out, in.length, pair_of(), in.a, in.b);
}

}  // namespace

extern const binary_kernel_set binary_set = {
    each_double_pair<weighted_sum>,
    each_pair<product_of>,
    conjugate_products,
    each_pair<quotient_of>,
    each_double_pair<blend_of>,
    better,
    each_real_pair,
};

}  // namespace DSP_ISA
}  // namespace dsp::elementwise
