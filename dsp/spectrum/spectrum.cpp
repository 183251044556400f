// Windowed, padded and scaled spectra of a record, and their inverses.
#include <cmath>
#include <cstdint>
#include <cstring>

#include "dsp/core/sizing.h"
#include "dsp/core/temporary.h"
#include "dsp/dsp.h"
#include "dsp/spectrum/flags.h"

namespace dsp::spectrum {
namespace {

constexpr int32_t largest_transform = 1 << 30;

int32_t transform_length(int32_t n) {
  return n < largest_transform ? static_cast<int32_t>(power_of_two_from(n)) : largest_transform;
}

int32_t rounded(double x) { return static_cast<int32_t>(std::round(x)); }

// For real one-sided data, half of the spectrum is enough.
bool one_sided(const spectrum_flags &f, bool is_complex) { return !is_complex && !f.two_sided && !f.raw; }

int32_t window_or_swap(dsp_vec *v, dsp_window_type window, const spectrum_flags &f, bool by_active_length) {
  if (f.unwindowed) return f.swaps ? dspi_swap_halves2(v) : 0;
  const int32_t swap = f.centred || f.sum ? DSP_WND_SWAP_UNIFORM : 0;
  // Windows without an active length take the record's own length, which is the active one.
  const bool has_active_form = window != DSP_WINDOW_TRIANGULAR && window < DSP_WINDOW_KAISER70;
  if (!by_active_length || !has_active_form) return dspi_window(v, window, swap);
  return samples(*v) > 0 ? dspi_window2(v, window, DSP_WND_ACTIVE | swap, v->length) : 0;
}

// Times the length for a sum instead of a mean; else times 2 for the side that a one-sided spectrum omits.
void scale_forward(dsp_vec *v, const spectrum_flags &f, double length) {
  if (f.sum)
    dspi_scale(v, length);
  else if (!f.two_sided)
    dspi_scale(v, 2.0);
}

int32_t finish_inverse(dsp_vec *v, const spectrum_flags &f) {
  if (f.swaps) dspi_swap_halves(v);
  if (f.sum) return dspi_scale(v, 1.0 / samples(*v));
  return f.two_sided ? 0 : dspi_scale(v, 0.5);
}

// How the record lies in the transform: its middle at index 0 where the halves are swapped, else at the front.
int32_t padding_mode(const spectrum_flags &f) {
  return f.sum ? DSP_PAD_SPLIT | DSP_PAD_UNSCALED : f.swaps ? DSP_PAD_SPLIT : DSP_PAD_SCALED;
}

int32_t forward_fft(const dsp_vec *in, dsp_vec *out, int32_t n, double fraction, dsp_window_type window,
                    const spectrum_flags &f) {
  const bool half = one_sided(f, in->is_complex != 0);
  const int32_t length = samples(*in);
  const int32_t m = transform_length(n < 1 ? length : n);
  const int32_t active = rounded(std::fmin(fraction * m, length));
  if (dspu_subvec(in, out, 0, active) != 0) return -1;
  int32_t mode = DSP_PAD_UNSCALED;
  if (!f.raw) {
    if (window_or_swap(out, window, f, true) != 0) return -1;
    scale_forward(out, f, m);
    mode = padding_mode(f);
  }
  if (dspi_zpad2(out, m, mode) != 0) return -1;
  if (half) return dspi_rfft(out);
  if (dspi_fft(out, 0) != 0) return -1;
  return f.raw ? 0 : dspi_swap_halves(out);
}

// A record of m samples from a two-sided spectrum with 0 in the middle, or from its upper half.
int32_t inverse_of_both_sides(const dsp_vec *in, dsp_vec *out, int32_t m) {
  if (dsp_copy(out, in) != 0) return -1;
  dspi_swap_halves2(out);
  if (dspi_zpad2(out, m, DSP_PAD_SPLIT | DSP_PAD_UNSCALED) != 0) return -1;
  dspi_unzpad(out, m, DSP_PAD_SPLIT | DSP_PAD_UNSCALED);
  return dspi_fft(out, 1);
}

int32_t inverse_of_half(const dsp_vec *in, dsp_vec *out, int32_t m) {
  const int32_t bins = m / 2 + 1;
  if (dspu_subvec(in, out, 0, bins) != 0 || dspi_zpad(out, bins) != 0) return -1;
  return dspi_irfft(out);
}

int32_t inverse_fft(const dsp_vec *in, dsp_vec *out, int32_t n, double fraction, const spectrum_flags &f) {
  const bool full = f.from_two_sided || f.two_sided;
  const int64_t bins = samples(*in);
  const int64_t natural = full || f.raw ? bins : 2 * (bins - 1);
  const int32_t m =
      transform_length(n >= 1 ? n : static_cast<int32_t>(natural < largest_transform ? natural : largest_transform));
  if (f.raw) {
    if (dspu_subvec(in, out, 0, m) != 0 || dspi_zpad(out, m) != 0) return -1;
    return dspi_fft(out, 1);
  }
  if ((full ? inverse_of_both_sides(in, out, m) : inverse_of_half(in, out, m)) != 0) return -1;
  dspi_unzpad(out, rounded(fraction * m), padding_mode(f));
  return finish_inverse(out, f);
}

int32_t forward_dft(const dsp_vec *in, dsp_vec *out, dsp_window_type window, const spectrum_flags &f) {
  const bool half = one_sided(f, in->is_complex != 0);
  if (dsp_copy(out, in) != 0) return -1;
  if (f.raw) return dspi_dft(out, 0);
  if (window_or_swap(out, window, f, false) != 0) return -1;
  scale_forward(out, f, samples(*out));
  if (half) return dspi_rdft(out);
  return dspi_dft(out, 0) != 0 ? -1 : dspi_swap_halves(out);
}

int32_t inverse_dft(const dsp_vec *in, dsp_vec *out, const spectrum_flags &f) {
  if (dsp_copy(out, in) != 0) return -1;
  if (f.raw) return dspi_dft(out, 1);
  if (f.from_two_sided || f.two_sided) {
    dspi_swap_halves2(out);
    if (dspi_dft(out, 1) != 0) return -1;
  } else if (dspi_irdft(out, f.odd) != 0) {
    return -1;
  }
  return finish_inverse(out, f);
}

}  // namespace
}  // namespace dsp::spectrum

