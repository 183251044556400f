#include "examples/support/recording.h"

#include <algorithm>
#include <utility>

#include "examples/support/failure.h"

namespace examples {

std::string extension_of(const std::string &path) {
  const std::size_t name = path.find_last_of("/\\") + 1, dot = path.rfind('.');
  std::string extension = dot == std::string::npos || dot < name ? "" : path.substr(dot);
  for (char &c : extension) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c);
  return extension;
}

std::vector<option> with_recording_options(std::vector<option> own) {
  const std::vector<option> shared = {
      {'c', "channel", "N", "channel of a sound file, from 1; mix: the mean of all (default)"},
      {'r', "rate", "HZ",
       "sample rate of a text file (default: from its column of times);\nmakes any file a text file"},
      {'k', "column", "C",
       "its column: a number from 1, or a name of its header\n(default: the only one beside the times)"},
      {'s', "full-scale", "X", "amplitude that reads 0 dB (default 1)"},
  };
  return joined(std::move(own), shared);
}

std::unique_ptr<sample_reader> open_recording(const arguments &given, const std::string &path) {
  const std::string extension = extension_of(path);
  const bool text = given.has("rate") || given.has("column") || extension == ".csv" || extension == ".tsv" ||
                    extension == ".txt" || extension == ".dat";
  if (!text) return open_sound(path);
  if (path == "-") throw failure("only a sound file is read from standard input; a text file needs a name");
  return open_column(path, given.text("column", ""), given.number("rate", 0.0, 1e-9, 1e15));
}

int channel_of(const arguments &given) {
  return given.text("channel", "mix") == "mix" ? 0 : static_cast<int>(given.integer("channel", 1, 1, 1024));
}

void read_record(const arguments &given, sample_reader &recording, int64_t most, signal *record,
                 const std::function<void(double)> &report) {
  channel_reader channel(recording, channel_of(given));
  constexpr int64_t at_once = 65536;
  std::vector<double> samples;
  for (int64_t got = at_once, done = 0; got == at_once && done < most; done += got) {
    samples.resize(static_cast<std::size_t>(std::min(done + at_once, most)));
    got = channel.read(samples.data() + done, static_cast<int64_t>(samples.size()) - done);
    samples.resize(static_cast<std::size_t>(done + got));
    report(recording.progress());
  }
  record->resize(static_cast<int32_t>(samples.size()));
  std::copy(samples.begin(), samples.end(), record->data);
  record->dx = 1.0 / recording.rate();
}

std::string channel_read(const arguments &given, const sample_reader &recording) {
  const std::string all = std::to_string(recording.channels());
  if (recording.channels() < 2) return recording.what();
  if (const int channel = channel_of(given)) return "channel " + std::to_string(channel) + " of " + all;
  return "the mean of channels 1 to " + all + "; --channel N takes one";
}

}  // namespace examples
