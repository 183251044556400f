#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "examples/support/arguments.h"
#include "examples/support/sample_reader.h"
#include "examples/support/signal.h"

namespace examples {

/** How the power of several blocks becomes one. */
struct averaging {
  const char *name;
  int32_t mode;
  const char *title;
};

struct spectrum_settings {
  int32_t block, active, hop, grid;  // samples: stated, windowed, from block to block, transformed
  dsp_window_type window;
  std::string window_name;
  const averaging *average;
  double exponential = 0.0;  // from this block on, a new one counts 1/exponential; 0: all count the same
  double full_scale = 1.0;   // amplitude that reads 0 dB
};

/** Blocks of the same settings, all of which is windowed, that overlap by half and count the same. */
spectrum_settings half_overlapped(int32_t block, dsp_window_type window);

/** The options that say how to average a spectrum, and what they say: --block, --window, --fraction, --overlap,
 * --average, --exponential. */
std::vector<option> spectrum_options();
spectrum_settings spectrum_settings_from(const arguments &given);

/** The averaged spectrum of a stream: overlapping blocks are windowed, transformed and folded into one average. */
class averaged_spectrum {
 public:
  averaged_spectrum(const spectrum_settings &settings, double rate);

  void add(const double *samples, int64_t count);
  /** Reads what the next block lacks and adds it; false when the recording ends before. */
  bool add_block(channel_reader &channel);

  /** `each` is called with the bins of every block. */
  void watch(std::function<void(const signal &bins)> each) { each_ = std::move(each); }

  int32_t blocks() const { return blocks_; }
  int64_t samples() const { return samples_; }
  /** Samples that complete the next block. */
  int32_t wanted() const { return block_.length - filled_; }
  /** Fails unless there was a block in the recording of this name. */
  void require_block(const std::string &name) const;

  const signal &power() const { return power_; }
  /** The average in dB: a sine of full scale shows 0. */
  void levels(signal *levels) const;

  double rate() const { return 1.0 / block_.dx; }
  double noise_bandwidth() const;  // Hz
  /** One line that tells how the spectrum was made. */
  std::string method() const;

 private:
  void fold();

  spectrum_settings settings_;
  signal block_, bins_, power_, work_;
  std::vector<double> read_;
  std::function<void(const signal &bins)> each_;
  int32_t filled_ = 0, blocks_ = 0;
  int64_t samples_ = 0;
};

}  // namespace examples
