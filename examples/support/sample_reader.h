#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace examples {

/** A recording, read front to back in frames (one sample of each channel). Whatever is wrong with it, a sample that is
 * not finite included, is a failure. */
class sample_reader {
 public:
  virtual ~sample_reader() = default;
  virtual double rate() const = 0;                   // frames a second
  virtual double rate_error() const { return 0.0; }  // relative, where times are rounded
  virtual int channels() const = 0;
  virtual int64_t frames() const = 0;              // -1: known at the end only
  virtual double progress() const = 0;             // the share read so far, 0 ... 1
  virtual std::string what() const { return ""; }  // which part of the file it is, where that needs saying

  /** Reads `count` frames, interleaved; fewer at the end only. */
  virtual int64_t read(double *frames, int64_t count) = 0;
};

/** Any sound file that libsndfile knows, "-" on standard input; integer samples come scaled to full scale 1. A file
 * that is shorter than its header says is refused. *encoding, if not null: how its samples are encoded. */
std::unique_ptr<sample_reader> open_sound(const std::string &path, int *encoding = nullptr);

/** A column of a text file, by number from 1 or by name; empty: the only one beside a time. Commas, semicolons, tabs or
 * blanks separate fields, the same in the whole file; a decimal comma goes with semicolons and tabs. '#' begins a
 * comment; lines before the data are a preamble, which may end in names and units. Values in mV, us and the like are
 * scaled to V and s. `rate` 0: from the column of times. */
std::unique_ptr<sample_reader> open_column(const std::string &path, const std::string &column, double rate);

/** The columns that open_column can read beside the time: their names, or their numbers where they have none. */
std::vector<std::string> columns_of(const std::string &path);

/** One channel of a recording, from 1; channel 0 is the mean of all. */
class channel_reader {
 public:
  channel_reader(sample_reader &source, int channel);
  /** Reads `count` samples; fewer at the end only. */
  int64_t read(double *samples, int64_t count);

 private:
  sample_reader &source_;
  int channel_;
  std::vector<double> frames_;
};

}  // namespace examples
