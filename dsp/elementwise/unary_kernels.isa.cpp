#include "dsp/elementwise/unary_kernels.h"

#include <type_traits>

#include "dsp/elementwise/complex_product.h"
#include "dsp/elementwise/magnitude.h"
#include "dsp/simd/traversal.h"

namespace dsp::elementwise {
namespace DSP_ISA {
namespace {

struct scaled {
  dsp_complex k;
  double operator()(double x) const { return k.re * x; }
};

struct offset_by {
  dsp_complex c;
  double operator()(double x) const { return x + c.re; }
  dsp_complex operator()(dsp_complex z) const { return {z.re + c.re, z.im}; }
};

struct conjugated {
  dsp_complex operator()(dsp_complex z) const { return {z.re, -z.im}; }
};

struct reciprocal_of {
  double operator()(double x) const { return x == 0.0 ? overflow_bound : 1.0 / x; }
  dsp_complex operator()(dsp_complex z) const {
    const double q = z.re * z.re + z.im * z.im;
    const double inverse = q <= 0.0 ? overflow_bound : 1.0 / q;
    const double by = overflows(z.re) || overflows(z.im) ? 1e-100 : inverse;
    return {z.re * by, -z.im * by};
  }
};

struct squared {
  double operator()(double x) const { return saturated_square(x, overflow_bound); }
  dsp_complex operator()(dsp_complex z) const {
    return {saturated_square(z.re) - saturated_square(z.im), saturate(z.im) * (2.0 * saturate(z.re))};
  }
};

struct widened {
  dsp_complex operator()(double x) const { return {x, 0.0}; }
};

struct times_constant {
  dsp_complex c;
  dsp_complex operator()(double x) const { return multiply(x, c); }
  dsp_complex operator()(dsp_complex z) const { return multiply(c, z); }
};

struct times_i_of {
  dsp_complex operator()(double x) const { return {0.0, x}; }
  dsp_complex operator()(dsp_complex z) const { return {-z.im, z.re}; }
};

struct real_part_of {
  double operator()(dsp_complex z) const { return z.re; }
};

struct imaginary_part_of {
  double operator()(dsp_complex z) const { return z.im; }
};

struct magnitude_of {
  double operator()(double x) const { return magnitude(x); }
  double operator()(dsp_complex z) const { return magnitude(z); }
};

struct magnitude_squared_of {
  double operator()(double x) const { return magnitude_squared(x); }
  double operator()(dsp_complex z) const { return magnitude_squared(z); }
};

// A kernel holds the routine's constant if it has one.
template <class Kernel>
Kernel made(dsp_complex c) {
  if constexpr (std::is_empty_v<Kernel>)
    return Kernel{};
  else
    return Kernel{c};
}

template <class Kernel>
void each(double *out, const double *in, int64_t n, bool is_complex, dsp_complex c) {
  each_sample(out, in, n, is_complex, made<Kernel>(c));
}

// Both components of complex samples alike.
template <class Kernel>
void each_double(double *out, const double *in, int64_t n, bool is_complex, dsp_complex c) {
  walk<double>(out, is_complex ? 2 * n : n, made<Kernel>(c), in);
}

template <class Sample, class Kernel>
void only(double *out, const double *in, int64_t n, bool, dsp_complex) {
  walk<decltype(Kernel()(Sample()))>(out, n, Kernel(), as<Sample>(in));
}

void root(double *out, const double *in, int64_t n) {
  walk<double>(
      out, n, [](double x) { return x < 0.0 ? 0.0 : __builtin_sqrt(x); }, in);
}

bool clamp(double *x, int64_t n, double lo, double hi) {
  int64_t out = 0;
  for (int64_t i = 0; i < n; ++i) {
    out |= x[i] < lo || x[i] > hi ? 1 : 0;
    x[i] = x[i] < lo ? lo : x[i] > hi ? hi : x[i];
  }
  return out != 0;
}

// From the last sample to the first, so that each is read before it is replaced.
template <class Finish>
void difference(double *x, int64_t n, int64_t width, Finish finish) {
  DSP_INDEPENDENT
  for (int64_t i = n - 1; i >= width; --i) x[i] = finish(x[i] - x[i - width]);
  for (int64_t i = 0; i < width && i < n; ++i) x[i] = finish(x[i]);
}

void difference_quotient(double *x, int64_t n, int64_t width, double dx) {
  if (dx == 0.0)
    difference(x, n, width, [](double d) { return d * overflow_bound; });
  else
    difference(x, n, width, [dx](double d) { return d / dx; });
}

template <class Sample>
void derivative(Sample *x, int32_t n) {
  DSP_INDEPENDENT
  for (int32_t i = 1; i < n; ++i) x[i - 1] = multiply(x[i], static_cast<double>(i));
}

void derivative_of(double *x, int32_t n, bool is_complex) {
  with_samples(x, is_complex, [n](auto *sample) { derivative(sample, n); });
}

template <class Sample>
void reverse(Sample *x, int32_t n) {
  const int32_t half = n / 2;
  DSP_INDEPENDENT
  for (int32_t i = 0; i < half; ++i) {
    const Sample front = x[i];
    x[i] = x[n - 1 - i];
    x[n - 1 - i] = front;
  }
}

void reverse_samples(double *x, int32_t n, bool is_complex) {
  with_samples(x, is_complex, [n](auto *sample) { reverse(sample, n); });
}

void exchange(double *x, double *y, int64_t n) {
  DSP_INDEPENDENT
  for (int64_t i = 0; i < n; ++i) {
    const double first = x[i];
    x[i] = y[i];
    y[i] = first;
  }
}

}  // namespace

extern const unary_kernel_set unary_set = {
    each_double<scaled>,
    each<offset_by>,
    each<reciprocal_of>,
    each<squared>,
    each<times_constant>,
    each<times_i_of>,
    each<magnitude_of>,
    each<magnitude_squared_of>,
    only<dsp_complex, conjugated>,
    only<dsp_complex, real_part_of>,
    only<dsp_complex, imaginary_part_of>,
    only<double, widened>,
    root,
    clamp,
    difference_quotient,
    derivative_of,
    reverse_samples,
    exchange,
};

}  // namespace DSP_ISA
}  // namespace dsp::elementwise
