#pragma once

#include <cstdint>
#include <string>

#include "examples/support/output_file.h"

struct sf_private_tag;

namespace examples {

/** A sound file that appears under its name only when commit() is reached. */
class sound_writer {
 public:
  /** Of the same format as the sound file `like`, where this format can take the rate and the channels; otherwise 16
   * bit WAV. */
  sound_writer(const std::string &path, const std::string &like, double rate, int channels);
  ~sound_writer();
  sound_writer(const sound_writer &) = delete;
  sound_writer &operator=(const sound_writer &) = delete;

  /** Appends interleaved frames, full scale 1; integer formats clip. */
  void write(const double *frames, int64_t count);
  void commit();

 private:
  output_file output_;
  sf_private_tag *file_ = nullptr;
};

}  // namespace examples
