#include "tests/support/heap.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "dsp/core/heap.h"
#include "tests/support/record.h"

namespace {

struct header {
  std::uint64_t mark;
  std::uint64_t padding;  // keeps malloc's alignment
};

constexpr std::uint64_t allocated = 0x616c6c6f63617465;
constexpr std::uint64_t released = 0x72656c6561736564;

long live = 0;
long requests = 0;
long lost = 0;
long countdown = 0;
bool failing_for_ever = false;
int exemptions = 0;

bool fails() {
  if (exemptions > 0) return false;
  ++requests;
  if (countdown == 0) return false;
  if (countdown > 1) return --countdown, false;
  if (!failing_for_ever) countdown = 0;
  return true;
}

}  // namespace

namespace dsp {

void *heap_allocate(std::size_t bytes) noexcept {
  if (bytes == 0 || fails() || bytes > SIZE_MAX - sizeof(header)) return nullptr;
  auto *h = static_cast<header *>(std::malloc(bytes + sizeof(header)));
  if (h == nullptr) return nullptr;
  ++live;
  h->mark = allocated;
  std::memset(h + 1, 0xa5, bytes);
  return h + 1;
}

void heap_release(void *block) noexcept {
  if (block == nullptr) return;
  header *h = static_cast<header *>(block) - 1;
  if (h->mark != allocated) {
    std::fputs("release of a block that is not allocated\n", stderr);
    std::abort();
  }
  h->mark = released;
  --live;
  std::free(h);
}

void *heap_resize(void *block, std::size_t old_bytes, std::size_t bytes) noexcept {
  void *fresh = heap_allocate(bytes);
  if (block != nullptr && fresh != nullptr) std::memcpy(fresh, block, old_bytes < bytes ? old_bytes : bytes);
  if (block != nullptr && fresh == nullptr) ++lost;
  heap_release(block);
  return fresh;
}

}  // namespace dsp

namespace support {

long heap_live() { return live; }
long heap_requests() { return requests; }
long heap_lost() { return lost; }

void heap_fail(long k, bool for_ever) {
  countdown = k;
  failing_for_ever = for_ever;
}

exempt::exempt() { ++exemptions; }
exempt::~exempt() { --exemptions; }

void sweep_failing_memory(const std::string &name, const std::function<int32_t(record *result)> &run) {
  dsp_free_internal();
  const long before = heap_live();
  record expected;
  ASSERT_EQ(run(&expected), 0) << name;
  const long kept = heap_live() - (expected.capacity > 0 ? 1 : 0);
  EXPECT_EQ((dsp_free_internal(), heap_live() - (expected.capacity > 0 ? 1 : 0)), before) << name << " leaks";
  EXPECT_GE(kept, before) << name;
  const long base = heap_live();
  for (const bool for_ever : {false, true}) {
    for (long k = 1;; ++k) {
      SCOPED_TRACE(name + ", request " + std::to_string(k) + (for_ever ? " and all later ones fail" : " fails"));
      ASSERT_LT(k, 10000);
      const long begin = heap_requests();
      heap_fail(k, for_ever);
      {
        record ignored;
        const int32_t status = run(&ignored);
        heap_fail(0);
        if (heap_requests() - begin < k) {
          EXPECT_EQ(status, 0);
          break;
        }
        EXPECT_EQ(status, -1);
      }
      {
        record again;
        ASSERT_EQ(run(&again), 0);
        EXPECT_TRUE(same(again, expected));
      }
      EXPECT_EQ(dsp_free_internal(), 0);
      EXPECT_EQ(heap_live(), base) << "leak";
    }
    dsp_free_internal();
  }
}

}  // namespace support
