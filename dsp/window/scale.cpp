// Scale factors and noise bandwidths of the catalogued windows.
#include "dsp/core/temporary.h"
#include "dsp/dsp.h"
#include "dsp/window/catalogue.h"
#include "dsp/window/generator.h"
#include "dsp/window/normalise.h"

namespace dsp::window {
namespace {

double sum_scale(dsp_window_type type, window_scale scale, int32_t n) {
  const cosine_sum sum = catalogued_sum(type, scale);
  return sum.c[0] / catalogued_sum(type, window_scale::raw).c[0] / coherent_gain(sum, scale, n);
}

// Measured on the window itself.
int32_t measured_scale(double *result, dsp_window_type type, window_scale scale, int32_t flags, int32_t n,
                       double active) {
  if (!available(type, flags | DSP_WND_RAW, active)) return -1;
  temporary w;
  w->length = n;
  if (dsp_alloc(w.get()) != 0) return -1;
  generate(w->data, n, type, flags | DSP_WND_RAW, active);
  double size = scale == window_scale::amplitude ? mean(w->data, n) : rms(w->data, n);
  const cosine_sum flat_top = catalogued_sum(type, window_scale::amplitude);
  if (scale == window_scale::amplitude && flat_top.terms > 0) size /= flat_top.c[0];
  *result = size == 0.0 ? 0.0 : 1.0 / size;
  return 0;
}

int32_t noise_bandwidth(double *enbw, dsp_window_type type, int32_t flags, int32_t n, double active) {
  double amplitude = 0.0;
  double power = 0.0;
  if (enbw == nullptr) return -1;
  if (dsp_window2_scale(&amplitude, type, flags | DSP_WND_AMPLITUDE, n, active) != 0) return -1;
  if (dsp_window2_scale(&power, type, flags | DSP_WND_POWER, n, active) != 0) return -1;
  const double ratio = amplitude / power;
  *enbw = ratio * ratio;
  return 0;
}

}  // namespace
}  // namespace dsp::window

using namespace dsp;
using namespace dsp::window;

int32_t dsp_window2_scale(double *scale, dsp_window_type type, int32_t kind, int32_t n, double param) {
  if (scale == nullptr) return -1;
  const int32_t mode = kind & DSP_WND_SCALE_MASK;
  if (mode == DSP_WND_RAW || n <= 0) {
    *scale = 1.0;
    return 0;
  }
  if (mode == DSP_WND_SCALE_MASK) return -1;
  const window_scale wanted = scale_of(kind);
  const bool partial = (kind & DSP_WND_ACTIVE) != 0;
  if (type == DSP_WINDOW_TRIANGULAR && !partial) {
    *scale = triangle_peak(wanted, n);
    return 0;
  }
  if (partial || (type >= DSP_WINDOW_KAISER70 && type <= window_tukey))
    return measured_scale(scale, type, wanted, kind & (DSP_WND_SYMMETRIC | DSP_WND_ACTIVE), n, param);
  if (type < 0 || type > window_tukey) return -1;
  *scale = sum_scale(type, wanted, n);
  return 0;
}

int32_t dsp_window_scale(double *scale, dsp_window_type type, int32_t kind, int32_t n) {
  return (kind & DSP_WND_ACTIVE) != 0 ? -1 : dsp_window2_scale(scale, type, kind, n, 0.0);
}

int32_t dsp_window_enbw(double *enbw, dsp_window_type type, int32_t n) {
  return noise_bandwidth(enbw, type, 0, n, 0.0);
}

int32_t dsp_window2_enbw(double *enbw, dsp_window_type type, int32_t n, double param) {
  return noise_bandwidth(enbw, type, DSP_WND_ACTIVE, n, param);
}
