#include "dsp/fft/dct_kernels.h"

namespace dsp::fft {
namespace DSP_ISA {
namespace {

void permute(const double *__restrict x, int32_t n, double *__restrict permuted) {
  double *const last = permuted + n - 1;
  for (int32_t i = 0; i < n / 2; ++i) permuted[i] = x[2 * i];
  for (int32_t i = 0; i < n / 2; ++i) last[-i] = x[2 * i + 1];
  if (n % 2 != 0) permuted[n / 2] = x[n - 1];
}

void unpermute(const double *__restrict permuted, int32_t n, double *__restrict x) {
  const double *const last = permuted + n - 1;
  for (int32_t i = 0; i < n / 2; ++i) {
    x[2 * i] = permuted[i];
    x[2 * i + 1] = last[-i];
  }
  if (n % 2 != 0) x[n - 1] = permuted[n / 2];
}

void rotate(const dsp_complex *__restrict bins, const dsp_complex *__restrict rotations, int32_t n,
            double *__restrict y) {
  const int32_t count = (n - 1) / 2;
  double *const last = y + n - 1;
  for (int32_t k = 0; k < count; ++k) {
    const dsp_complex w = rotations[k];
    const dsp_complex bin = bins[k + 1];
    y[k + 1] = w.re * bin.re + w.im * bin.im;
    last[-k] = w.im * bin.re - w.re * bin.im;
  }
}

void rotate_back(const double *__restrict y, const dsp_complex *__restrict rotations, int32_t n,
                 dsp_complex *__restrict bins) {
  const int32_t count = (n - 1) / 2;
  const double *const last = y + n - 1;
  for (int32_t k = 0; k < count; ++k) {
    const dsp_complex w = rotations[k];
    bins[k + 1].re = w.re * y[k + 1] + w.im * last[-k];
    bins[k + 1].im = w.im * y[k + 1] - w.re * last[-k];
  }
}

}  // namespace

extern const dct_kernel_set dct_set = {permute, unpermute, rotate, rotate_back};

}  // namespace DSP_ISA
}  // namespace dsp::fft
