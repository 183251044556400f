// What a byte string says: small numbers, lengths, flags and doubles, with a taste for the hostile ones. Past its end
// it reads as zeros, so that every string means something.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <limits>

namespace fuzz {

class input {
 public:
  input(const uint8_t *bytes, std::size_t size) : next_(bytes), end_(bytes + size) {}

  bool is_empty() const { return next_ == end_; }
  uint8_t byte() { return is_empty() ? uint8_t{0} : *next_++; }
  int pick(int n) { return byte() % n; }
  int32_t below(int32_t n) { return raw<uint16_t>() % n; }

  // Mostly small enough to be a mode, a flag or a count; sometimes the values at which counting goes wrong.
  int32_t integer() {
    static constexpr int32_t hostile[] = {-1,      -2,         1 << 28,       (1 << 28) + 1, 1 << 29,
                                          1 << 30, INT32_MAX,  INT32_MAX - 1, INT32_MIN,     INT32_MIN + 1,
                                          1 << 16, -(1 << 16), 100,           2048,          2049,
                                          4096,    0x55555555};
    const int choice = byte();
    if (choice < 192) return choice % 64;
    if (choice < 224) return static_cast<int32_t>(raw<uint16_t>());
    if (choice < 240) return hostile[pick(static_cast<int>(std::size(hostile)))];
    return raw<int32_t>();
  }

  // A number of samples that are really there.
  int32_t length() {
    static constexpr int32_t noted[] = {0, 1, 2, 3, 64, 100, 127, 128, 129, 256, 500, 511, 512, 1024, 2048, 2100};
    const int choice = byte();
    return choice < 192 ? choice % 48 : noted[choice % 16];
  }

  double number() {
    using limits = std::numeric_limits<double>;
    static constexpr double noted[] = {0.0,
                                       -0.0,
                                       limits::quiet_NaN(),
                                       limits::infinity(),
                                       -limits::infinity(),
                                       limits::denorm_min(),
                                       -limits::denorm_min(),
                                       limits::min(),
                                       limits::max(),
                                       -limits::max(),
                                       limits::epsilon(),
                                       1e100,
                                       -1e100,
                                       1e-100,
                                       1e200,
                                       230.25850929940458,
                                       2147483648.0,
                                       -2147483649.0,
                                       9007199254740992.0,
                                       1e19,
                                       3.141592653589793,
                                       -3.141592653589793,
                                       0.5,
                                       1.0 / 3.0};
    const int choice = byte();
    if (choice < 96) return (choice - 32) / 8.0;
    if (choice < 160) return raw<int16_t>() / 256.0;
    if (choice < 224) return noted[pick(static_cast<int>(std::size(noted)))];
    if (choice < 232)
      return std::nextafter(choice % 2 ? 1e100 : -1e100, choice % 4 < 2 ? 0.0 : choice % 2 ? 2e100 : -2e100);
    if (choice < 240) return std::ldexp(1.0, static_cast<int8_t>(byte()) * 8);
    return raw<double>();
  }

  float single() {
    using limits = std::numeric_limits<float>;
    static constexpr float noted[] = {0.0f, limits::quiet_NaN(), limits::infinity(), limits::denorm_min(),
                                      limits::max()};
    const int choice = byte();
    return choice < 192 ? static_cast<float>(choice - 96) / 8.0f : noted[choice % 5];
  }

  // n doubles from few bytes: an endless pseudo-random sequence, with some values read one by one in between.
  void fill(double *x, int32_t n) {
    const unsigned kind = byte();
    const double scale = kind % 2 ? number() : 1.0;
    uint64_t state = kind;
    for (int32_t i = 0; i < n; ++i) {
      state = state * 6364136223846793005u + 1442695040888963407u;
      const double noise = static_cast<double>(static_cast<int64_t>(state)) * 0x1p-63;
      const double base[] = {noise, static_cast<double>(i), 1.0, static_cast<double>(i % 5) - 2.0};
      x[i] = scale * base[kind / 2 % 4];
    }
    for (unsigned pokes = kind / 8 % 8; pokes > 0 && n > 0; --pokes) {
      const int32_t at = raw<uint16_t>() % n;
      x[at] = number();
    }
  }

 private:
  template <class T>
  T raw() {
    uint8_t bytes[sizeof(T)];
    for (uint8_t &b : bytes) b = byte();
    T value;
    std::memcpy(&value, bytes, sizeof(T));
    return value;
  }

  const uint8_t *next_;
  const uint8_t *end_;
};

}  // namespace fuzz
