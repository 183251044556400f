// The heap behind signals and tables. Tests link a failing one in place of heap.cpp.
#pragma once

#include <cstddef>

namespace dsp {

// Null when memory runs out. `bytes` is not 0. Larger blocks start on a 64-byte border where the platform's free() can
// release such blocks: transforms run up to twice as fast on them.
void *heap_allocate(std::size_t bytes) noexcept;

// A block of `bytes`, more than before, that begins with what `block` held, which is released; null, and `block`
// untouched, when memory runs out. A null `block` is a fresh allocation.
void *heap_resize(void *block, std::size_t old_bytes, std::size_t bytes) noexcept;

void heap_release(void *block) noexcept;

}  // namespace dsp
