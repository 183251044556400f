// The cosine transform by one real transform of the same length (Makhoul 1980), of the even samples in order followed
// by the odd ones in reverse. A delay of a quarter of a sample turns that spectrum into the result.
#include "dsp/core/caches.h"
#include "dsp/core/sizing.h"
#include "dsp/core/work_signal.h"
#include "dsp/dsp.h"
#include "dsp/fft/dct_kernels.h"
#include "dsp/fft/recent.h"
#include "dsp/math/angle.h"
#include "dsp/math/saturation.h"

namespace dsp::fft {
namespace {

constexpr double sqrt2 = 1.4142135623730951;

// Entry k - 1: cos, sin of pi k/(2 length), k = 1 .. (length - 1)/2.
struct dct_rotations {
  dsp_complex *entry;
};

recent<dct_rotations> dct_tables;
work_signal dct_work;

int32_t size_work(int32_t length, bool is_complex) {
  dsp_vec *signal = dct_work.obtain();
  signal->length = length;
  signal->is_complex = is_complex;
  return dsp_alloc(signal);
}

const dct_rotations *rotations_for(int32_t n) {
  if (const dct_rotations *known = dct_tables.find(n)) return known;
  const int32_t count = (n - 1) / 2;
  void *block;
  dct_rotations *made = dct_tables.add(n, static_cast<uint64_t>(count + 1) * sizeof(dsp_complex), &block);
  if (made == nullptr) return nullptr;
  made->entry = static_cast<dsp_complex *>(block);
  fill_roots(&made->entry->re, &made->entry->im, 2, 1, count, 4 * int64_t{n});
  return made;
}

void scale(dsp_vec *v, double all, double first) {
  dspi_scale(v, all);
  v->data[0] *= first;
}

int32_t forward(dsp_vec *v, bool normalised) {
  const int32_t n = v->length;
  const dct_kernel_set &kernels = dct_kernels();
  const dct_rotations *rotations = rotations_for(n);
  if (rotations == nullptr || size_work(n, false) != 0) return -1;
  dct_work.signal.dx = v->dx;
  kernels.permute(v->data, n, dct_work.signal.data);
  if (dspi_rdft(&dct_work.signal) != 0) return -1;
  const auto *bins = reinterpret_cast<const dsp_complex *>(dct_work.signal.data);
  double *y = v->data;
  y[0] = bins[0].re;
  kernels.rotate(bins, rotations->entry, n, y);
  if (n % 2 == 0) y[n / 2] = (bins[n / 2].re + bins[n / 2].im) * half_sqrt2;
  v->dx = dct_work.signal.dx * 0.5;
  if (normalised) scale(v, 2.0, half_sqrt2);
  return 0;
}

int32_t backward(dsp_vec *v, bool normalised) {
  const int32_t n = v->length;
  const dct_kernel_set &kernels = dct_kernels();
  const dct_rotations *rotations = rotations_for(n);
  if (rotations == nullptr || size_work(n / 2 + 1, true) != 0) return -1;
  if (normalised) scale(v, 0.5, sqrt2);
  dct_work.signal.dx = v->dx;
  auto *bins = reinterpret_cast<dsp_complex *>(dct_work.signal.data);
  const double *y = v->data;
  bins[0] = {y[0], 0.0};
  kernels.rotate_back(y, rotations->entry, n, bins);
  if (n % 2 == 0) bins[n / 2] = {y[n / 2] * sqrt2, 0.0};
  if (dspi_irdft(&dct_work.signal, n % 2 != 0) != 0) return -1;
  kernels.unpermute(dct_work.signal.data, n, v->data);
  v->dx = dct_work.signal.dx * 0.5;
  return 0;
}

}  // namespace

int32_t free_dct_work() {
  dct_tables.release();
  return dct_work.release();
}

}  // namespace dsp::fft

using namespace dsp;
using namespace dsp::fft;

int32_t dspi_dct(dsp_vec *v, int32_t flags) {
  if (v->is_complex != 0) return -1;
  if (v->length < 1) {
    v->dx = v->dx != 0.0 ? 0.5 / v->dx : overflow_bound;
    return 0;
  }
  const bool normalised = (flags & DSP_DCT_NORMALISED) != 0;
  return (flags & DSP_DCT_INVERSE) != 0 ? backward(v, normalised) : forward(v, normalised);
}
