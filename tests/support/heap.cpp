#include "tests/support/heap.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "dsp/core/heap.h"

// AddressSanitizer is to see who reads or writes a header.
#if __has_include(<sanitizer/asan_interface.h>)
#include <sanitizer/asan_interface.h>
#else
#define ASAN_POISON_MEMORY_REGION(block, bytes)
#define ASAN_UNPOISON_MEMORY_REGION(block, bytes)
#endif

namespace {

struct header {
  uint64_t mark;
  uint64_t bytes;  // behind the header; both keep malloc's alignment
};

constexpr uint64_t allocated = 0x616c6c6f63617465;
constexpr uint64_t released = 0x72656c6561736564;

std::size_t limit = SIZE_MAX - sizeof(header);
long live = 0;
long requests = 0;
long lost = 0;
long countdown = 0;
bool failing_for_ever = false;
int exemptions = 0;

// The header of a block that is allocated, or null. It can be read until the caller hides it again.
header *opened(void *block) {
  header *h = static_cast<header *>(block) - 1;
  ASAN_UNPOISON_MEMORY_REGION(h, sizeof(header));
  return h->mark == allocated ? h : nullptr;
}

void *hidden(header *h) {
  ASAN_POISON_MEMORY_REGION(h, sizeof(header));
  return h + 1;
}

}  // namespace

namespace dsp {

void *heap_allocate(std::size_t bytes) noexcept {
  if (bytes == 0 || support::heap_refuses() || bytes > limit) return nullptr;
  auto *h = static_cast<header *>(std::malloc(bytes + sizeof(header)));
  if (h == nullptr) return nullptr;
  ++live;
  *h = {allocated, bytes};
  std::memset(h + 1, 0xa5, bytes);
  return hidden(h);
}

void heap_release(void *block) noexcept {
  if (block == nullptr) return;
  header *h = opened(block);
  if (h == nullptr) {
    std::fputs("release of a block that is not allocated\n", stderr);
    std::abort();
  }
  h->mark = released;
  --live;
  std::free(h);
}

void *heap_resize(void *block, std::size_t old_bytes, std::size_t bytes) noexcept {
  void *fresh = heap_allocate(bytes);
  if (block != nullptr && fresh != nullptr) std::memcpy(fresh, block, old_bytes);
  if (block != nullptr && fresh == nullptr) ++lost;
  heap_release(block);
  return fresh;
}

}  // namespace dsp

namespace support {

bool heap_refuses() {
  if (exemptions > 0) return false;
  ++requests;
  if (countdown == 0) return false;
  if (countdown > 1) return --countdown, false;
  if (!failing_for_ever) countdown = 0;
  return true;
}

void heap_count(int blocks) { live += blocks; }

long heap_live() { return live; }
long heap_requests() { return requests; }
long heap_lost() { return lost; }

std::size_t heap_size(double *block) {
  header *h = opened(block);
  const std::size_t bytes = h != nullptr ? static_cast<std::size_t>(h->bytes) : 0;
  if (h != nullptr) hidden(h);
  return bytes;
}

void heap_limit(std::size_t bytes) { limit = bytes; }

void heap_fail(long k, bool for_ever) {
  countdown = k;
  failing_for_ever = for_ever;
}

exempt::exempt() { ++exemptions; }
exempt::~exempt() { --exemptions; }

}  // namespace support
