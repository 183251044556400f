#include <cstdlib>
#include <new>

#include "tests/support/heap.h"

namespace {

bool raises = false;

}  // namespace

void *operator new(std::size_t bytes) {
  void *block = raises && support::heap_refuses() ? nullptr : std::malloc(bytes > 0 ? bytes : 1);
  if (block == nullptr) throw std::bad_alloc();
  if (raises) support::heap_count(1);
  return block;
}

void operator delete(void *block) noexcept {
  if (raises && block != nullptr) support::heap_count(-1);
  std::free(block);
}

void operator delete(void *block, std::size_t) noexcept { operator delete(block); }

// The sanitizer's own do not come here.
void *operator new[](std::size_t bytes) { return operator new(bytes); }
void operator delete[](void *block) noexcept { operator delete(block); }
void operator delete[](void *block, std::size_t) noexcept { operator delete(block); }

namespace support {

raising::raising() { raises = true; }
raising::~raising() { raises = false; }

}  // namespace support
