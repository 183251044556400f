// Complex transforms of any length.
#include "dsp/core/sizing.h"
#include "dsp/dsp.h"
#include "dsp/fft/spacing.h"
#include "dsp/fft/transform.h"

using namespace dsp;
using namespace dsp::fft;

int32_t dspi_dft(dsp_vec *v, int32_t inverse) {
  const int32_t n = v->length;
  if (n > 1 && is_power_of_two(n)) return dspi_fft(v, inverse != 0);
  if (n > 2 && n % 2 == 0 && inverse == 0 && v->is_complex == 0)  // half the work, and an exactly symmetric spectrum
    return dspi_rdft(v) == 0 ? dspi_orecon(v, 0) : -1;
  if (n > 1) {
    const double scale = inverse != 0 ? 1.0 : 1.0 / n;
    if (!countable(2 * int64_t{n}) || dspi_rtoc(v) != 0 ||
        transform_of_any_length(v->data, n, inverse != 0, scale) != 0)
      return -1;
  }
  v->dx = transformed_spacing(v->dx, n > 1 ? n : 1);
  return 0;
}
