// The tables of the lengths used last, one block of memory for each length. Plain data: nothing runs at load or unload.
#pragma once

#include <cstddef>
#include <cstdint>

#include "dsp/fft/memory.h"

namespace dsp::fft {

constexpr uint64_t bytes_to_keep = SIZE_MAX > UINT32_MAX ? 256u << 20 : 32u << 20;

// Contents is plain data whose pointers lead into the block. Holds at most `Most` entries, and at most `MostBytes`
// bytes unless a single entry is larger.
template <class Contents, int32_t Most = 16, uint64_t MostBytes = bytes_to_keep>
class recent {
 public:
  Contents *find(int64_t key) {
    if (slots_[newest_].block != nullptr && slots_[newest_].key == key) return &slots_[newest_].contents;
    for (int32_t i = 0; i < Most; ++i)
      if (slots_[i].block != nullptr && slots_[i].key == key) return touch(i);
    return nullptr;
  }

  // Adds a key with `bytes` of memory at *block, and drops the entries unused for longest where a limit is exceeded.
  // Null without memory; nothing is dropped then.
  Contents *add(int64_t key, uint64_t bytes, void **block) {
    *block = allocate(bytes);
    if (*block == nullptr) return nullptr;
    const int32_t free = make_room(bytes);
    slots_[free].key = key;
    slots_[free].bytes = bytes;
    slots_[free].block = *block;
    return touch(free);
  }

  // Takes back the last `add`.
  void remove_newest() { drop(&slots_[newest_]); }

  void release() {
    for (slot &s : slots_) drop(&s);
    *this = {};
  }

 private:
  struct slot {
    int64_t key;
    uint64_t bytes;
    uint64_t used;
    void *block;  // null: free
    Contents contents;
  };

  Contents *touch(int32_t i) {
    newest_ = i;
    slots_[i].used = ++clock_;
    return &slots_[i].contents;
  }

  static void drop(slot *s) {
    heap_release(s->block);
    *s = {};
  }

  slot *oldest() {
    slot *found = nullptr;
    for (slot &s : slots_)
      if (s.block != nullptr && (found == nullptr || s.used < found->used)) found = &s;
    return found;
  }

  int32_t make_room(uint64_t bytes) {
    for (;;) {
      uint64_t held = bytes;
      int32_t free = Most;
      for (int32_t i = 0; i < Most; ++i) {
        held += slots_[i].bytes;
        if (slots_[i].block == nullptr) free = i;
      }
      slot *const last = oldest();
      if (free < Most && (held <= MostBytes || last == nullptr)) return free;
      drop(last);
    }
  }

  slot slots_[Most];
  int32_t newest_;
  uint64_t clock_;
};

}  // namespace dsp::fft
