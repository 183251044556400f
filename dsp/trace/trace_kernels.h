// The loops over whole traces, compiled once per instruction set; the same bits on every processor.
#pragma once

#include <cstdint>

#include "dsp/dsp.h"
#include "dsp/simd/isa.h"

namespace dsp::trace {

// A sum that numbers enter and leave. What rounding loses is summed as well, so that a number that has left leaves
// nothing behind. No number is above 2^990, so that 2^31 of them do not overflow.
struct compensated_sum {
  double sum = 0.0;
  double lost = 0.0;
};

constexpr int32_t slide_block = 64;

struct trace_kernel_set {
  void (*scale)(double factor, double *x, int64_t n);
  void (*scale_single)(float factor, float *x, int64_t n);
  // out[i] = out_lo + k (in[i] - lo), which may lie in place; as integers truncated and saturated, NaN as 0.
  void (*map)(const double *in, int64_t n, double lo, double k, double *out, double out_lo);
  void (*map_to_int)(const double *in, int64_t n, double lo, double k, int32_t *out, double out_lo);
  // The largest value above `than`, or `than`; the smallest value below `than`, or `than`.
  double (*largest)(const double *x, int64_t n, double than);
  double (*smallest)(const double *x, int64_t n, double than);
  void (*line)(double *x, int32_t n, double first, double step);  // x[i] = first + step i
  // For each k in turn, enters[k] enters the sum, leaves[k] leaves it, and out[k] is the sum over `divisor`. False, and
  // nothing is done, when a number is above 2^990, infinite or NaN. n is at most slide_block.
  bool (*slide)(compensated_sum *s, const double *enters, const double *leaves, int32_t n, double divisor, double *out);
  void (*magnitude)(const dsp_complex *z, double *out, int64_t n);
  void (*standing_wave_ratio)(const dsp_complex *z, double *out, int64_t n);
};

DSP_DECLARE_KERNELS(trace)

}  // namespace dsp::trace
