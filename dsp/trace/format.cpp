// Measurement points in display formats, and phase without jumps.
#include <cmath>
#include <cstdint>

#include "dsp/dsp.h"
#include "dsp/math/constants.h"
#include "dsp/trace/trace_kernels.h"

namespace dsp::trace {
namespace {

// 180/pi to 13 digits: displayed phases have always used this factor.
constexpr double degrees_per_radian = 57.29577951307855;

double phase(const dsp_complex &z) { return std::atan2(z.im, z.re); }

template <class Format>
void each(const dsp_complex *in, double *out, int64_t n, Format format) {
  for (int64_t i = 0; i < n; ++i) out[i] = format(in[i]);
}

void level(const dsp_complex *in, double *out, int64_t n, double factor) {
  each(in, out, n, [factor](const dsp_complex &z) { return factor * std::log10(z.re * z.re + z.im * z.im); });
}

// The turns accumulated by the points unwrapped so far; 0 when that count is not finite.
double turns_before(int32_t start, const double *unwrapped) {
  if (start <= 1) return 0.0;
  const double turns = std::trunc((unwrapped[start - 1] - unwrapped[0]) / two_pi);
  return std::isfinite(turns) ? turns : 0.0;
}

}  // namespace
}  // namespace dsp::trace

using namespace dsp;
using namespace dsp::trace;

void vfpd_FormatBuffer(uint32_t format, const dsp_complex *in, double *out, int32_t start, int32_t stop) {
  if (start >= stop) return;
  const int64_t n = int64_t{stop} - start;
  in += start;
  out += start;
  switch (format) {
    case DSP_FORMAT_LEVEL:
      return level(in, out, n, 10.0);
    case DSP_FORMAT_MAGNITUDE:
      return trace_kernels().magnitude(in, out, n);
    case DSP_FORMAT_PHASE:
      return each(in, out, n, [](const dsp_complex &z) { return phase(z) * degrees_per_radian; });
    case DSP_FORMAT_SWR:
      return trace_kernels().standing_wave_ratio(in, out, n);
    case DSP_FORMAT_RETURN_LOSS:
      return level(in, out, n, -10.0);
    default:
      return;
  }
}

void vfpd_UnwrapPhase(const dsp_complex *in, int32_t start, int32_t stop, double *out) {
  if (start >= stop) return;
  double turns = turns_before(start, out);
  for (int32_t i = start; i < stop; ++i) {
    double unwrapped = phase(in[i]) + turns * two_pi;
    const double step = i > 0 ? unwrapped - out[i - 1] : 0.0;
    if (step < -pi) {
      unwrapped += two_pi;
      turns += 1.0;
    } else if (step > pi) {
      unwrapped -= two_pi;
      turns -= 1.0;
    }
    out[i] = unwrapped;
  }
}
