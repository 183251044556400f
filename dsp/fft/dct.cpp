// The cosine transform by one real transform of the same length (Makhoul 1980): the even samples in order and the odd
// ones in reverse have a spectrum that a quarter-sample rotation turns into the result.
#include "dsp/core/caches.h"
#include "dsp/core/heap.h"
#include "dsp/core/saturation.h"
#include "dsp/core/sizing.h"
#include "dsp/dsp.h"
#include "dsp/fft/roots.h"

namespace dsp {
namespace {

enum : std::int32_t { dct_inverse = 1, dct_normalised = 2 };

constexpr double sqrt2 = 1.4142135623730951;
constexpr double half_sqrt2 = 0.7071067811865476;

struct dct_state {
  dsp_vec work;
  bool work_initialised;
  dsp_complex *rotations;  // entry k - 1: cos, sin of pi k/(2 length), k = 1 .. (length - 1)/2
  int32_t length;          // 0: none
};

dct_state state;

int32_t size_work(int32_t length, bool is_complex) {
  if (!state.work_initialised) dsp_init(&state.work);
  state.work_initialised = true;
  state.work.length = length;
  state.work.is_complex = is_complex;
  return dsp_alloc(&state.work);
}

void release_rotations() {
  heap_release(state.rotations);
  state.rotations = nullptr;
  state.length = 0;
}

int32_t build_rotations(int32_t n) {
  const int32_t count = (n - 1) / 2;
  if (state.length == n || count == 0) return 0;
  release_rotations();
  state.rotations = static_cast<dsp_complex *>(heap_allocate(static_cast<std::size_t>(count) * sizeof(dsp_complex)));
  if (state.rotations == nullptr) return -1;
  fill_roots(&state.rotations->re, &state.rotations->im, 2, 1, count, 4 * std::int64_t{n});
  state.length = n;
  return 0;
}

// The even samples to the front, the odd ones in reverse to the back, and undone.
void sort_evens_and_odds(double *x, int32_t n, double *odds) {
  for (int32_t i = 0; i < n / 2; ++i) odds[i] = x[2 * i + 1];
  for (int32_t i = 0; i < (n + 1) / 2; ++i) x[i] = x[2 * i];
  for (int32_t i = 0; i < n / 2; ++i) x[n - 1 - i] = odds[i];
}

void merge_evens_and_odds(const double *sorted, int32_t n, double *x) {
  for (int32_t i = 0; i < (n + 1) / 2; ++i) x[2 * i] = sorted[i];
  for (int32_t i = 0; i < n / 2; ++i) x[2 * i + 1] = sorted[n - 1 - i];
}

// From the half spectrum in x to the result in the same place; the upper half waits in `upper`.
void rotate(double *x, int32_t n, double *upper) {
  const double middle = n % 2 == 0 ? (x[n] + x[n + 1]) * half_sqrt2 : 0.0;
  const int32_t half = (n + 1) / 2;
  for (int32_t k = 1; k < half; ++k) {
    const dsp_complex w = state.rotations[k - 1];
    const dsp_complex bin = {x[2 * k], x[2 * k + 1]};
    x[k] = w.re * bin.re + w.im * bin.im;
    upper[k] = w.im * bin.re - w.re * bin.im;
  }
  if (n % 2 == 0) x[n / 2] = middle;
  for (int32_t k = 1; k < half; ++k) x[n - k] = upper[k];
}

// The half spectrum of the sorted samples from the cosine transform.
void rotate_back(const double *y, int32_t n, dsp_complex *bins) {
  bins[0] = {y[0], 0.0};
  for (int32_t k = 1; k <= (n - 1) / 2; ++k) {
    const dsp_complex w = state.rotations[k - 1];
    bins[k] = {w.re * y[k] + w.im * y[n - k], w.im * y[k] - w.re * y[n - k]};
  }
  if (n % 2 == 0) bins[n / 2] = {y[n / 2] * sqrt2, 0.0};
}

int32_t scale(dsp_vec *v, double all, double first) {
  if (dspi_scale(v, all) != 0) return -1;
  v->data[0] *= first;
  return 0;
}

int32_t forward(dsp_vec *v, bool normalised) {
  const int32_t n = v->length;
  if (size_work((n + 1) / 2, false) != 0 || build_rotations(n) != 0) return -1;
  sort_evens_and_odds(v->data, n, state.work.data);
  if (dspi_rdft(v) != 0) return -1;
  if (n > 1) rotate(v->data, n, state.work.data);
  v->length = n;
  v->is_complex = 0;
  v->dx *= 0.5;
  return normalised ? scale(v, 2.0, half_sqrt2) : 0;
}

int32_t backward(dsp_vec *v, bool normalised) {
  const int32_t n = v->length;
  if (normalised && scale(v, 0.5, sqrt2) != 0) return -1;
  if (size_work(n / 2 + 1, true) != 0 || build_rotations(n) != 0) return -1;
  state.work.dx = v->dx;
  rotate_back(v->data, n, reinterpret_cast<dsp_complex *>(state.work.data));
  if (dspi_irdft(&state.work, n % 2 != 0) != 0) return -1;
  merge_evens_and_odds(state.work.data, n, v->data);
  v->dx = state.work.dx * 0.5;
  return 0;
}

}  // namespace

std::int32_t free_dct_work() {
  release_rotations();
  if (!state.work_initialised) return 0;
  state.work_initialised = false;
  return dsp_destroy(&state.work);
}

}  // namespace dsp

int32_t dspi_dct(dsp_vec *v, int32_t flags) {
  if (v->is_complex != 0) return -1;
  if (v->length < 1) {
    v->dx = v->dx != 0.0 ? 0.5 / v->dx : dsp::overflow_bound;
    return 0;
  }
  const bool normalised = (flags & dsp::dct_normalised) != 0;
  return (flags & dsp::dct_inverse) != 0 ? dsp::backward(v, normalised) : dsp::forward(v, normalised);
}
