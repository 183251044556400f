// Transforms of lengths whose prime factors are small.
#pragma once

#include <cstdint>

namespace dsp::fft {

// How the record is laid out as a matrix, and what that costs, in cycles or so.
struct mixed_shape {
  std::int32_t lanes;  // as in mixed_plan
  bool transposed;
  std::int32_t n1;
  double cost;  // infinite: not with these passes
};

// n >= 3 that is no power of two, on kernels of so many lanes.
mixed_shape shape_of(std::int32_t n, std::int32_t lanes);

// The radices of a part, from the smallest to the largest; their number.
std::int32_t choose_radices(std::int32_t n, std::int8_t *radix);

// Whether a length is one butterfly.
inline bool is_direct(std::int32_t n) { return n <= 13 && n != 4 && n != 8; }

// Whether what a length takes is at hand.
bool has_mixed_plan(std::int32_t n);

// x: n complex samples, replaced by their transform times `scale`. -1: no memory, x untouched.
std::int32_t mixed_transform(double *x, std::int32_t n, bool inverse, double scale);

void free_mixed_plans();

}  // namespace dsp::fft
