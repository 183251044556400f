#include <algorithm>
#include <cmath>

#include "examples/support/failure.h"
#include "examples/support/sample_reader.h"

namespace examples {

constexpr int64_t frames_at_once = 4096;
constexpr double greatest = 1e90;  // sums of squares stay finite

channel_reader::channel_reader(sample_reader &source, int channel)
    : source_(source), channel_(channel), frames_(static_cast<std::size_t>(frames_at_once * source.channels())) {
  if (channel > source.channels())
    throw failure("channel " + std::to_string(channel) + " of a recording that has " +
                  std::to_string(source.channels()));
}

int64_t channel_reader::read(double *samples, int64_t count) {
  const int channels = source_.channels();
  int64_t done = 0;
  while (done < count) {
    const int64_t wanted = std::min(count - done, frames_at_once);
    const int64_t got = source_.read(frames_.data(), wanted);
    for (int64_t i = 0; i < got; ++i) {
      const double *frame = frames_.data() + i * channels;
      double sum = 0.0;
      for (int c = 0; c < channels; ++c) sum += frame[c];
      const double sample = samples[done + i] = channel_ > 0 ? frame[channel_ - 1] : sum / channels;
      if (!(std::abs(sample) <= greatest)) throw failure("the recording has samples beyond 1e90, too large for powers");
    }
    done += got;
    if (got < wanted) break;
  }
  return done;
}

}  // namespace examples
