// Relative L2 errors of ours and FFTW's against a transform in long double, printed side by side.
#pragma once

#include <cmath>
#include <complex>
#include <cstdio>
#include <utility>
#include <vector>

#include "dsp/dsp.h"
#ifdef HAVE_FFTW
#include <fftw3.h>
#endif

namespace fft_accuracy {

using exact = std::vector<std::complex<long double>>;

// Radix 2 with every root from its own angle, unscaled.
inline exact transform_of(const double *pairs, std::size_t n) {
  exact x(n);
  exact root(n / 2);
  std::size_t j = 0;
  for (std::size_t i = 0; i < n; ++i) {
    x[j] = {pairs[2 * i], pairs[2 * i + 1]};
    std::size_t bit = n / 2;
    for (; (j & bit) != 0; bit /= 2) j ^= bit;
    j |= bit;
  }
  const long double step = -2 * std::acos(-1.0L) / static_cast<long double>(n);
  for (std::size_t k = 0; k < n / 2; ++k) root[k] = std::polar(1.0L, step * static_cast<long double>(k));
  for (std::size_t half = 1; half < n; half *= 2)
    for (std::size_t i = 0; i < n; i += 2 * half)
      for (std::size_t k = 0; k < half; ++k) {
        const auto turned = x[i + k + half] * root[k * (n / 2 / half)];
        x[i + k + half] = x[i + k] - turned;
        x[i + k] += turned;
      }
  return x;
}

inline double error(const double *pairs, std::size_t bins, long double scale, const exact &expected) {
  long double wrong = 0;
  long double all = 0;
  for (std::size_t k = 0; k < bins; ++k) {
    wrong += std::norm(scale * std::complex<long double>(pairs[2 * k], pairs[2 * k + 1]) - expected[k]);
    all += std::norm(expected[k]);
  }
  return static_cast<double>(std::sqrt(wrong / all));
}

// x: 2n doubles that a complex transform takes as pairs; a real one takes the first n of them.
inline void print_row(std::size_t n, const std::vector<double> &x) {
  std::vector<double> real_pairs(2 * n);
  for (std::size_t i = 0; i < n; ++i) real_pairs[2 * i] = x[i];
  const exact expected = transform_of(x.data(), n);
  const exact expected_real = transform_of(real_pairs.data(), n);
  const auto scale = static_cast<long double>(n);
  const auto length = static_cast<int32_t>(n);

  std::vector<double> y = x;
  y.resize(2 * n + 2);
  dsp_vec v = {1.0, y.data(), 2 * length, length, 1, 0};
  if (dspi_fft(&v, 0) != 0) return;
  std::printf("%8zu  %.2e", n, error(y.data(), n, scale, expected));
  y.assign(x.begin(), x.end());
  y.resize(2 * n + 2);
  v = {1.0, y.data(), 2 * length, length, 0, 0};
  if (dspi_rfft(&v) != 0) return;
  const double ours_real = error(y.data(), n / 2 + 1, scale, expected_real);
#ifdef HAVE_FFTW
  auto *z = reinterpret_cast<fftw_complex *>(y.data());
  fftw_plan plan = fftw_plan_dft_1d(length, z, z, FFTW_FORWARD, FFTW_MEASURE);
  y.assign(x.begin(), x.end());
  fftw_execute(plan);
  fftw_destroy_plan(plan);
  std::printf("  %.2e", error(y.data(), n, 1, expected));
  y.resize(2 * n + 2);
  plan = fftw_plan_dft_r2c_1d(length, y.data(), z, FFTW_MEASURE);
  y.assign(x.begin(), x.end());
  fftw_execute(plan);
  fftw_destroy_plan(plan);
  std::printf("      %.2e  %.2e\n", ours_real, error(y.data(), n / 2 + 1, 1, expected_real));
#else
  std::printf("      %.2e\n", ours_real);
#endif
}

}  // namespace fft_accuracy
