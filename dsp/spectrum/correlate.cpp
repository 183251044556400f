// Correlation by transform, for every lag at which the reference lies inside the record.
#include <cstdint>

#include "dsp/core/sharing.h"
#include "dsp/core/sizing.h"
#include "dsp/core/temporary.h"
#include "dsp/dsp.h"

namespace dsp::spectrum {
namespace {

int32_t transform(dsp_vec *v, int32_t length, bool is_complex) {
  if (dspi_zpad(v, length) != 0) return -1;
  return is_complex ? dspi_fft(v, 0) : dspi_rfft(v);
}

int32_t correlate(const dsp_vec *ref, const dsp_vec *in, dsp_vec *out, dsp_vec *work, int32_t m, bool halve) {
  const bool is_complex = ref->is_complex != 0 || in->is_complex != 0;
  const double dx = mean_spacing(in->dx, ref->dx);
  const int32_t lags = samples(*in) - m + 1;
  const int64_t size = power_of_two_from(samples(*in));
  if (size > INT32_MAX) return -1;
  const auto p = static_cast<int32_t>(size);
  if (dsp_copy(work, in) != 0 || dsp_copy_at_most(out, ref, m) != 0) return -1;
  if (transform(out, p, is_complex) != 0 || transform(work, p, is_complex) != 0) return -1;
  if (dspb_conj_mul(work, out, out) != 0) return -1;
  if ((is_complex ? dspi_fft(out, 1) : dspi_irfft(out)) != 0) return -1;  // GCOVR_EXCL_BR_LINE: its tables exist
  out->dx = dx;
  out->length = lags;
  return halve ? dspi_scale(out, 0.5) : 0;
}

}  // namespace
}  // namespace dsp::spectrum

using namespace dsp;
using namespace dsp::spectrum;

int32_t dsph_corr(const dsp_vec *ref, const dsp_vec *in, dsp_vec *out, dsp_vec *work, int32_t m, uint32_t halve) {
  if (ref == nullptr || in == nullptr || out == nullptr) return -1;
  if (m <= 0 || m > samples(*ref) || m > samples(*in)) return -1;
  temporary own_work;
  if (work == nullptr || shares_buffer(work, ref) || shares_buffer(work, in) || shares_buffer(work, out))
    work = own_work.get();
  const output result(out, {in, ref});
  return correlate(ref, in, result.get(), work, m, halve != 0) == 0 ? result.commit() : -1;
}

int32_t dspb_corr(const dsp_vec *ref, const dsp_vec *in, dsp_vec *out, int32_t m, uint32_t halve) {
  return dsph_corr(ref, in, out, nullptr, m, halve);
}
