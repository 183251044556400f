// Chooses how a length that is no power of two is transformed: one butterfly, passes of mixed radix, or the chirp.
#include "dsp/fft/chirp.h"
#include "dsp/fft/mixed.h"
#include "dsp/fft/mixed_kernels.h"
#include "dsp/fft/transform.h"

namespace dsp::fft {

namespace {

[[gnu::noinline]] int32_t transform_by_new_plan(double *x, int32_t n, bool inverse, double scale) {
  if (has_chirp(n)) return chirp_transform(x, n, inverse, scale);
  const mixed_shape shape = shape_of(n, mixed_kernels().lanes);
  if (chirp_cost(n) < shape.cost) return chirp_transform(x, n, inverse, scale);
  return mixed_transform(make_mixed(n, shape), x, inverse, scale);
}

}  // namespace

int32_t transform_of_any_length(double *x, int32_t n, bool inverse, double scale) {
  if (is_direct(n)) return direct_transform(x, n, inverse, scale), 0;
  if (const mixed_entry *known = find_mixed(n)) return mixed_transform(known, x, inverse, scale);
  return transform_by_new_plan(x, n, inverse, scale);
}

}  // namespace dsp::fft
