// Memory that a family's routines lend each other's calls: as much as the largest has asked for. Plain data.
#pragma once

#include <cstddef>
#include <cstdint>

#include "dsp/fft/memory.h"

namespace dsp::fft {

class work_memory {
 public:
  // Room for so many doubles, contents lost when it grows. Null, with the old room kept, without memory.
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
