// Transforms of any length.
#include "dsp/core/sizing.h"
#include "dsp/dsp.h"
#include "dsp/fft/chirp.h"
#include "dsp/fft/spacing.h"

using namespace dsp;
using namespace dsp::fft;

int32_t dspi_dft(dsp_vec *v, int32_t inverse) {
  const int32_t n = v->length;
  if (is_power_of_two(n) && n > 1) return dspi_fft(v, inverse != 0);
  if (n > 1 && chirp_dft(v, inverse != 0) != 0) return -1;
  v->dx = transformed_spacing(v->dx, n > 1 ? n : 1);
  return 0;
}

int32_t dspi_rdft(dsp_vec *v) {
  const int32_t n = v->length;
  if (v->is_complex != 0) return -1;
  if (is_power_of_two(n)) return dspi_rfft(v);
  if (dspi_dft(v, 0) != 0) return -1;
  if (n > 0) v->length = n / 2 + 1;
  return 0;
}

int32_t dspi_irdft(dsp_vec *v, uint32_t odd) {
  if (odd == 0 && is_power_of_two(2 * (std::int64_t{v->length} - 1))) return dspi_irfft(v);
  if (dspi_orecon(v, odd != 0) != 0 || dspi_dft(v, 1) != 0) return -1;
  return dspi_real(v);
}
