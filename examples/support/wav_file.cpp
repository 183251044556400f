// Sound files without libsndfile: WAV of any depth.

#include <cmath>
#include <cstring>
#include <istream>

#include "examples/support/failure.h"
#include "examples/support/input_file.h"
#include "examples/support/sample_reader.h"

namespace examples {
namespace {

using bytes = const unsigned char *;

/** Numbers as they lie in the file, which begins with the least byte as this machine does. */
template <class T>
void scaled(bytes from, int64_t count, double full_scale, double *samples) {
  for (int64_t i = 0; i < count; ++i, from += sizeof(T)) {
    T value;
    std::memcpy(&value, from, sizeof value);
    samples[i] = value / full_scale;
  }
}

void scaled_bytes(bytes from, int64_t count, double full_scale, double *samples) {
  for (int64_t i = 0; i < count; ++i) samples[i] = (from[i] - full_scale) / full_scale;
}

void scaled_triples(bytes from, int64_t count, double full_scale, double *samples) {
  for (int64_t i = 0; i < count; ++i, from += 3) {
    const auto high = static_cast<signed char>(from[2]);
    samples[i] = (high * 65536 + from[1] * 256 + from[0]) / full_scale;
  }
}

constexpr int integers = 1, floats = 3, extensible = 0xfffe;

struct encoding {
  int format, bits;
  double full_scale;
  void (*samples)(bytes from, int64_t count, double full_scale, double *samples);
};
const encoding encodings[] = {
    {integers, 8, 128.0, scaled_bytes},        {integers, 16, 32768.0, scaled<int16_t>},
    {integers, 24, 8388608.0, scaled_triples}, {integers, 32, 2147483648.0, scaled<int32_t>},
    {floats, 32, 1.0, scaled<float>},          {floats, 64, 1.0, scaled<double>},
};

class wav_reader : public sample_reader {
 public:
  explicit wav_reader(const std::string &path) : path_(path), size_(readable_size(path)), file_(open_input(path)) {
    char form[4] = "";
    if (text(4) != "RIFF" || !file_->read(form, 4) || text(4) != "WAVE")
      throw failure(path_ + " is no WAV file, the only kind of sound that is read here");
    const int64_t data = find_data();
    const int64_t present = size_ - at_;
    if (data > present && data < 0x7ffff000) throw failure(path_ + " is truncated");  // from there on: not known
    frame_ = channels_ * encoding_->bits / 8;
    frames_ = std::min(data, present) / frame_;
    if (frames_ < 1) throw failure(path_ + " holds no samples");
  }

  double rate() const override { return rate_; }
  int channels() const override { return channels_; }
  int64_t frames() const override { return frames_; }
  double progress() const override { return static_cast<double>(done_) / static_cast<double>(frames_); }

  int64_t read(double *samples, int64_t count) override {
    const int64_t got = std::min(count, frames_ - done_), numbers = got * channels_;
    raw_.resize(static_cast<std::size_t>(got * frame_));
    if (!file_->read(raw_.data(), got * frame_)) throw failure(path_ + " is truncated");
    encoding_->samples(reinterpret_cast<bytes>(raw_.data()), numbers, encoding_->full_scale, samples);
    for (int64_t i = 0; i < numbers; ++i)
      if (!std::isfinite(samples[i]))
        throw failure(path_ + ": sample " + std::to_string(done_ + i / channels_ + 1) + " is not finite");
    done_ += got;
    return got;
  }

 private:
  std::string text(std::size_t length) {
    std::string t(length, '\0');
    file_->read(&t[0], static_cast<std::streamsize>(length));
    at_ += static_cast<int64_t>(length);
    return t;
  }

  uint32_t number(std::size_t length) {
    uint32_t value = 0, place = 1;
    for (const char c : text(length)) value += place * static_cast<unsigned char>(c), place <<= 8;
    return value;
  }

  /** Reads the format on the way to the samples; returns how many bytes of them are stated. */
  int64_t find_data() {
    constexpr int most_chunks = 1000;
    at_ = 12;
    for (int chunk = 0; chunk < most_chunks && at_ + 8 <= size_; ++chunk) {
      const std::string name = text(4);
      const int64_t length = number(4), end = at_ + length + length % 2;
      if (name == "data" && encoding_) return length;
      if (name == "data" || (name == "fmt " && (length < 16 || at_ + length > size_))) break;
      if (name == "fmt ") read_format(length);
      file_->ignore(end - at_);
      at_ = end;
    }
    throw failure(path_ + " is no complete WAV file: its format or its samples are missing");
  }

  void read_format(int64_t length) {
    auto format = static_cast<int>(number(2));
    channels_ = static_cast<int>(number(2));
    rate_ = number(4);
    number(4), number(2);
    const auto bits = static_cast<int>(number(2));
    if (format == extensible && length >= 26) number(4), number(4), format = static_cast<int>(number(2));
    for (const encoding &e : encodings)
      if (e.format == format && e.bits == bits) encoding_ = &e;
    if (!encoding_)
      throw failure(path_ + " has samples of format " + std::to_string(format) + " with " + std::to_string(bits) +
                    " bits, which are not read here");
    if (channels_ < 1 || channels_ > 1024 || rate_ < 1.0)
      throw failure(path_ + " states " + std::to_string(channels_) + " channels at " +
                    std::to_string(std::lround(rate_)) + " Hz");
  }

  std::string path_;
  int64_t size_;
  std::unique_ptr<std::istream> file_;
  int64_t at_ = 0, frames_ = 0, frame_ = 0, done_ = 0;
  int channels_ = 0;
  double rate_ = 0.0;
  const encoding *encoding_ = nullptr;
  std::vector<char> raw_;
};

}  // namespace

std::unique_ptr<sample_reader> open_sound(const std::string &path, int *) { return std::make_unique<wav_reader>(path); }

}  // namespace examples
