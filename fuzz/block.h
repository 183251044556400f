// Memory of the caller for the library, of exactly the size needed: AddressSanitizer sees every access outside it.
// Without AddressSanitizer it lies between guards, which are checked afterwards.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#if defined(__SANITIZE_ADDRESS__)
#define FUZZ_ADDRESS_SANITIZER
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define FUZZ_ADDRESS_SANITIZER
#endif
#endif

namespace fuzz {

template <class T>
class block {
 public:
  block() = default;
  explicit block(std::size_t size) : memory_(size * sizeof(T) + 2 * guard, mark) {}

  T *data() { return reinterpret_cast<T *>(memory_.data() + guard); }
  std::size_t size() const { return memory_.empty() ? 0 : (memory_.size() - 2 * guard) / sizeof(T); }

  bool is_intact() const {
    const auto is_mark = [](uint8_t b) { return b == mark; };
    return memory_.empty() || (std::all_of(memory_.begin(), memory_.begin() + guard, is_mark) &&
                               std::all_of(memory_.end() - guard, memory_.end(), is_mark));
  }

 private:
#ifdef FUZZ_ADDRESS_SANITIZER
  static constexpr std::ptrdiff_t guard = 0;
#else
  static constexpr std::ptrdiff_t guard = 64;
#endif
  static constexpr uint8_t mark = 0xa5;

  std::vector<uint8_t> memory_;
};

}  // namespace fuzz
