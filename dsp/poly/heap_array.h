// Work memory of one routine: elements without an initial value, released with their scope.
#pragma once

#include <cstddef>
#include <cstdint>

#include "dsp/core/heap.h"

namespace dsp::poly {

template <class T>
class heap_array {
 public:
  explicit heap_array(int64_t count) : data_(allocate(count)) {}
  ~heap_array() { heap_release(data_); }
  heap_array(const heap_array &) = delete;
  heap_array &operator=(const heap_array &) = delete;

  // False when memory ran out.
  explicit operator bool() const { return data_ != nullptr; }
  T *get(int64_t from = 0) const { return data_ != nullptr ? data_ + from : nullptr; }
  T &operator[](int64_t i) const { return data_[i]; }

 private:
  // One element more than asked for: heap_allocate() takes no 0 bytes.
  static T *allocate(int64_t count) {
    const auto elements = static_cast<uint64_t>(count) + 1;
    if (elements > SIZE_MAX / sizeof(T)) return nullptr;  // GCOVR_EXCL_BR_LINE: 64 bits hold the product
    return static_cast<T *>(heap_allocate(static_cast<std::size_t>(elements) * sizeof(T)));
  }

  T *data_;
};

}  // namespace dsp::poly
