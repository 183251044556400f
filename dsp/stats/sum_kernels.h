// The sums behind most statistics, compiled once per instruction set; the same bits on every processor.
#pragma once

#include <cstdint>

#include "dsp/simd/isa.h"

namespace dsp::stats {

// Sums over n samples of `width` doubles each (2: complex). `total` takes them in the order named; those of complex
// samples are pairs, over the real and over the imaginary parts.
struct sum_kernel_set {
  // x
  void (*values)(const double *x, int64_t n, int width, double *total);
  // x^2, but 1e100 for a sample with a part beyond +-1e100
  void (*squares)(const double *x, int64_t n, int width, double *total);
  // d = x - reference and d^2; +-1e100 and 1e200 for a d beyond +-1e100. The reference is a number, or re and im.
  void (*spread)(const double *x, int64_t n, int width, const double *reference, double *total);
};

DSP_DECLARE_KERNELS(sum)

}  // namespace dsp::stats
