#include "dsp/fft/circle.h"

#include "dsp/core/heap.h"

namespace dsp::fft {

circle::~circle() { heap_release(cosines_); }

bool circle::build() {
  const int64_t count = period_ / 8 + 1;
  if (static_cast<uint64_t>(count) > SIZE_MAX / (2 * sizeof(double)))
    return false;  // GCOVR_EXCL_BR_LINE: where size_t has 32 bits
  cosines_ = static_cast<double *>(heap_allocate(static_cast<std::size_t>(2 * count) * sizeof(double)));
  if (cosines_ == nullptr) return false;
  sines_ = cosines_ + count;
  fill_roots(cosines_, sines_, 1, 0, count - 1, period_);
  return true;
}

}  // namespace dsp::fft
