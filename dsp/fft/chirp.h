// The transform of any length as a convolution with a chirp (Bluestein 1970).
#pragma once

#include <cstdint>

namespace dsp::fft {

// n >= 3. x: n complex samples, replaced by their transform times `scale`. -1: no memory, or no length to convolve on,
// x untouched.
int32_t chirp_transform(double *x, int32_t n, bool inverse, double scale);

// Whether the tables of a length are kept already.
bool has_chirp(int32_t n);

// In approximate cycles.
double chirp_cost(int32_t n);

}  // namespace dsp::fft
