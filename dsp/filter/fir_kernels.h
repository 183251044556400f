// The inner loops of FIR filtering, one set per instruction set. Each output has an accumulator of its own and adds its
// taps in one order, so that results do not depend on the place in a block or on how a record is cut into blocks.
// Without fused products that order is from the oldest sample to the newest on every processor; with them it depends on
// the width of the vectors.
#pragma once

#include <cstdint>

#include "dsp/simd/isa.h"

namespace dsp::filter {

// A run of outputs: y[j], j < count, made from x[j], x[j + step], x[j + 2 step], ... All counts are of doubles: a
// complex sample has two, and its step is 2.
struct fir_run {
  double *y;
  const double *x;
  int64_t count;
  int32_t step;
};

// A symmetric or antisymmetric filter, given by its first half.
struct folded_filter {
  const double *half;
  int32_t pairs;    // of taps that share a coefficient
  bool has_centre;  // one more tap between them
  bool anti;        // the second half is negated

  [[gnu::always_inline]] int32_t length() const { return 2 * pairs + static_cast<int32_t>(has_centre); }
};
constexpr int32_t folded_limit = 60;  // taps

constexpr int64_t halved_limit = 128;  // outputs of one call of halved_taps

struct fir_kernel_set {
  // How many products take as long as a transform takes for each sample and each doubling of its length.
  double products_per_doubling;
  // y[j] = (continued ? y[j] : 0) + sum of h[-i stride] x[j + i step], i = 0 .. taps - 1.
  void (*real_taps)(const fir_run &run, const double *h, int32_t stride, int64_t taps, bool continued);
  // The same for complex samples and complex taps: h points to the real part of the last tap.
  void (*complex_taps)(const fir_run &run, const double *h, int64_t taps, bool continued);
  // The same for a filter given by its first half, of at most `folded_limit` taps.
  void (*folded_taps)(const fir_run &run, const folded_filter &filter);
  // folded_taps for every second output only: output m is made from sample 2 m of run.x on. The filter is symmetric.
  void (*halved_taps)(const fir_run &run, const folded_filter &filter);
  // y[k] = (continued ? y[k] : 0) + x[k] h[k] for complex numbers. Returns the sum of |x[k]|^2.
  double (*multiply)(double *y, const double *x, const double *h, int64_t count, bool continued);
  // Whether all of x[0 .. count - 1] are at most `bound` in magnitude; a NaN is not.
  bool (*within)(const double *x, int64_t count, double bound);
};

DSP_DECLARE_KERNELS(fir)

}  // namespace dsp::filter
