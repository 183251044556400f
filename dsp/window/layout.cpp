#include "dsp/window/layout.h"

namespace dsp::window {

void mirror(double *w, const window_layout &at) {
  const int32_t first = at.between ? 0 : 1;
  const double *right = w + at.n / 2 + first;
  const int32_t count = right_half(at) - first;
  for (int32_t j = 0; j < count; ++j) w[at.n / 2 - 1 - j] = right[j];
}

}  // namespace dsp::window
