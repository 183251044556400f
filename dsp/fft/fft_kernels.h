// The transform's kernels, one set for each instruction set, and the plan they follow. docs/fft.md explains both.
#pragma once

#include <cstddef>
#include <cstdint>

#include "dsp/simd/isa.h"

namespace dsp::fft {

// How a transform of 2^bits samples runs: passes of radix 4 and 8 from the whole record down to blocks of 2^tile_bits
// samples, then one pass over tiles of 2^tile_bits times 2^tile_bits samples that does the rest and reverses the bits.
// Between the passes the record holds `lanes` real parts, their `lanes` imaginary parts, and so on.
struct fft_plan {
  int8_t bits;
  int8_t lanes;
  int8_t tile_bits;
  int8_t passes;
  int8_t radix_bits[16];
};

// What a kernel reads beside the samples.
struct fft_tables {
  const double *roots;
  const uint32_t *pairs;  // of tiles
  const uint32_t *fixed;
};

constexpr int most_small_real_bits = 4;

struct fft_kernel_set {
  int lanes;  // of the widest kernel
  int most_small_bits;
  void (*transform)(const fft_plan &plan, const fft_tables &tables, double *x, double scale, bool inverse);
  void (*small)(int bits, double *x, double scale, bool inverse);  // up to 2^most_small_bits
  // From the transform of m pairs of real samples, each taken as a complex one, to the m + 1 bins of the half spectrum,
  // and back. The octant is that of 2m.
  void (*post_process)(double *x, std::ptrdiff_t m, const double *octant);
  void (*pre_process)(double *x, std::ptrdiff_t m, const double *octant);
  // A whole real transform of 4 to 2^most_small_real_bits samples.
  void (*small_real)(int bits, double *x, double scale, bool inverse);
  // post_process and pre_process for any m; cosines and sines of 2 pi k/2m, k = 0 .. m/2.
  void (*post_process_any)(double *x, std::ptrdiff_t m, const double *cosines, const double *sines);
  void (*pre_process_any)(double *x, std::ptrdiff_t m, const double *cosines, const double *sines);
};

DSP_DECLARE_KERNELS(fft)

}  // namespace dsp::fft
