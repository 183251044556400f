// A growing list of tables, each built once for its key. Plain data: nothing runs at load or unload.
#pragma once

#include <cstddef>
#include <cstdint>

#include "dsp/fft/memory.h"

namespace dsp::fft {

template <class Element>
struct table_cache {
  struct entry {
    Element *table;
    int64_t key;
  };

  entry *entries;
  int32_t count;
  int32_t capacity;

  // The key's table. A new key gets one of `elements` elements, which `fill` (bool(Element *)) fills. Null when memory
  // runs out or `fill` returns false; the cache then holds what it held before.
  template <class Fill>
  const Element *find_or_build(int64_t key, int64_t elements, const Fill &fill) {
    for (int32_t i = 0; i < count; ++i)
      if (entries[i].key == key) return entries[i].table;
    if (!make_room()) return nullptr;
    auto *table = static_cast<Element *>(allocate(static_cast<uint64_t>(elements) * sizeof(Element)));
    if (table == nullptr) return nullptr;
    if (!fill(table)) {
      heap_release(table);
      return nullptr;
    }
    entries[count++] = {table, key};
    return table;
  }

  void release() {
    for (int32_t i = 0; i < count; ++i) heap_release(entries[i].table);
    heap_release(entries);
    *this = {};
  }

 private:
  bool make_room() {
    if (count < capacity) return true;
    constexpr int32_t step = 8;
    auto *grown = static_cast<entry *>(allocate(static_cast<uint64_t>(capacity + step) * sizeof(entry)));
    if (grown == nullptr) return false;
    for (int32_t i = 0; i < count; ++i) grown[i] = entries[i];
    heap_release(entries);
    entries = grown;
    capacity += step;
    return true;
  }
};

}  // namespace dsp::fft