using namespace dsp;
using namespace dsp::spectrum;

int32_t dsph_fft(const dsp_vec *in, dsp_vec *out, int32_t n, double fraction, dsp_window_type window, int32_t flags) {
  if (in == nullptr || out == nullptr) return -1;
  const spectrum_flags f(flags, window);
  const bool whole = f.raw || f.centred || f.sum;
  if (whole) n = 0;
  if (whole || !(fraction > 0.0 && fraction <= 1.0)) fraction = 1.0;
  return f.inverse ? inverse_fft(in, out, n, fraction, f) : forward_fft(in, out, n, fraction, window, f);
}

int32_t dsph_dft(const dsp_vec *in, dsp_vec *out, dsp_window_type window, int32_t flags) {
  if (in == nullptr || out == nullptr) return -1;
  const spectrum_flags f(flags, window);
  return f.inverse ? inverse_dft(in, out, f) : forward_dft(in, out, window, f);
}

int32_t cf_dsph_fft(const double *in_data, double *out_data, int32_t length, uint32_t is_complex, double fraction,
                    dsp_window_type window, int32_t flags) {
  dsp_vec in;
  dsp_init(&in);
  in.data = const_cast<double *>(in_data);  // only read: the transform runs in the output
  in.length = length;
  in.is_complex = is_complex;
  temporary out;
  if (dsph_fft(&in, out.get(), 0, fraction, window, flags) != 0) return -1;
  if (samples(*out) > 0) std::memcpy(out_data, out->data, static_cast<std::size_t>(doubles(*out)) * sizeof(double));
  return 0;
}
