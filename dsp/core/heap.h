// The heap behind signals and tables. Tests link a failing one in place of heap.cpp.
#pragma once

#include <cstddef>

namespace dsp {

// Allocates; null when memory runs out. `bytes` is not 0. Larger blocks are aligned to 64 bytes where the platform's
// free() accepts aligned blocks: transforms run up to twice as fast on them.
void *heap_allocate(std::size_t bytes) noexcept;

// Grows a block and keeps its contents; null, and `block` untouched, when memory runs out. Allocates when `block` is
// null.
void *heap_resize(void *block, std::size_t old_bytes, std::size_t bytes) noexcept;

void heap_release(void *block) noexcept;

}  // namespace dsp
