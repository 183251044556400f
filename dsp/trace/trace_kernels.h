// The loops over whole traces, compiled once per instruction set; the same bits on every processor.
#pragma once

#include <cstdint>

#include "dsp/dsp.h"
#include "dsp/simd/isa.h"

namespace dsp::trace {

struct trace_kernel_set {
  void (*scale)(double factor, double *x, std::int64_t n);
  void (*scale_single)(float factor, float *x, std::int64_t n);
  // out[i] = out_lo + k (in[i] - lo), which may lie in place; as integers truncated and saturated, NaN as 0.
  void (*map)(const double *in, std::int64_t n, double lo, double k, double *out, double out_lo);
  void (*map_to_int)(const double *in, std::int64_t n, double lo, double k, std::int32_t *out, double out_lo);
  // The largest of `than` and the values above it; the smallest of `than` and the values below it.
  double (*largest)(const double *x, std::int64_t n, double than);
  double (*smallest)(const double *x, std::int64_t n, double than);
  void (*line)(double *x, std::int32_t n, double first, double step);  // x[i] = first + step i
  void (*magnitude)(const dsp_complex *z, double *out, std::int64_t n);
  void (*standing_wave_ratio)(const dsp_complex *z, double *out, std::int64_t n);
};

DSP_DECLARE_KERNELS(trace)

}  // namespace dsp::trace
