// The tables of roots that transforms read. They belong to the cache. Null: no memory.
#pragma once

#include <cstdint>

#include "dsp/fft/fft_kernels.h"

namespace dsp::fft {

// The roots in the order in which the passes of the plan read them: for each pass, for each group of `lanes` positions
// j in a block of n samples, the roots j, 2j, .., (radix - 1)j of n, each as one run of `lanes` values a component.
const double *twiddle_table(const fft_plan &plan);

// cos(2 pi k/n) for k = 0 .. n/8, then the sines; n is a power of two from 8 on.
const double *octant_table(int64_t n);

}  // namespace dsp::fft
