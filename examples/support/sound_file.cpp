#include <sndfile.h>

#include <cmath>
#include <cstdio>
#include <sstream>

#include "examples/support/failure.h"
#include "examples/support/input_file.h"
#include "examples/support/sample_reader.h"
#include "examples/support/spool.h"

namespace examples {
namespace {

/** Lengths that a program writes into a header when it does not know them yet. */
bool is_placeholder(long long size) { return (size >= 0x7ffff000LL && size <= 0x7fffffffLL) || size >= 0xfffff000LL; }

/** libsndfile cuts the length of a truncated file silently; its log of the header tells, in lines such as
 * "data : 137090 (should be 49956)". */
bool is_truncated(SNDFILE *file) {
  char log[16384] = "";
  sf_command(file, SFC_GET_LOG_INFO, log, sizeof log);
  std::istringstream lines(log);
  for (std::string line; std::getline(lines, line);) {
    const std::size_t colon = line.find(':');
    long long stated = 0, present = 0;
    if (colon != std::string::npos &&
        std::sscanf(line.c_str() + colon + 1, " %lld (should be %lld)", &stated, &present) == 2 && stated > present &&
        !is_placeholder(stated))
      return true;
  }
  return false;
}

class sound_reader : public sample_reader {
 public:
  explicit sound_reader(const std::string &path) : path_(path) {
    if (path == "-") {
      path_ = "standard input";
      spool_.reset(new_spool());
      fill_spool(stdin, spool_.get());
      file_.reset(sf_open_fd(descriptor_of(spool_.get()), SFM_READ, &info_, SF_FALSE));
    } else {
      readable_size(path);
      file_.reset(sf_open(path.c_str(), SFM_READ, &info_));
    }
    if (!file_) throw failure(path_ + " is no sound file that can be read: " + sf_strerror(nullptr));
    if (info_.frames == SF_COUNT_MAX || is_truncated(file_.get())) throw failure(path_ + " is truncated");
    if (info_.frames < 1) throw failure(path_ + " holds no samples");
  }

  double rate() const override { return info_.samplerate; }
  int channels() const override { return info_.channels; }
  int64_t frames() const override { return info_.frames; }
  int encoding() const { return info_.format & SF_FORMAT_SUBMASK; }
  double progress() const override { return static_cast<double>(done_) / static_cast<double>(info_.frames); }

  int64_t read(double *frames, int64_t count) override {
    const int64_t got = sf_readf_double(file_.get(), frames, count);
    for (int64_t i = 0; i < got * info_.channels; ++i)
      if (!std::isfinite(frames[i]))
        throw failure(path_ + ": sample " + std::to_string(done_ + i / info_.channels + 1) + " is not finite");
    done_ += got;
    if (got < count && done_ < info_.frames) throw failure(path_ + " is damaged or truncated");
    return got;
  }

 private:
  struct closer {
    void operator()(SNDFILE *file) const { sf_close(file); }
    void operator()(std::FILE *file) const { std::fclose(file); }
  };
  std::string path_;
  SF_INFO info_{};
  std::unique_ptr<std::FILE, closer> spool_;  // of standard input
  std::unique_ptr<SNDFILE, closer> file_;
  int64_t done_ = 0;
};

}  // namespace

std::unique_ptr<sample_reader> open_sound(const std::string &path, int *encoding) {
  auto reader = std::make_unique<sound_reader>(path);
  if (encoding) *encoding = reader->encoding();
  return reader;
}

}  // namespace examples
