#include "dsp/window/generator.h"

#include <algorithm>
#include <cmath>

#include "dsp/math/constants.h"
#include "dsp/window/catalogue.h"
#include "dsp/window/normalise.h"
#include "dsp/window/shapes.h"

namespace dsp::window {
namespace {

void triangle(double *w, const window_layout &at, double peak) {
  const double n = at.n;
  fill_symmetric(w, at, [&](double first, int32_t count, double *to) {
    for (int32_t i = 0; i < count; ++i) to[i] = peak * (n - 2 * (first + i)) / n;
  });
}

void uniform_part(double *w, int32_t n, window_scale scale, double active) {
  const auto ones = static_cast<int32_t>(std::min(std::max(std::round(active), 1.0), static_cast<double>(n)));
  std::fill(w, w + ones, 1.0);
  std::fill(w + ones, w + n, 0.0);
  normalise(w, n, scale);
}

void cosine_window(double *w, const window_layout &at, const cosine_sum &sum, window_scale scale) {
  fill_symmetric(w, at, [&](double first, int32_t count, double *to) { evaluate(sum, at.span, first, count, to); });
  const double gain = coherent_gain(sum, scale, at.n);
  if (gain == 1.0) return;
  for (int32_t i = 0; i < at.n; ++i) w[i] /= gain;
}

// A cosine sum over the inner `active` samples with zeros outside; where `active` exceeds n, the inner n samples of the
// longer window.
void active_part(double *w, int32_t n, const cosine_sum &sum, window_scale scale, double active) {
  const int32_t most = (n - 1) / 2;
  const int32_t each_side = active / 2 < most ? static_cast<int32_t>(active / 2) : most;
  double *centre = w + n / 2;
  evaluate(sum, active, 0.0, each_side + 1, centre);
  std::fill(centre + each_side + 1, w + n, 0.0);
  std::fill(w, centre - each_side, 0.0);
  for (int32_t j = 1; j <= each_side; ++j) *(centre - j) = centre[j];
  if (active < n) {
    if (std::fmod(active, 2.0) == 0.0) centre[each_side] = 0.0;  // the two ends are one sample of the period
  } else if (n % 2 == 0) {
    evaluate(sum, active, n / 2, 1, w);
  }
  normalise(w, n, scale, sum.c[0]);
}

void fill_parametric(double *w, const window_layout &at, dsp_window_type type, window_scale scale) {
  constexpr double beta[] = {9.473960131326246,  10.751776690564654, 12.014077292090791,
                             13.264372446115681, 14.505082414495599, 15.73795091271457};
  constexpr double sigma[] = {0.1583722, 0.1442161, 0.1328102};
  if (type <= DSP_WINDOW_KAISER120)
    kaiser(w, at, scale, beta[type - DSP_WINDOW_KAISER70]);
  else if (type <= DSP_WINDOW_GAUSS80)
    gauss(w, at, scale, sigma[type - DSP_WINDOW_GAUSS60]);
  else if (type == DSP_WINDOW_SINC_LOBE)
    sinc_lobe(w, at, scale, pi, 1.0);
  else
    tukey(w, at, scale, 0.25);
}

void fill_plain(double *w, const window_layout &at, dsp_window_type type, window_scale scale) {
  const cosine_sum sum = catalogued_sum(type, scale);
  if (type == DSP_WINDOW_TRIANGULAR)
    triangle(w, at, triangle_peak(scale, at.n));
  else if (sum.terms > 0)
    cosine_window(w, at, sum, scale);
  else
    fill_parametric(w, at, type, scale);
}

}  // namespace

double triangle_peak(window_scale scale, int32_t n) {
  if (scale == window_scale::raw) return 1.0;
  const double square = static_cast<double>(n) * n;
  if (scale == window_scale::power) return std::sqrt(3 * square / (square + 2));
  return n % 2 == 0 ? 2.0 : 2 * square / (square + 1);
}

bool available(dsp_window_type type, int32_t flags, double active) {
  if (type < 0 || type > window_tukey) return false;
  const bool symmetric = (flags & DSP_WND_SYMMETRIC) != 0;
  const bool partial = (flags & DSP_WND_ACTIVE) != 0;
  if (catalogued_sum(type, window_scale::raw).terms > 0) return !symmetric && (!partial || active > 0.0);
  return !partial && !(symmetric && type == DSP_WINDOW_TRIANGULAR);
}

void generate(double *w, int32_t n, dsp_window_type type, int32_t flags, double active) {
  const window_scale scale = scale_of(flags);
  if ((flags & DSP_WND_ACTIVE) == 0) return fill_plain(w, layout_of(n, flags), type, scale);
  if (type == DSP_WINDOW_UNIFORM) return uniform_part(w, n, scale, active);
  active_part(w, n, catalogued_sum(type, scale), scale, active);
}

void generate_for_taps(double *w, int32_t n, dsp_window_type type) {
  fill_plain(w, tap_layout(n), type, window_scale::raw);
}

}  // namespace dsp::window
