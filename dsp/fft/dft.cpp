// Complex transforms of any length.
#include "dsp/core/sizing.h"
#include "dsp/dsp.h"
#include "dsp/fft/spacing.h"
#include "dsp/fft/transform.h"

using namespace dsp;
using namespace dsp::fft;

namespace {

// A spectrum of real samples of even length costs half, and is exactly symmetric.
[[gnu::noinline]] int32_t dft_of_real(dsp_vec *v, int32_t inverse) {
  if (v->length % 2 == 0 && inverse == 0) return dspi_rdft(v) == 0 ? dspi_orecon(v, 0) : -1;
  return dspi_rtoc(v) == 0 ? dspi_dft(v, inverse) : -1;
}

}  // namespace

int32_t dspi_dft(dsp_vec *v, int32_t inverse) {
  const int32_t n = v->length;
  if (n > 1) {
    if (is_power_of_two(n)) return dspi_fft(v, inverse != 0);
    if (v->is_complex == 0) return dft_of_real(v, inverse);
    const double scale = inverse != 0 ? 1.0 : 1.0 / n;
    if (!countable(2 * int64_t{n}) || transform_of_any_length(v->data, n, inverse != 0, scale) != 0) return -1;
  }
  v->dx = transformed_spacing(v->dx, n > 1 ? n : 1);
  return 0;
}
