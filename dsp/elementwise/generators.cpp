// Lines and sampled sinusoids.
#include <algorithm>

#include "dsp/core/sizing.h"
#include "dsp/dsp.h"
#include "dsp/math/constants.h"
#include "dsp/math/oscillator.h"
#include "dsp/simd/traversal.h"

namespace dsp::elementwise {
namespace {

// Replaces each sample by kernel(sample, cosine, sine) of a sinusoid of `freq` cycles per unit of the signal's spacing.
template <class Sample, class Kernel>
void modulate(dsp_vec *v, double freq, double phase, Kernel kernel) {
  const oscillator angle(phase, two_pi * v->dx * freq);
  double c[oscillator::block], s[oscillator::block];
  const std::int32_t n = samples(*v);
  for (std::int32_t done = 0; done < n; done += oscillator::block) {
    const std::int32_t count = std::min(n - done, oscillator::block);
    angle(done, count, c, s);
    Sample *x = as<Sample>(v->data) + done;
    walk<Sample>(reinterpret_cast<double *>(x), count, kernel, x, c, s);
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
  modulate<double>(v, freq, phase, [](double, double c, double) { return c; });
  if (!was_complex) return 0;
  v->is_complex = 0;
  return dspi_rtoc(v);
}

int32_t dspc_cexp(dsp_vec *v, double freq, double phase) {
  if (v->is_complex == 0) return dspc_cos(v, freq, phase);
  if (dsp_alloc(v) != 0) return -1;
  modulate<dsp_complex>(v, freq, phase, [](dsp_complex, double c, double s) { return dsp_complex{c, s}; });
  return 0;
}

int32_t dspi_addcos(dsp_vec *v, int32_t flags, double freq, double amp, double phase) {
  if (v->is_complex == 0)
    modulate<double>(v, freq, phase, [amp](double x, double c, double) { return x + amp * c; });
  else if ((flags & DSP_ADDCOS_EXPONENTIAL) != 0)
    modulate<dsp_complex>(v, freq, phase, [amp](dsp_complex z, double c, double s) {
      return dsp_complex{z.re + amp * c, z.im + amp * s};
    });
  else
    modulate<dsp_complex>(v, freq, phase, [amp](dsp_complex z, double c, double) {
      return dsp_complex{z.re + amp * c, z.im};
    });
  return 0;
}
