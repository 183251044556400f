#include "dsp/fft/chirp_kernels.h"

#include <cstddef>

#include "dsp/fft/times_root.h"

namespace dsp::fft {
namespace DSP_ISA {
namespace {

template <int W, bool Before, bool After>
DSP_INLINE void multiply_at(const double *x, const double *w, double *to) {
  points<W> a = load_pairs<W>(x);
  const points<W> b = load_pairs<W>(w);
  if constexpr (Before) a = exchanged(a);
  a = {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
  if constexpr (After) a = exchanged(a);
  store_pairs<W>(to, a);
}

template <bool Before, bool After>
void multiply_all(const double *x, const double *w, int32_t n, double *to) {
  const std::ptrdiff_t end = 2 * static_cast<std::ptrdiff_t>(n);
  std::ptrdiff_t i = 0;
  for (; i + 2 * lane_count <= end; i += 2 * lane_count) multiply_at<lane_count, Before, After>(x + i, w + i, to + i);
  for (; i < end; i += 2) multiply_at<1, Before, After>(x + i, w + i, to + i);
}

void multiply(const double *x, const double *w, int32_t n, bool exchange, double *to) {
  if (exchange)
    multiply_all<true, false>(x, w, n, to);
  else
    multiply_all<false, false>(x, w, n, to);
}

void multiply_back(const double *x, const double *w, int32_t n, bool exchange, double *to) {
  if (exchange)
    multiply_all<false, true>(x, w, n, to);
  else
    multiply_all<false, false>(x, w, n, to);
}

}  // namespace

extern const chirp_kernel_set chirp_set = {multiply, multiply_back};

}  // namespace DSP_ISA
}  // namespace dsp::fft
