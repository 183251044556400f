// The cosine transform by one real transform of the same length (Makhoul 1980): the even samples in order and the odd
// ones in reverse have a spectrum that a quarter-sample rotation turns into the result.
#include "dsp/core/caches.h"
#include "dsp/core/heap.h"
#include "dsp/core/sizing.h"
#include "dsp/core/work_signal.h"
#include "dsp/dsp.h"
#include "dsp/fft/dct_kernels.h"
#include "dsp/math/angle.h"
#include "dsp/math/saturation.h"

namespace dsp::fft {
namespace {

constexpr double sqrt2 = 1.4142135623730951;

struct dct_state {
  work_signal work;
  dsp_complex *rotations;  // entry k - 1: cos, sin of pi k/(2 length), k = 1 .. (length - 1)/2
  int32_t length;          // 0: none
};

dct_state dct;

int32_t size_work(int32_t length, bool is_complex) {
  dsp_vec *work = dct.work.obtain();
  work->length = length;
  work->is_complex = is_complex;
  return dsp_alloc(work);
}

void release_rotations() {
  heap_release(dct.rotations);
  dct.rotations = nullptr;
  dct.length = 0;
}

int32_t build_rotations(int32_t n) {
  const int32_t count = (n - 1) / 2;
  if (dct.length == n || count == 0) return 0;
  release_rotations();
  dct.rotations = static_cast<dsp_complex *>(heap_allocate(static_cast<std::size_t>(count) * sizeof(dsp_complex)));
  if (dct.rotations == nullptr) return -1;
  fill_roots(&dct.rotations->re, &dct.rotations->im, 2, 1, count, 4 * std::int64_t{n});
  dct.length = n;
  return 0;
}

void scale(dsp_vec *v, double all, double first) {
  dspi_scale(v, all);
  v->data[0] *= first;
}

int32_t forward(dsp_vec *v, bool normalised) {
  const int32_t n = v->length;
  const dct_kernel_set &kernels = dct_kernels();
  if (size_work(n, false) != 0 || build_rotations(n) != 0) return -1;
  dct.work.signal.dx = v->dx;
  kernels.sort(v->data, n, dct.work.signal.data);
  if (dspi_rdft(&dct.work.signal) != 0) return -1;
  const auto *bins = reinterpret_cast<const dsp_complex *>(dct.work.signal.data);
  double *y = v->data;
  y[0] = bins[0].re;
  kernels.rotate(bins, dct.rotations, n, y);
  if (n % 2 == 0) y[n / 2] = (bins[n / 2].re + bins[n / 2].im) * half_sqrt2;
  v->dx = dct.work.signal.dx * 0.5;
  if (normalised) scale(v, 2.0, half_sqrt2);
  return 0;
}

int32_t backward(dsp_vec *v, bool normalised) {
  const int32_t n = v->length;
  const dct_kernel_set &kernels = dct_kernels();
  if (normalised) scale(v, 0.5, sqrt2);
  if (size_work(n / 2 + 1, true) != 0 || build_rotations(n) != 0) return -1;
  dct.work.signal.dx = v->dx;
  auto *bins = reinterpret_cast<dsp_complex *>(dct.work.signal.data);
  const double *y = v->data;
  bins[0] = {y[0], 0.0};
  kernels.rotate_back(y, dct.rotations, n, bins);
  if (n % 2 == 0) bins[n / 2] = {y[n / 2] * sqrt2, 0.0};
  if (dspi_irdft(&dct.work.signal, n % 2 != 0) != 0) return -1;
  kernels.merge(dct.work.signal.data, n, v->data);
  v->dx = dct.work.signal.dx * 0.5;
  return 0;
}

}  // namespace

std::int32_t free_dct_work() {
  release_rotations();
  return dct.work.release();
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
