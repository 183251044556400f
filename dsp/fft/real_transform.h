// Transforms of real signals of even length, through the complex one of half the length on pairs of samples.
#pragma once

#include <cstdint>

namespace dsp::fft {

// n even, at least 4: n real samples to n/2 + 1 bins, with the factor 1/n, or back without; in n + 2 doubles. -1: no
// memory for a table.
int32_t real_transform(double *x, int32_t n, bool inverse);

void free_real_roots();

}  // namespace dsp::fft
