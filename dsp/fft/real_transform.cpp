#include "dsp/fft/real_transform.h"

#include "dsp/core/sizing.h"
#include "dsp/fft/circle.h"
#include "dsp/fft/fft_kernels.h"
#include "dsp/fft/recent.h"
#include "dsp/fft/transform.h"

namespace dsp::fft {
namespace {

// cos and sin of 2 pi k/n, k = 0 .. n/4.
struct real_roots {
  double *cosines;
  double *sines;
};

recent<real_roots> real_tables;

[[gnu::noinline]] const real_roots *make_roots(int32_t n) {
  circle roots(n);
  if (!roots.build()) return nullptr;
  const int64_t count = n / 4 + 1;
  void *block;
  real_roots *made = real_tables.add(n, static_cast<uint64_t>(2 * count) * sizeof(double), &block);
  if (made == nullptr) return nullptr;
  auto *const cosines = static_cast<double *>(block);
  *made = {cosines, cosines + count};
  for (int64_t k = 0; k < count; ++k) {
    const root r = roots[k];
    made->cosines[k] = r.cos;
    made->sines[k] = r.sin;
  }
  return made;
}

int32_t power_of_two(double *x, int bits, bool inverse) {
  const fft_kernel_set &kernels = fft_kernels();
  const std::ptrdiff_t m = std::ptrdiff_t{1} << (bits - 1);
  const double *octant = octant_setup(bits);
  if (octant == nullptr) return -1;
  if (inverse) kernels.pre_process(x, m, octant);
  if (transform(x, bits - 1, inverse, inverse ? 1.0 : 0.5 * reciprocal_power_of_two(bits)) != 0) return -1;
  if (!inverse) kernels.post_process(x, m, octant);
  return 0;
}

int32_t even_length(double *x, int32_t n, bool inverse) {
  const real_roots *roots = real_tables.find(n);
  if (roots == nullptr) roots = make_roots(n);
  if (roots == nullptr) return -1;
  if (inverse) fft_kernels().pre_process_any(x, n / 2, roots->cosines, roots->sines);
  if (transform_of_any_length(x, n / 2, inverse, inverse ? 1.0 : 0.5 / n) != 0) return -1;
  if (!inverse) fft_kernels().post_process_any(x, n / 2, roots->cosines, roots->sines);
  return 0;
}

}  // namespace

int32_t real_transform(double *x, int32_t n, bool inverse) {
  if (!is_power_of_two(n)) return even_length(x, n, inverse);
  const int bits = log2_of(n);
  if (bits > most_small_real_bits) return power_of_two(x, bits, inverse);
  fft_kernels().small_real(bits, x, inverse ? 1.0 : reciprocal_power_of_two(bits), inverse);
  return 0;
}

void free_real_roots() { real_tables.release(); }

}  // namespace dsp::fft
