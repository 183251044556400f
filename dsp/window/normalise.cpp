#include "dsp/window/normalise.h"

namespace dsp::window {
namespace {

double statistic(int32_t (*reduce)(const dsp_vec *, dsp_vec *), const double *w, int32_t n) {
  double value = 0.0;
  const dsp_vec in = {1.0, const_cast<double *>(w), 0, n, 0, 0};
  dsp_vec out = {1.0, &value, 1, 1, 0, 0};  // has room for the result, so nothing is allocated and nothing can fail
  reduce(&in, &out);
  return value;
}

}  // namespace

double mean(const double *w, int32_t n) { return statistic(dsps_mean, w, n); }
double rms(const double *w, int32_t n) { return statistic(dsps_rms, w, n); }

void normalise(double *w, int32_t n, window_scale scale, double target) {
  if (scale == window_scale::raw) return;
  const double size = scale == window_scale::amplitude ? mean(w, n) : rms(w, n);
  if (size == 0.0) return;
  const double goal = scale == window_scale::amplitude ? target : 1.0;
  for (int32_t i = 0; i < n; ++i) w[i] = w[i] * goal / size;
}

}  // namespace dsp::window
