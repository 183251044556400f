// Lines and sampled sinusoids.
#include <algorithm>

#include "dsp/core/sizing.h"
#include "dsp/dsp.h"
#include "dsp/elementwise/polar.h"
#include "dsp/math/oscillator.h"
#include "dsp/simd/traversal.h"

namespace dsp::elementwise {
namespace {

// Calls emit(index, cosine, sine) for every sample of a sinusoid of `freq` cycles per unit of the signal's spacing.
template <class Emit>
void for_each_phase(const dsp_vec &v, double freq, double phase, Emit emit) {
  const oscillator turn(phase, 2.0 * pi * v.dx * freq);
  double c[oscillator::block], s[oscillator::block];
  const std::int32_t n = samples(v);
  for (std::int32_t done = 0; done < n;) {
    const std::int32_t count = std::min(n - done, oscillator::block);
    turn(done, count, c, s);
    for (std::int32_t i = 0; i < count; ++i) emit(done + i, c[i], s[i]);
    done += count;
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
  for (std::int32_t i = 0; i < samples(*v); ++i, value += step) {
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
  for_each_phase(*v, freq, phase, [x](std::int32_t i, double c, double) { x[i] = c; });
  if (!was_complex) return 0;
  v->is_complex = 0;
  return dspi_rtoc(v);
}

int32_t dspc_cexp(dsp_vec *v, double freq, double phase) {
  if (v->is_complex == 0) return dspc_cos(v, freq, phase);
  if (dsp_alloc(v) != 0) return -1;
  auto *z = as<dsp_complex>(v->data);
  for_each_phase(*v, freq, phase, [z](std::int32_t i, double c, double s) { z[i] = {c, s}; });
  return 0;
}

int32_t dspi_addcos(dsp_vec *v, int32_t flags, double freq, double amp, double phase) {
  double *x = v->data;
  auto *z = as<dsp_complex>(v->data);
  if (v->is_complex == 0)
    for_each_phase(*v, freq, phase, [=](std::int32_t i, double c, double) { x[i] += amp * c; });
  else if ((flags & 1) != 0)
    for_each_phase(*v, freq, phase, [=](std::int32_t i, double c, double s) {
      z[i].re += amp * c;
      z[i].im += amp * s;
    });
  else
    for_each_phase(*v, freq, phase, [=](std::int32_t i, double c, double) { z[i].re += amp * c; });
  return 0;
}
