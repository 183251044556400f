// Lines and sampled sinusoids.
#include <algorithm>

#include "dsp/core/sizing.h"
#include "dsp/dsp.h"
#include "dsp/math/constants.h"
#include "dsp/math/oscillator.h"
#include "dsp/simd/traversal.h"

namespace dsp::elementwise {
namespace {

// Calls f(at, count, c, s) for run after run of samples: cosines and sines of a sinusoid of `freq` cycles per unit of
// dx.
template <class F>
void by_runs(const dsp_vec &v, double freq, double phase, F f) {
  const oscillator angle(phase, two_pi * v.dx * freq);
  double c[oscillator::block], s[oscillator::block];
  const int32_t n = samples(v);
  for (int32_t at = 0; at < n; at += oscillator::block) {
    const int32_t count = std::min(n - at, oscillator::block);
    angle(at, count, c, s);
    f(at, count, c, s);
  }
}

}  // namespace
}  // namespace dsp::elementwise

using namespace dsp;
using namespace dsp::elementwise;

int32_t dspc_line(dsp_vec *v, double slope, double offset) {
  if (dsp_alloc(v) != 0) return -1;
  const double step = slope * v->dx;
  double value = offset;
  auto *z = as<dsp_complex>(v->data);
  for (int32_t i = 0; i < samples(*v); ++i, value += step) {
    if (v->is_complex != 0)
      z[i] = {value, 0.0};
    else
      v->data[i] = value;
  }
  return 0;
}

int32_t dspc_cos(dsp_vec *v, double freq, double phase) {
  const bool was_complex = v->is_complex != 0;
  if (dsp_alloc(v) != 0) return -1;
  double *x = v->data;
  by_runs(*v, freq, phase,
          [x](int32_t at, int32_t count, const double *c, const double *) { std::copy_n(c, count, x + at); });
  if (!was_complex) return 0;
  v->is_complex = 0;
  return dspi_rtoc(v);
}

int32_t dspc_cexp(dsp_vec *v, double freq, double phase) {
  if (v->is_complex == 0) return dspc_cos(v, freq, phase);
  if (dsp_alloc(v) != 0) return -1;
  auto *z = as<dsp_complex>(v->data);
  by_runs(*v, freq, phase, [z](int32_t at, int32_t count, const double *c, const double *s) {
    for (int32_t i = 0; i < count; ++i) z[at + i] = {c[i], s[i]};
  });
  return 0;
}

int32_t dspi_addcos(dsp_vec *v, int32_t flags, double freq, double amp, double phase) {
  const bool is_complex = v->is_complex != 0, with_sine = (flags & DSP_ADDCOS_EXPONENTIAL) != 0;
  double *x = v->data;
  auto *z = as<dsp_complex>(x);
  by_runs(*v, freq, phase, [=](int32_t at, int32_t count, const double *c, const double *s) {
    for (int32_t i = 0; !is_complex && i < count; ++i) x[at + i] += amp * c[i];
    for (int32_t i = 0; is_complex && i < count; ++i) z[at + i].re += amp * c[i];
    for (int32_t i = 0; is_complex && with_sine && i < count; ++i) z[at + i].im += amp * s[i];
  });
  return 0;
}
