// Work memory of one routine: elements without an initial value, released with their scope.
#pragma once

#include <cstddef>
#include <cstdint>

#include "dsp/core/heap.h"

namespace dsp::poly {

template <class T>
class heap_array {
 public:
  explicit heap_array(std::int64_t count) : data_(fits(count) ? allocate(count) : nullptr) {}
  ~heap_array() { heap_release(data_); }
  heap_array(const heap_array &) = delete;
  heap_array &operator=(const heap_array &) = delete;

  // False when memory ran out.
  explicit operator bool() const { return data_ != nullptr; }
  T *get() const { return data_; }
  T &operator[](std::int64_t i) const { return data_[i]; }

 private:
  static constexpr bool fits(std::int64_t count) {
    return static_cast<std::uint64_t>(count) <= SIZE_MAX / sizeof(T) - 1;  // GCOVR_EXCL_BR_LINE: always in 64 bits
  }
  static T *allocate(std::int64_t count) {
    return static_cast<T *>(heap_allocate(static_cast<std::size_t>(count + 1) * sizeof(T)));  // never 0 bytes
  }

  T *data_;
};

}  // namespace dsp::poly
