// The product and the sum of two samples of either representation, without recovery of infinities. Local to the file
// that includes it: kernel files do.
#pragma once

#include "dsp/dsp.h"

namespace dsp::elementwise {

// For a difference of products beside a sum of products: GCC 12 fuses the two into one instruction of AVX2 or AVX-512,
// whatever it is told about contraction; two sums it leaves alone. The result is the same.
static inline double minus(double x) { return -x; }

static inline double multiply(double a, double b) { return a * b; }
static inline dsp_complex multiply(dsp_complex a, double b) { return {a.re * b, a.im * b}; }
static inline dsp_complex multiply(double a, dsp_complex b) { return {a * b.re, a * b.im}; }
static inline dsp_complex multiply(dsp_complex a, dsp_complex b) {
  return {a.re * b.re + minus(a.im) * b.im, a.re * b.im + a.im * b.re};
}

static inline void accumulate(double *total, double x) { *total += x; }
static inline void accumulate(dsp_complex *total, dsp_complex z) {
  total->re += z.re;
  total->im += z.im;
}

}  // namespace dsp::elementwise
