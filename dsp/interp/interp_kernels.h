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
  std::int32_t n;
};

// Abscissae, and room for the values, which does not overlap anything else.
struct queries {
  const double *t;
  double *out;
  std::int32_t n;
};

struct interp_kernel_set {
  // Two nodes at least, three for parabolas. -1: an interval met has no width.
  int32_t (*interpolate)(const nodes &f, const queries &q, std::int32_t scheme, bool clamp);
  // Real samples in turn, from the back: `out` may be `a` or `b`.
  void (*interleave)(const double *a, const double *b, double *out, std::int64_t n);
};

DSP_DECLARE_KERNELS(interp)

}  // namespace dsp::interp
