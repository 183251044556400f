// Memory for one call at a time, kept between calls: as much as the largest call so far needed. Plain data.
#pragma once

#include <cstddef>
#include <cstdint>

#include "dsp/fft/memory.h"

namespace dsp::fft {

class work_memory {
 public:
  // Room for so many doubles; loses its contents when it grows. Null without memory; the old room is then kept.
  double *at_least(int64_t doubles) { return doubles < room_ ? memory_ : grow(doubles + 1); }

  void release() {
    heap_release(memory_);
    *this = {};
  }

 private:
  [[gnu::noinline]] double *grow(int64_t doubles) {
    double *const grown = allocate_doubles(doubles);
    if (grown == nullptr) return nullptr;
    heap_release(memory_);
    memory_ = grown;
    room_ = doubles;
    return memory_;
  }

  double *memory_;
  int64_t room_;
};

}  // namespace dsp::fft
