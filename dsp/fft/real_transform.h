// Transforms of real signals of even length: a complex transform of half the length, on pairs of samples.
#pragma once

#include <cstdint>

namespace dsp::fft {

// n even, at least 4; x has room for n + 2 doubles. Forward: n real samples to n/2 + 1 bins, scaled by 1/n. Inverse:
// back, unscaled. -1: no memory for a table.
int32_t real_transform(double *x, int32_t n, bool inverse);

void free_real_roots();

}  // namespace dsp::fft
