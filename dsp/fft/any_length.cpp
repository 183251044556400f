// Which way a length goes: the power-of-two transform, passes of mixed radix, or the chirp.
#include "dsp/core/sizing.h"
#include "dsp/fft/chirp.h"
#include "dsp/fft/mixed.h"
#include "dsp/fft/mixed_kernels.h"
#include "dsp/fft/transform.h"

namespace dsp::fft {
namespace {

bool by_passes(std::int32_t n) {
  if (has_mixed_plan(n)) return true;
  if (has_chirp(n)) return false;
  return shape_of(n, mixed_kernels().lanes).cost <= chirp_cost(n);
}

}  // namespace

std::int32_t transform_of_any_length(double *x, std::int32_t n, bool inverse, double scale) {
  if (is_power_of_two(n)) return transform(x, log2_of(n), inverse, scale);
  return by_passes(n) ? mixed_transform(x, n, inverse, scale) : chirp_transform(x, n, inverse, scale);
}

}  // namespace dsp::fft
