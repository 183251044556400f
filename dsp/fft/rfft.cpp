// Transforms of real signals, through the transform of half the size on pairs of samples.
#include "dsp/core/sizing.h"
#include "dsp/dsp.h"
#include "dsp/fft/fft_kernels.h"
#include "dsp/fft/spacing.h"
#include "dsp/fft/transform.h"

using namespace dsp;
using namespace dsp::fft;

namespace {

// 2^bits real samples, at least 4, in a buffer of two doubles more.
int32_t real_transform(double *x, int bits, bool inverse) {
  const fft_kernel_set &kernels = fft_kernels();
  const std::ptrdiff_t m = std::ptrdiff_t{1} << (bits - 1);
  const double scale = inverse ? 1.0 : reciprocal_power_of_two(bits + 1);
  const double *octant = octant_setup(bits);
  if (octant == nullptr) return -1;
  if (bits <= 4) return kernels.small_real(bits, x, scale, inverse, octant), 0;
  if (inverse) kernels.join(x, m, octant);
  if (transform(x, bits - 1, inverse, scale) != 0) return -1;
  if (!inverse) kernels.split(x, m, octant);
  return 0;
}

}  // namespace

int32_t dspi_rfft(dsp_vec *v) {
  const int32_t n = v->length;
  if (v->is_complex != 0 || !is_power_of_two(n)) return -1;
  if (n > 1) {
    v->is_complex = 1;
    if (dsp_realloc(v, n, 0) != 0) return -1;
    if (n == 2) {
      const double first = v->data[0];
      const double second = v->data[1];
      v->data[0] = (first + second) * 0.5;
      v->data[1] = 0.0;
      v->data[2] = (first - second) * 0.5;
      v->data[3] = 0.0;
    } else if (real_transform(v->data, log2_of(n), false) != 0) {
      return -1;
    }
    v->length = n / 2 + 1;
  }
  v->dx = transformed_spacing(v->dx, n);
  return 0;
}

int32_t dspi_irfft(dsp_vec *v) {
  const std::int64_t n = v->length > 1 ? 2 * (std::int64_t{v->length} - 1) : v->length;
  if (n <= 2 || !is_power_of_two(n) || !countable(2 * n)) {
    if (dspi_orecon(v, 0) != 0 || dspi_fft(v, 1) != 0) return -1;
    return dspi_real(v);
  }
  if (dspi_rtoc(v) != 0) return -1;
  const auto length = static_cast<int32_t>(n);
  if (real_transform(v->data, log2_of(n), true) != 0) return -1;
  v->length = length;
  v->is_complex = 0;
  v->dx = transformed_spacing(v->dx, length);
  return 0;
}
