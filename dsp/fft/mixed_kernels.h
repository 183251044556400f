// Transforms of lengths with small prime factors: the plan and the kernels that follow it, one set for each instruction
// set. docs/fft.md explains both.
#pragma once

#include <cstddef>
#include <cstdint>

#include "dsp/simd/isa.h"

namespace dsp::fft {

// Primes up to here have a pass.
constexpr int32_t largest_radix = 61;

// Whether a radix has a butterfly of its own. Those above 8 are much code: 9 to 13 pay where there are 32 registers, 15
// for lengths like 60 on four lanes.
constexpr bool has_butterfly(int32_t radix, int32_t lanes) {
  return radix <= 8 || (lanes == 8 && (radix <= 11 || radix == 13)) || (lanes == 4 && radix == 15);
}

// A transform of n vectors whose lanes belong to different transforms: in place, one pass for each radix.
struct mixed_part {
  int32_t n;
  int32_t passes;
  int32_t last_blocks;  // of the last pass
  int8_t radix[32];
  const double *roots;       // of all passes but the last; one root serves all lanes
  const double *circle[32];  // for a radix p without a butterfly of its own: cos and sin of 2 pi i/p, i = 0 .. p - 1
  const uint32_t *order;     // where the first result of each block of the last pass goes
};

// The record is a matrix of n1 rows and n2 columns. The columns are transformed, multiplied by roots of n and stored in
// the work area; then the rows are.
struct mixed_plan {
  int32_t lanes;       // 1: no matrix, all of the record is `rows`
  int32_t transposed;  // n1 is a multiple of `lanes`: the first pass over columns has that radix, and transposes
  int32_t n1;
  mixed_part columns;  // after that pass: n1/lanes vectors
  mixed_part rows;
  const double *first;   // roots of that pass
  const double *middle;  // roots of n, a vector for each vector of the work area, in the order of storing
};

struct mixed_work {
  double *area;    // the matrix between columns and rows
  double *buffer;  // columns or rows, as many as there are lanes
};

struct mixed_kernel_set {
  int32_t lanes;       // of the widest kernel
  int32_t pair_lanes;  // of the kernel on pairs; 0: there is none
  void (*transform)(const mixed_plan &plan, const mixed_work &work, double *x, double scale, bool inverse);
  // One butterfly: 3 to 15 samples, no power of two. Null in the set for AVX-512.
  void (*direct)(int32_t n, double *x, double scale, bool inverse);
};

DSP_DECLARE_KERNELS(mixed)

// Plans of one or two lanes, and single butterflies, run on the kernels for AVX2 also where there is AVX-512.
inline const mixed_kernel_set &mixed_kernels_for([[maybe_unused]] int32_t lanes) {
#ifdef DSP_ISA_X86
  if (active_isa() == isa::avx512 && lanes < 4) return avx2::mixed_set;
#endif
  return mixed_kernels();
}

}  // namespace dsp::fft
