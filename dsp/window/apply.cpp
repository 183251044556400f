// Multiplying signals by windows.
#include "dsp/core/sizing.h"
#include "dsp/core/temporary.h"
#include "dsp/dsp.h"
#include "dsp/window/cache.h"
#include "dsp/window/cosine_sum.h"
#include "dsp/window/generator.h"
#include "dsp/window/product_kernels.h"
#include "dsp/window/shapes.h"

namespace dsp::window {
namespace {

int32_t apply(dsp_vec *v, const dsp_vec &window, bool swap) {
  const product_kernel_set &kernels = product_kernels();
  const bool is_complex = v->is_complex != 0;
  const bool fused = swap && v->length % 2 == 0;
  if (fused)
    (is_complex ? kernels.swapped_complex : kernels.swapped_real)(v->data, window.data, v->length);
  else
    (is_complex ? kernels.complex : kernels.real)(v->data, window.data, v->length);
  return swap && !fused ? dspi_swap_halves2(v) : 0;
}

// Applies a window that make(w, n) writes.
template <class Make>
int32_t apply_made(dsp_vec *v, bool swap, const Make &make) {
  const int32_t n = samples(*v);
  if (n == 0) return 0;
  temporary w;
  w->length = n;
  if (dsp_alloc(w.get()) != 0) return -1;
  make(w->data, n);
  return apply(v, *w, swap);
}

template <class Shape>
int32_t apply_parametric(dsp_vec *v, int32_t flags, const Shape &shape) {
  if (!parametric_flags(flags)) return -1;
  return apply_made(v, (flags & DSP_WND_NO_SWAP) == 0,
                    [&](double *w, int32_t n) { shape(w, layout_of(n, flags), scale_of(flags)); });
}

}  // namespace
}  // namespace dsp::window

using namespace dsp;
using namespace dsp::window;

int32_t dspi_window(dsp_vec *v, dsp_window_type type, int32_t flags) {
  return (flags & DSP_WND_ACTIVE) != 0 ? -1 : dspi_window2(v, type, flags, 0.0);
}

int32_t dspi_window2(dsp_vec *v, dsp_window_type type, int32_t flags, double param) {
  if ((flags & DSP_WND_SCALE_MASK) == DSP_WND_SCALE_MASK) return -1;
  const bool uniform = type == DSP_WINDOW_UNIFORM;
  const bool swap = uniform ? (flags & DSP_WND_SWAP_UNIFORM) != 0 : (flags & DSP_WND_NO_SWAP) == 0;
  if (uniform && (flags & DSP_WND_ACTIVE) == 0) return swap ? dspi_swap_halves2(v) : 0;
  if (samples(*v) == 0) return 0;
  if (!available(type, flags, param)) return -1;
  const dsp_vec *window = cached_window(v->length, type, flags, param);
  return window != nullptr ? apply(v, *window, swap) : -1;
}

int32_t dspi_window_gauss(dsp_vec *v, double sigma, int32_t flags) {
  return apply_parametric(v, flags,
                          [=](double *w, const window_layout &at, window_scale scale) { gauss(w, at, scale, sigma); });
}

int32_t dspi_window_kaiser(dsp_vec *v, double beta, int32_t flags) {
  return apply_parametric(v, flags,
                          [=](double *w, const window_layout &at, window_scale scale) { kaiser(w, at, scale, beta); });
}

int32_t dspi_window_tukey(dsp_vec *v, double alpha, int32_t flags) {
  return apply_parametric(v, flags,
                          [=](double *w, const window_layout &at, window_scale scale) { tukey(w, at, scale, alpha); });
}

int32_t dspi_window_sinc(dsp_vec *v, double lobe, double peak, int32_t flags) {
  return apply_parametric(
      v, flags, [=](double *w, const window_layout &at, window_scale scale) { sinc_lobe(w, at, scale, lobe, peak); });
}

int32_t dspi_window_cos(dsp_vec *v, const dsp_vec *coefficients) {
  if (coefficients->is_complex != 0) return -1;
  const cosine_sum sum = {coefficients->data, samples(*coefficients)};
  return apply_made(v, false, [&](double *w, int32_t n) {
    fill_symmetric(w, layout_of(n, 0),
                   [&](double first, int32_t count, double *to) { evaluate(sum, n, first, count, to); });
  });
}

int32_t dspi_window_fir(dsp_vec *v, dsp_window_type type) {
  if (!available(type, DSP_WND_RAW, 0.0)) return -1;
  if (type == DSP_WINDOW_UNIFORM) return 0;
  return apply_made(v, false, [&](double *w, int32_t n) { generate_for_taps(w, n, type); });
}
