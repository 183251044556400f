#include "dsp/core/sizing.h"
#include "dsp/dsp.h"
#include "dsp/fft/spacing.h"
#include "dsp/fft/transform.h"

using namespace dsp;
using namespace dsp::fft;

namespace {

// A spectrum of real samples costs half, and is exactly symmetric.
[[gnu::noinline]] int32_t fft_of_real(dsp_vec *v, uint32_t inverse) {
  if (v->length > 2 && inverse == 0) return dspi_rfft(v) == 0 ? dspi_orecon(v, 0) : -1;
  return dspi_rtoc(v) == 0 ? dspi_fft(v, inverse) : -1;
}

}  // namespace

int32_t dspi_fft(dsp_vec *v, uint32_t inverse) {
  const int32_t n = v->length;
  if (!is_power_of_two(n)) return -1;
  if (n > 1) {
    if (v->is_complex == 0) return fft_of_real(v, inverse);
    const int bits = log2_of(n);
    const double scale = inverse != 0 ? 1.0 : reciprocal_power_of_two(bits);
    if (transform(v->data, bits, inverse != 0, scale) != 0) return -1;
  }
  v->dx = transformed_spacing(v->dx, n);
  return 0;
}

int32_t cf_dspi_fft(double *data, int32_t length, uint32_t is_complex, uint32_t inverse) {
  if (is_complex == 0 && length >= 2) return -1;  // the result would not fit
  dsp_vec v;
  dsp_init(&v);
  v.data = data;
  v.length = length;
  v.is_complex = is_complex;
  return dspi_fft(&v, inverse);
}
