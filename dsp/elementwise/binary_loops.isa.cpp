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
  dsp_complex operator()(dsp_complex a, double b) const { return {a.re + b, a.im}; }
  dsp_complex operator()(double a, dsp_complex b) const { return {a + b.re, b.im}; }
};

struct difference_of {
  double operator()(double a, double b) const { return a - b; }
  dsp_complex operator()(dsp_complex a, double b) const { return {a.re - b, a.im}; }
  dsp_complex operator()(double a, dsp_complex b) const { return {a - b.re, -b.im}; }
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
    return {a.re * b.re + a.im * b.im, a.im * b.re - a.re * b.im};
  }
  dsp_complex operator()(double a, dsp_complex b) const { return {a * b.re, -a * b.im}; }
};

// A divisor whose squared magnitude vanishes counts as zero; zero over zero is zero.
struct quotient_of {
  static double size(double x) { return __builtin_fabs(x); }
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
    const double sizes = (size(a.re) + size(a.im)) + (size(b.re) + size(b.im));
    return chosen(q > 0.0, (a.re * b.re + a.im * b.im) / q, (a.im * b.re - a.re * b.im) / q, sizes == 0.0);
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

// These choose the kernel's overload for the operands' representations.
template <class Kernel>
void with_complex(double *out, const operands &in, const Kernel &kernel) {
  if (in.a_complex)
    walk<dsp_complex>(out, in.length, kernel, as<dsp_complex>(in.a), as<dsp_complex>(in.b));
  else
    walk<dsp_complex>(out, in.length, kernel, in.a, as<dsp_complex>(in.b));
}

template <class Kernel>
void complex_second(double *out, const operands &in, double w) {
  with_complex(out, in, made<Kernel>(w));
}

template <class Kernel>
void each_pair(double *out, const operands &in, double w) {
  const auto kernel = made<Kernel>(w);
  if (in.b_complex)
    with_complex(out, in, kernel);
  else if (in.a_complex)
    walk<dsp_complex>(out, in.length, kernel, as<dsp_complex>(in.a), in.b);
  else
    walk<double>(out, in.length, kernel, in.a, in.b);
}

// For kernels that treat both parts of complex pairs alike.
template <class Kernel>
void each_double_pair(double *out, const operands &in, double w) {
  const auto kernel = made<Kernel>(w);
  const std::int64_t n = in.length;
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

extern const binary_loops binary_table = {
    each_double_pair<sum_of>,
    each_double_pair<difference_of>,
    each_pair<product_of>,
    complex_second<conjugate_product_of>,
    each_pair<quotient_of>,
    each_double_pair<blend_of>,
    each_pair<better_of<greater>>,
    each_pair<better_of<less>>,
    each_real_pair,
};

}  // namespace DSP_ISA
}  // namespace dsp
