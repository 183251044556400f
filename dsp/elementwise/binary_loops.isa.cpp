#include <type_traits>

#include "dsp/core/traversal.h"
#include "dsp/elementwise/complex_product.h"
#include "dsp/elementwise/magnitude.h"
#include "dsp/elementwise/sample_loops.h"

namespace dsp {
namespace DSP_ISA {
namespace {

struct sum_of {
  double operator()(double a, double b) const { return a + b; }
  dsp_complex operator()(dsp_complex a, dsp_complex b) const { return {a.re + b.re, a.im + b.im}; }
  dsp_complex operator()(dsp_complex a, double b) const { return {a.re + b, a.im}; }
  dsp_complex operator()(double a, dsp_complex b) const { return {a + b.re, b.im}; }
};

struct difference_of {
  double operator()(double a, double b) const { return a - b; }
  dsp_complex operator()(dsp_complex a, dsp_complex b) const { return {a.re - b.re, a.im - b.im}; }
  dsp_complex operator()(dsp_complex a, double b) const { return {a.re - b, a.im}; }
  dsp_complex operator()(double a, dsp_complex b) const { return {a - b.re, -b.im}; }
};

struct product_of {
  template <class A, class B>
  auto operator()(A a, B b) const {
    return multiply(a, b);
  }
};

struct conjugate_product_of {
  template <class A>
  auto operator()(A a, double b) const {
    return multiply(a, b);
  }
  dsp_complex operator()(dsp_complex a, dsp_complex b) const {
    return {a.re * b.re + a.im * b.im, a.im * b.re - a.re * b.im};
  }
  dsp_complex operator()(double a, dsp_complex b) const { return {a * b.re, -a * b.im}; }
};

// A divisor whose squared magnitude vanishes counts as zero; zero over zero is zero.
struct quotient_of {
  static dsp_complex chosen(bool divides, double re, double im, bool all_zero) {
    const double instead = all_zero ? 0.0 : overflow_bound;
    return {divides ? re : instead, divides ? im : instead};
  }
  double operator()(double a, double b) const { return b != 0.0 ? a / b : a == 0.0 ? 0.0 : overflow_bound; }
  dsp_complex operator()(dsp_complex a, double b) const {
    return chosen(b != 0.0, a.re / b, a.im / b, (a.re == 0.0) & (a.im == 0.0));
  }
  dsp_complex operator()(double a, dsp_complex b) const {
    const double q = b.re * b.re + b.im * b.im;
    return chosen(q > 0.0, a * b.re / q, -a * b.im / q, (a == 0.0) & (b.re == 0.0) & (b.im == 0.0));
  }
  dsp_complex operator()(dsp_complex a, dsp_complex b) const {
    const double q = b.re * b.re + b.im * b.im;
    const bool all_zero = (a.re == 0.0) & (a.im == 0.0) & (b.re == 0.0) & (b.im == 0.0);
    return chosen(q > 0.0, (a.re * b.re + a.im * b.im) / q, (a.im * b.re - a.re * b.im) / q, all_zero);
  }
};

// b + w (a - b)
struct blend_of {
  double w;
  double operator()(double a, double b) const { return b + w * (a - b); }
  dsp_complex operator()(dsp_complex a, dsp_complex b) const { return {(*this)(a.re, b.re), (*this)(a.im, b.im)}; }
  dsp_complex operator()(dsp_complex a, double b) const { return {(*this)(a.re, b), w * a.im}; }
  dsp_complex operator()(double a, dsp_complex b) const { return {(*this)(a, b.re), (1.0 - w) * b.im}; }
};

inline double re(double x) { return x; }
inline double re(dsp_complex z) { return z.re; }
inline double im(double) { return 0.0; }
inline double im(dsp_complex z) { return z.im; }

// The winner whole; a tie, or a NaN, leaves b. Complex samples, and real ones beside them, compete by squared
// magnitude.
template <class Wins>
struct better_of {
  double operator()(double a, double b) const { return Wins()(a, b) ? a : b; }
  template <class A, class B>
  dsp_complex operator()(A a, B b) const {
    const bool first = Wins()(magnitude_squared(a), magnitude_squared(b));
    return {first ? re(a) : re(b), first ? im(a) : im(b)};
  }
};

struct greater {
  bool operator()(double a, double b) const { return a > b; }
};
struct less {
  bool operator()(double a, double b) const { return a < b; }
};

struct pair_of {
  dsp_complex operator()(double a, double b) const { return {a, b}; }
};

template <class Kernel>
Kernel made(double w) {
  if constexpr (std::is_empty_v<Kernel>)
    return Kernel{};
  else
    return Kernel{w};
}

// Chooses the kernel's overload for the operands' representations.
template <class Kernel>
void each_pair(double *out, const operands &in, double w) {
  const auto kernel = made<Kernel>(w);
  const auto *za = as<dsp_complex>(in.a);
  const auto *zb = as<dsp_complex>(in.b);
  if (in.a_complex && in.b_complex)
    walk<dsp_complex>(out, in.length, kernel, za, zb);
  else if (in.a_complex)
    walk<dsp_complex>(out, in.length, kernel, za, in.b);
  else if (in.b_complex)
    walk<dsp_complex>(out, in.length, kernel, in.a, zb);
  else
    walk<double>(out, in.length, kernel, in.a, in.b);
}

void each_real_pair(double *out, const operands &in, double) {
  walk<dsp_complex>(out, in.length, pair_of(), in.a, in.b);
}

}  // namespace

extern const binary_loops binary_table = {
    each_pair<sum_of>,      each_pair<difference_of>, each_pair<product_of>,         each_pair<conjugate_product_of>,
    each_pair<quotient_of>, each_pair<blend_of>,      each_pair<better_of<greater>>, each_pair<better_of<less>>,
    each_real_pair,
};

}  // namespace DSP_ISA
}  // namespace dsp
