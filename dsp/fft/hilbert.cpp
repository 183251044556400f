// The Hilbert transform and the analytic signal, by turning or cutting the spectrum.
#include "dsp/core/sizing.h"
#include "dsp/dsp.h"

namespace dsp::fft {
namespace {

dsp_complex *bins(dsp_vec *v) { return reinterpret_cast<dsp_complex *>(v->data); }

void times_minus_i(dsp_vec *v, int32_t first, int32_t end) {
  for (int32_t k = first; k < end; ++k) bins(v)[k] = {bins(v)[k].im, -bins(v)[k].re};
}

void times_i(dsp_vec *v, int32_t first, int32_t end) {
  for (int32_t k = first; k < end; ++k) bins(v)[k] = {-bins(v)[k].im, bins(v)[k].re};
}

// A real signal needs half the spectrum only.
int32_t hilbert_real(dsp_vec *v) {
  const int32_t n = v->length;
  if (n == 1) return dspi_zero(v);
  if (dspi_rdft(v) != 0) return -1;
  bins(v)[0] = {0.0, 0.0};
  times_minus_i(v, 1, (n + 1) / 2);
  if (n % 2 == 0) bins(v)[n / 2] = {0.0, 0.0};
  return dspi_irdft(v, n % 2 != 0);
}

int32_t hilbert_complex(dsp_vec *v) {
  const int32_t n = v->length;
  if (dspi_dft(v, 0) != 0) return -1;
  bins(v)[0] = {0.0, 0.0};
  times_minus_i(v, 1, (n + 1) / 2);
  if (n % 2 == 0) bins(v)[n / 2] = {0.0, 0.0};
  times_i(v, n / 2 + 1, n);
  return dspi_dft(v, 1);
}

int32_t analytic(dsp_vec *v) {
  const int32_t n = v->length;
  if ((v->is_complex != 0 ? dspi_dft(v, 0) : dspi_rdft(v)) != 0) return -1;
  for (int32_t k = 1; k <= (n - 1) / 2; ++k) bins(v)[k] = {2.0 * bins(v)[k].re, 2.0 * bins(v)[k].im};
  v->length = n / 2 + 1 < n ? n / 2 + 1 : n;
  if (dspi_zpad(v, n) != 0) return -1;
  return dspi_dft(v, 1);
}

// The spacing is restored exactly, 0 included: in theory the two transforms leave it as it was.
int32_t keep_spacing(dsp_vec *v, int32_t (*run)(dsp_vec *)) {
  if (v->length < 1) return 0;
  const double dx = v->dx;
  if (run(v) != 0) return -1;
  v->dx = dx;
  return 0;
}

}  // namespace
}  // namespace dsp::fft

using namespace dsp;
using namespace dsp::fft;

int32_t dspi_hilbert(dsp_vec *v) { return keep_spacing(v, v->is_complex != 0 ? hilbert_complex : hilbert_real); }

int32_t dspi_analytic(dsp_vec *v) { return keep_spacing(v, analytic); }
