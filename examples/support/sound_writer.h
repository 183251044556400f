#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

#include "examples/support/output_file.h"

struct sf_private_tag;

namespace examples {

/** How the samples of a sound file are encoded, as libsndfile counts; 0: not known. */
using sound_encoding = int;

/** s16, s24, s32, f32 or f64; all else is a failure. */
sound_encoding encoding_named(const std::string &name);

/** A sound file that appears under its name only when commit() is reached. The name's end tells the format; "-" is a
 * WAV file on standard output. */
class sound_writer {
 public:
  /** In the given encoding, or unless `exactly` in the closest one that the file format has. */
  sound_writer(const std::string &path, sound_encoding encoding, bool exactly, double rate, int channels);
  ~sound_writer();
  sound_writer(const sound_writer &) = delete;
  sound_writer &operator=(const sound_writer &) = delete;

  /** Appends interleaved frames, full scale 1; integer formats clip. */
  void write(const double *frames, int64_t count);
  void commit();

  /** Samples that were beyond full scale, and the largest magnitude of all. */
  int64_t clipped() const { return clipped_; }
  double largest() const { return largest_; }

 private:
  [[noreturn]] void fail(const char *reason) const;

  std::string path_;
  std::unique_ptr<output_file> output_;
  std::FILE *spool_ = nullptr;  // of standard output, since a header is written last
  sf_private_tag *file_ = nullptr;
  int channels_;
  bool clips_ = false;
  int64_t clipped_ = 0;
  double largest_ = 0.0;
};

}  // namespace examples
