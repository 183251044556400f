// Transforms of lengths whose prime factors are small.
#pragma once

#include <cstdint>

namespace dsp::fft {

// How the record is laid out as a matrix, and what that costs in approximate cycles.
struct mixed_shape {
  int32_t lanes;  // as in mixed_plan
  bool transposed;
  int32_t n1;
  double cost;  // infinite: not with these passes
};

// n >= 3 that is no power of two, on kernels of up to so many lanes.
mixed_shape shape_of(int32_t n, int32_t widest);

// Chooses the radices of a part on kernels of so many lanes, from the smallest to the largest; returns their number.
int32_t choose_radices(int32_t n, int32_t lanes, int8_t *radix);

// Whether a length that is no power of two is one butterfly, which needs no plan.
constexpr bool is_direct(int32_t n) { return n < 16; }

void direct_transform(double *x, int32_t n, bool inverse, double scale);

// The plan of a length with its tables; null: not made yet, or no memory to make it.
struct mixed_entry;
const mixed_entry *find_mixed(int32_t n);
const mixed_entry *make_mixed(int32_t n, const mixed_shape &shape);
const mixed_entry *find_or_make_mixed(int32_t n);

// x: complex samples, replaced by their transform times `scale`. -1: no memory, x untouched.
int32_t mixed_transform(const mixed_entry *entry, double *x, bool inverse, double scale);

void free_mixed_plans();

}  // namespace dsp::fft
