// Product and sum of two samples of either representation. A product that comes out as NaN is not corrected to an
// infinity. The functions are static, so that each kernel file gets code of its own.
#pragma once

#include "dsp/dsp.h"

namespace dsp::elementwise {

// Negation, for a difference of products written as a sum. GCC 12 fuses a difference beside a sum into one AVX
// instruction in spite of -ffp-contract=off; it leaves two sums alone. The result is the same.
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
