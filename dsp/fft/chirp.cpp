#include "dsp/fft/chirp.h"

#include <cmath>

#include "dsp/core/caches.h"
#include "dsp/core/sizing.h"
#include "dsp/fft/transform.h"
#include "dsp/math/angle.h"
#include "dsp/math/double_double.h"

namespace dsp::fft {
namespace {

struct chirp_state {
  bool initialised;
  bool inverse;
  int32_t length;  // 0: nothing valid
  dsp_vec chirp;   // w[n] of the direction served last
  dsp_vec filter;  // spectrum of conj w
};

chirp_state state;

dsp_complex *samples_of(const dsp_vec &v) { return reinterpret_cast<dsp_complex *>(v.data); }

void initialise() {
  if (state.initialised) return;
  dsp_init(&state.chirp);
  dsp_init(&state.filter);
  state.chirp.is_complex = state.filter.is_complex = 1;
  state.length = 0;
  state.initialised = true;
}

// cos and sin of 2 pi r/n, 0 <= r < n. The angle is folded into an eighth of the circle while it is an integer, and
// rounded once.
root root_of(std::int64_t r, std::int64_t n) {
  const std::int64_t eighths = 8 * r / n;  // which eighth of the circle
  const std::int64_t quarter = (eighths + 1) / 2;
  const auto rest = static_cast<double>(4 * r - quarter * n);  // of the nearest quarter, in fourths of a step
  const double angle = (exact_two_pi * double_double{rest, 0.0} / (4.0 * static_cast<double>(n))).hi;
  const root folded = {std::cos(angle), std::sin(angle)};
  switch (quarter % 4) {
    case 0:
      return folded;
    case 1:
      return {-folded.sin, folded.cos};
    case 2:
      return {-folded.cos, -folded.sin};
    default:
      return {folded.sin, -folded.cos};
  }
}

// w[k] = exp(-i pi k^2/n), the square carried modulo 2n.
int32_t build_chirp(int32_t n) {
  state.chirp.length = n;
  if (dsp_alloc(&state.chirp) != 0) return -1;
  dsp_complex *w = samples_of(state.chirp);
  const std::int64_t period = 2 * std::int64_t{n};
  std::int64_t square = 0;
  for (std::int64_t k = 0; k < n; ++k) {
    const root r = root_of(square, period);
    w[k] = {r.cos, -r.sin};
    square = (square + 2 * k + 1) % period;
  }
  return 0;
}

int32_t build_filter(int32_t n, int32_t m) {
  state.filter.length = m;
  if (dsp_alloc(&state.filter) != 0) return -1;
  dspi_zero(&state.filter);
  const dsp_complex *w = samples_of(state.chirp);
  dsp_complex *h = samples_of(state.filter);
  h[0] = {1.0, 0.0};
  for (int32_t k = 1; k < n; ++k) h[k] = h[m - k] = {w[k].re, -w[k].im};
  return transform(state.filter.data, log2_of(m), true, 1.0);
}

// The filter of the other direction is the conjugate, whose spectrum is the conjugate in reverse order. Built
// for the forward direction always and without its 1/n, so that a result does not depend on what was served before.
void turn_round(int32_t n, int32_t m) {
  dsp_complex *w = samples_of(state.chirp);
  dsp_complex *h = samples_of(state.filter);
  for (int32_t k = 0; k < n; ++k) w[k].im = -w[k].im;
  const auto turned = [](dsp_complex z) { return dsp_complex{z.re, -z.im}; };
  h[0] = turned(h[0]);
  for (int32_t low = 1, high = m - 1; low <= high; ++low, --high) {
    const dsp_complex from_low = turned(h[low]);
    h[low] = turned(h[high]);
    h[high] = from_low;
  }
}

int32_t prepare(int32_t n, int32_t m, bool inverse) {
  initialise();
  if (state.length != n) {
    state.length = 0;
    state.inverse = false;
    if (build_chirp(n) != 0 || build_filter(n, m) != 0) return -1;
    state.length = n;
  }
  if (state.inverse != inverse) turn_round(n, m);
  state.inverse = inverse;
  return 0;
}

}  // namespace

int32_t chirp_dft(dsp_vec *v, bool inverse) {
  const int32_t n = v->length;
  const std::int64_t grid = power_of_two_from(2 * std::int64_t{n} - 2);
  if (!countable(2 * grid)) return -1;
  const auto m = static_cast<int32_t>(grid);
  if (prepare(n, m, inverse) != 0) return -1;
  const double dx = v->dx;
  const double scale = (inverse ? 1.0 : 1.0 / n) / m;
  if (dspb_mul(v, &state.chirp, v) != 0 || dspi_zpad(v, m) != 0) return -1;
  // GCOVR_EXCL_BR_START: what memory this takes is there
  if (transform(v->data, log2_of(m), true, 1.0) != 0 || dspb_mul(v, &state.filter, v) != 0) return -1;
  if (transform(v->data, log2_of(m), false, scale) != 0) return -1;
  v->length = n;
  if (dspb_mul(v, &state.chirp, v) != 0) return -1;
  // GCOVR_EXCL_BR_STOP
  v->dx = dx;
  return 0;
}

int32_t free_chirp_state() {
  if (!state.initialised) return 0;
  state.initialised = false;
  state.length = 0;
  dsp_destroy(&state.chirp);
  return dsp_destroy(&state.filter);
}

}  // namespace dsp::fft
