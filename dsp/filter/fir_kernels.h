// The inner loops of FIR filtering, one set per instruction set. Each output has an accumulator of its own and adds its
// taps in one order, from the oldest sample to the newest, so that results do not depend on the instruction set, on the
// place in a block or on how a record is cut into blocks.
#pragma once

#include <cstdint>

#include "dsp/simd/isa.h"

namespace dsp::filter {

// A run of outputs: y[j], j < count, made from x[j], x[j + step], x[j + 2 step], ... Counted in doubles: complex
// samples are two, and step is 2.
struct fir_run {
  double *y;
  const double *x;
  std::int64_t count;
  std::int32_t step;
};

// A filter that is its own mirror image, by its first half.
struct folded_filter {
  const double *half;
  std::int32_t pairs;  // of taps that share a coefficient
  bool has_centre;     // one more tap between them
  bool anti;           // the second half is negated

  [[gnu::always_inline]] std::int32_t length() const { return 2 * pairs + (has_centre ? 1 : 0); }
};

struct fir_kernel_set {
  // y[j] = (continued ? y[j] : 0) + sum of h[-i stride] x[j + i step], i = 0 .. taps - 1.
  void (*real_taps)(const fir_run &run, const double *h, std::int32_t stride, std::int64_t taps, bool continued);
  // The same for complex samples and complex taps: h points at the last of the taps' real parts.
  void (*complex_taps)(const fir_run &run, const double *h, std::int64_t taps, bool continued);
  // Mirrored samples are added, or subtracted, before the product.
  void (*folded_taps)(const fir_run &run, const folded_filter &filter);
  // folded_taps with every second output left out. `run.x` holds the even samples, `odd` the odd ones; no `anti`.
  void (*halved_taps)(const fir_run &run, const double *odd, const folded_filter &filter);
  // Whether all of x[0 .. count - 1] are at most `bound` in magnitude; a NaN is not.
  bool (*within)(const double *x, std::int64_t count, double bound);
};

DSP_DECLARE_KERNELS(fir)

}  // namespace dsp::filter
