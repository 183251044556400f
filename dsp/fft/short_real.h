// Real transforms of 4, 8 and 16 samples, straight-line code on single numbers. Even bins are the transform of the N/2
// sums x[j] + x[j + N/2]. With the differences d[j] = x[j] - x[j + N/2] and w = exp(-2 pi i/N), the bins 4k + 1 are the
// complex transform of (d[j] - i d[j + N/4]) w^j, j = 0 .. N/4 - 1. The bins 4k + 3 are conjugates of those: bin
// N - (4k + 1) is the conjugate of bin 4k + 1.
#pragma once

#include "dsp/fft/short_transform.h"

namespace dsp::fft {
namespace {

DSP_INLINE void butterfly(points<1> (&)[1]) {}

// Where bin 4k + 1 of N goes: to itself in the lower half of the spectrum, else conjugated to bin N - (4k + 1).
constexpr bool is_lower(int k, int n) { return 4 * k + 1 < n / 2; }
constexpr int odd_bin(int k, int n) { return is_lower(k, n) ? 4 * k + 1 : n - 4 * k - 1; }
constexpr double odd_sign(int k, int n) { return is_lower(k, n) ? 1.0 : -1.0; }

// a w^j.
template <int N>
DSP_INLINE points<1> turned_by(const points<1> &a, int j) {
  return turned(a, cos_of_32(j * (32 / N)), cos_of_32(j * (32 / N) + 24));
}

template <int N>
DSP_INLINE void real_bins(const double (&x)[N], double *bins, std::ptrdiff_t step) {
  constexpr int quarter = N / 4;
  double sum[N / 2];
  points<1> odd[quarter];
  DSP_UNROLL for (int j = 0; j < N / 2; ++j) sum[j] = x[j] + x[j + N / 2];
  DSP_UNROLL for (int j = 0; j < quarter; ++j) odd[j] =
      turned_by<N>({x[j] - x[j + 2 * quarter], x[j + 3 * quarter] - x[j + quarter]}, j);
  butterfly(odd);
  real_bins(sum, bins, 2 * step);
  DSP_UNROLL for (int k = 0; k < quarter; ++k) {
    double *const to = bins + 2 * step * odd_bin(k, N);
    to[0] = odd[k].re;
    to[1] = odd[k].im * odd_sign(k, N);
  }
}

template <>
DSP_INLINE void real_bins(const double (&x)[2], double *bins, std::ptrdiff_t step) {
  bins[0] = x[0] + x[1];
  bins[1] = 0.0;
  bins[2 * step] = x[0] - x[1];
  bins[2 * step + 1] = 0.0;
}

// The way back, unscaled.
template <int N>
DSP_INLINE void real_samples(const double *bins, std::ptrdiff_t step, double (&x)[N]) {
  constexpr int quarter = N / 4;
  double sum[N / 2];
  points<1> odd[quarter];
  DSP_UNROLL for (int k = 0; k < quarter; ++k) {
    const double *const from = bins + 2 * step * odd_bin(k, N);
    odd[k] = {from[0], from[1] * odd_sign(k, N)};
  }
  butterfly(odd);
  real_samples(bins, 2 * step, sum);
  DSP_UNROLL for (int j = 0; j < quarter; ++j) {
    const points<1> y = turned_by<N>(odd[result<true>(j, quarter)], 32 - j) * 2.0;
    x[j] = sum[j] + y.re;
    x[j + 2 * quarter] = sum[j] - y.re;
    x[j + quarter] = sum[j + quarter] - y.im;
    x[j + 3 * quarter] = sum[j + quarter] + y.im;
  }
}

template <>
DSP_INLINE void real_samples(const double *bins, std::ptrdiff_t step, double (&x)[2]) {
  x[0] = bins[0] + bins[2 * step];
  x[1] = bins[0] - bins[2 * step];
}

template <int N>
void short_real(double *x, double scale, bool inverse) {
  double samples[N];
  if (inverse) {
    real_samples(x, 1, samples);
    DSP_UNROLL for (int i = 0; i < N; ++i) x[i] = samples[i] * scale;
  } else {
    DSP_UNROLL for (int i = 0; i < N; ++i) samples[i] = x[i] * scale;
    real_bins(samples, x, 1);
  }
}

}  // namespace
}  // namespace dsp::fft
