// The loops over queries and samples, compiled once per instruction set; the same bits on every processor.
#pragma once

#include <cstdint>

#include "dsp/dsp.h"
#include "dsp/simd/isa.h"

namespace dsp::interp {

// A tabulated function of n nodes; d2 for splines only.
struct nodes {
  const double *x;
  const double *y;
  const double *d2;
  int32_t n;
};

// Abscissae, and the output, which overlaps no input.
struct queries {
  const double *t;
  double *out;
  int32_t n;
};

struct interp_kernel_set {
  // Needs two nodes, three for parabolas. -1: a query met an interval of zero width.
  int32_t (*interpolate)(const nodes &f, const queries &q, int32_t scheme, bool clamp);
  // Interleaves real samples, written from the back: `out` may be `a` or `b`.
  void (*interleave)(const double *a, const double *b, double *out, int64_t n);
};

DSP_DECLARE_KERNELS(interp)

}  // namespace dsp::interp
