// The recursive lowpass on one channel, once for each instruction set.
#pragma once

#include <cstdint>

#include "dsp/simd/isa.h"

namespace dsp::filter {

constexpr int32_t hwfilt_sections = 4;
constexpr int32_t hwfilt_section_values = 3;

struct hwfilt_kernel_set {
  // Filters `count` samples, `width` doubles apart as the values of the state are; y may be x. The state holds the last
  // three inner values of each section, newest first.
  void (*run_channel)(const double *x, double *y, int64_t count, double *state, int32_t width);
};

DSP_DECLARE_KERNELS(hwfilt)

}  // namespace dsp::filter
