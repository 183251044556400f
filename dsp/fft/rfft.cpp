// Transforms of real signals between the record and its half spectrum.
#include "dsp/core/sizing.h"
#include "dsp/dsp.h"
#include "dsp/fft/real_transform.h"
#include "dsp/fft/spacing.h"
#include "dsp/fft/transform.h"

using namespace dsp;
using namespace dsp::fft;

namespace {

void transform_two(double *x) {
  const double first = x[0];
  const double second = x[1];
  x[0] = (first + second) * 0.5;
  x[1] = 0.0;
  x[2] = (first - second) * 0.5;
  x[3] = 0.0;
}

// For any even length.
int32_t to_half_spectrum(dsp_vec *v) {
  const int32_t n = v->length;
  v->is_complex = 1;
  if (dsp_realloc(v, n, 0) != 0) return -1;
  if (n == 2)
    transform_two(v->data);
  else if (real_transform(v->data, n, false) != 0)
    return -1;
  v->length = n / 2 + 1;
  v->dx = transformed_spacing(v->dx, n);
  return 0;
}

int32_t from_half_spectrum(dsp_vec *v, int32_t n) {
  if (dspi_rtoc(v) != 0 || real_transform(v->data, n, true) != 0) return -1;
  v->length = n;
  v->is_complex = 0;
  v->dx = transformed_spacing(v->dx, n);
  return 0;
}

// An odd length has no pairs: the samples are transformed as complex ones.
int32_t odd_half_spectrum(dsp_vec *v) {
  const int32_t n = v->length;
  if (dspi_rtoc(v) != 0 || dspi_dft(v, 0) != 0) return -1;
  v->data[1] = 0.0;  // zero but for rounding
  v->length = n / 2 + 1;
  return 0;
}

// The even length of the real signal that has this half spectrum; 0: too short or too long for a transform of pairs.
int32_t even_length(const dsp_vec *v) {
  const int64_t n = 2 * (int64_t{v->length} - 1);
  return n > 2 && countable(2 * n) ? static_cast<int32_t>(n) : 0;
}

}  // namespace

int32_t dspi_rfft(dsp_vec *v) { return is_power_of_two(v->length) ? dspi_rdft(v) : -1; }

int32_t dspi_rdft(dsp_vec *v) {
  if (v->is_complex != 0) return -1;
  if (v->length > 1) return v->length % 2 == 0 ? to_half_spectrum(v) : odd_half_spectrum(v);
  v->dx = transformed_spacing(v->dx, 1);
  return 0;
}

int32_t dspi_irfft(dsp_vec *v) {
  const int32_t n = even_length(v);
  if (n > 0 && is_power_of_two(n)) return from_half_spectrum(v, n);
  if (dspi_orecon(v, 0) != 0 || dspi_fft(v, 1) != 0) return -1;
  return dspi_real(v);
}

int32_t dspi_irdft(dsp_vec *v, uint32_t odd) {
  if (odd == 0 && even_length(v) > 0) return from_half_spectrum(v, even_length(v));
  if (dspi_orecon(v, odd != 0) != 0 || dspi_dft(v, 1) != 0) return -1;
  return dspi_real(v);
}
