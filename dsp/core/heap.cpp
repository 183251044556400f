#include "dsp/core/heap.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace dsp {
namespace {

constexpr std::size_t alignment = 64;
constexpr std::size_t worth_aligning = 512;  // bytes; below this the padding costs more than it gains

}  // namespace

void *heap_allocate(std::size_t bytes) noexcept {
#if !defined(_WIN32)
  if (bytes >= worth_aligning && bytes <= SIZE_MAX - alignment)  // GCOVR_EXCL_BR_LINE: 64 bits hold the sum
    return std::aligned_alloc(alignment, (bytes + alignment - 1) / alignment * alignment);
#endif
  return std::malloc(bytes);
}

void *heap_resize(void *block, std::size_t old_bytes, std::size_t bytes) noexcept {
  // realloc() may lose the alignment. It is restored when the block grows by half or more: restoring it at every step
  // would copy the whole block at every step.
  if (bytes - old_bytes < old_bytes / 2) return std::realloc(block, bytes);
  void *fresh = heap_allocate(bytes);
  if (fresh == nullptr || block == nullptr) return fresh;  // GCOVR_EXCL_BR_LINE: tests have a heap that fails
  std::memcpy(fresh, block, old_bytes);
  heap_release(block);
  return fresh;
}

void heap_release(void *block) noexcept { std::free(block); }

}  // namespace dsp
