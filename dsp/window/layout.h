// Where the samples of a symmetric window lie.
#pragma once

#include <cstdint>

#include "dsp/window/flags.h"

namespace dsp::window {

struct window_layout {
  int32_t n;
  double span;           // width in samples that the shape is stretched over
  bool between = false;  // the centre lies between two samples
};

// The periodic form has its centre on sample n/2 and a period of n samples; the symmetric form has its ends on the
// first and on the last sample.
inline window_layout layout_of(int32_t n, int32_t flags) {
  const bool symmetric = (flags & DSP_WND_SYMMETRIC) != 0;
  return {n, static_cast<double>(symmetric ? n - 1 : n), symmetric && n % 2 == 0};
}

// For filter taps: symmetric, but as wide as the periodic form, which has no taps of weight 0 at its ends.
inline window_layout tap_layout(int32_t n) { return {n, static_cast<double>(n), n % 2 == 0}; }

// Samples in the right half, from the centre on.
inline int32_t right_half(const window_layout &at) { return at.n - at.n / 2; }

// Copies the right half, w[n/2] on, to the left one.
void mirror(double *w, const window_layout &at);

// Fills the window: shape(first, count, to) gives the values at the distances first, first + 1, ... from the centre.
template <class Shape>
void fill_symmetric(double *w, const window_layout &at, const Shape &shape) {
  shape(at.between ? 0.5 : 0.0, right_half(at), w + at.n / 2);
  if (!at.between && at.n % 2 == 0) shape(at.n / 2, 1, w);
  mirror(w, at);
}

}  // namespace dsp::window
