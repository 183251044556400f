#include "dsp/window/product_kernels.h"

namespace dsp::window {
namespace DSP_ISA {
namespace {

void real(double *__restrict v, const double *__restrict w, int32_t n) {
  for (int32_t i = 0; i < n; ++i) v[i] *= w[i];
}

void complex(double *__restrict v, const double *__restrict w, int32_t n) {
  for (int32_t i = 0; i < n; ++i, v += 2) {
    v[0] *= w[i];
    v[1] *= w[i];
  }
}

void swapped_real(double *v, const double *w, int32_t n) {
  const int32_t half = n / 2;
  double *__restrict front = v;
  double *__restrict back = v + half;
  const double *__restrict back_weights = w + half;
  for (int32_t i = 0; i < half; ++i) {
    const double f = front[i] * w[i];
    front[i] = back[i] * back_weights[i];
    back[i] = f;
  }
}

void swapped_complex(double *v, const double *w, int32_t n) {
  const int32_t half = n / 2;
  double *__restrict front = v;
  double *__restrict back = v + n;
  const double *__restrict back_weights = w + half;
  for (int32_t i = 0; i < half; ++i, front += 2, back += 2) {
    const double re = front[0] * w[i];
    const double im = front[1] * w[i];
    front[0] = back[0] * back_weights[i];
    front[1] = back[1] * back_weights[i];
    back[0] = re;
    back[1] = im;
  }
}

}  // namespace

extern const product_kernel_set product_set = {real, complex, swapped_real, swapped_complex};

}  // namespace DSP_ISA
}  // namespace dsp::window
