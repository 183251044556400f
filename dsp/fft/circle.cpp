#include "dsp/fft/circle.h"

#include "dsp/fft/memory.h"

namespace dsp::fft {

circle::~circle() { heap_release(cosines_); }

bool circle::build() {
  const int64_t count = period_ / 8 + 1;
  cosines_ = allocate_doubles(2 * count);
  if (cosines_ == nullptr) return false;
  sines_ = cosines_ + count;
  fill_roots(cosines_, sines_, 1, 0, count - 1, period_);
  return true;
}

}  // namespace dsp::fft
