#include "examples/support/averaged_spectrum.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>

namespace examples {
namespace {

const averaging averagings[] = {
    {"power", DSP_AVG_MEAN, "mean power"},
    {"max", DSP_AVG_MAX_HOLD, "maximum"},
    {"min", DSP_AVG_MIN_HOLD, "minimum"},
    {"geometric", DSP_AVG_GEOMETRIC, "geometric mean"},
    {"harmonic", DSP_AVG_HARMONIC, "harmonic mean"},
    {"last", DSP_AVG_REPLACE, "last block"},
};

const averaging *averaging_of(const std::string &name) {
  for (const averaging &a : averagings)
    if (name == a.name) return &a;
  throw failure("--average: '" + name + "' is not one of power, max, min, geometric, harmonic, last");
}

int32_t power_of_two_from(int32_t n) {
  int32_t power = 1;
  while (power < n) power *= 2;
  return power;
}

std::string general(double value) {
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, "%.4g", value);
  return buffer;
}

}  // namespace

std::vector<option> spectrum_options() {
  return {
      {'b', "block", "N", "samples of a block (default 4096)"},
      {'w', "window", "NAME", "window (default Gausstop); see below"},
      {'f', "fraction", "F",
       "active part of a block, 0 ... 1 (default 1); zeros fill the\nrest and interpolate the spectrum"},
      {'v', "overlap", "F", "share that a block has in common with the next one,\n0 ... 0.99 (default 0.75)"},
      {'a', "average", "MODE", "power, max, min, geometric, harmonic or last (default power)"},
      {'e', "exponential", "N", "from block N on, a new one counts 1/N: old ones fade"},
  };
}

spectrum_settings half_overlapped(int32_t block, dsp_window_type window) {
  return {block, block, std::max(block / 2, 1), power_of_two_from(block), window, "", averagings, 0.0, 1.0};
}

spectrum_settings spectrum_settings_from(const arguments &given) {
  spectrum_settings s{};
  s.block = static_cast<int32_t>(given.integer("block", 4096, 16, 1 << 24));
  const double fraction = given.number("fraction", 1.0, 0.001, 1.0);
  s.active = std::max(static_cast<int32_t>(std::lround(fraction * s.block)), 8);
  s.grid = power_of_two_from(s.block);
  s.hop = std::max(static_cast<int32_t>(std::lround((1.0 - given.number("overlap", 0.75, 0.0, 0.99)) * s.active)), 1);
  s.window_name = given.text("window", "Gausstop");
  if (dsp_window_from_str(s.window_name.c_str(), &s.window) != 0)
    throw failure("--window: '" + s.window_name + "' is unknown; --help lists some");
  s.average = averaging_of(given.text("average", "power"));
  s.exponential = static_cast<double>(given.integer("exponential", 0, 1, std::numeric_limits<int32_t>::max()));
  s.full_scale = given.number("full-scale", 1.0, 1e-12, 1e12);
  return s;
}

averaged_spectrum::averaged_spectrum(const spectrum_settings &settings, double rate)
    : settings_(settings), block_(settings.active) {
  block_.dx = 1.0 / rate;
}

void averaged_spectrum::add(const double *samples, int64_t count) {
  while (count > 0) {
    const auto taken = static_cast<int32_t>(std::min<int64_t>(wanted(), count));
    std::memcpy(block_.data + filled_, samples, static_cast<std::size_t>(taken) * sizeof(double));
    filled_ += taken;
    samples_ += taken;
    samples += taken;
    count -= taken;
    if (wanted() == 0) fold();
  }
}

bool averaged_spectrum::add_block(channel_reader &channel) {
  const int32_t lacking = wanted();
  read_.resize(static_cast<std::size_t>(lacking));
  const int64_t got = channel.read(read_.data(), lacking);
  add(read_.data(), got);
  return got == lacking;
}

void averaged_spectrum::fold() {
  const double fraction = static_cast<double>(settings_.active) / settings_.grid;
  require(dsph_fft(&block_, &bins_, settings_.grid, fraction, settings_.window, 0), "transform a block");
  blocks_ += blocks_ < std::numeric_limits<int32_t>::max();
  const int32_t flags = settings_.average->mode | DSP_AVG_POWER | (settings_.exponential > 0.0 ? DSP_AVG_LIMIT : 0);
  require(dsph_avg(&bins_, &power_, &work_, flags, blocks_, 0, -1.0, settings_.exponential), "average a spectrum");
  if (each_) each_(bins_);
  filled_ = settings_.active - settings_.hop;
  std::memmove(block_.data, block_.data + settings_.hop, static_cast<std::size_t>(filled_) * sizeof(double));
}

void averaged_spectrum::require_block(const std::string &name) const {
  if (blocks_ == 0)
    throw failure(name + " holds " + std::to_string(filled_) + " samples, fewer than a block of " +
                  std::to_string(settings_.active) + "; see --block");
}

void averaged_spectrum::levels(signal *levels) const {
  require(dsp_copy(levels, &power_), "copy the spectrum");
  // The single-sided spectrum doubles every amplitude, but zero and half the sample rate have no other side.
  (*levels)[0] *= 0.25;
  (*levels)[levels->length - 1] *= 0.25;
  require(dspi_scale(levels, 1.0 / (settings_.full_scale * settings_.full_scale)), "scale the spectrum");
  require(dspi_db(levels, 10.0), "convert the spectrum to dB");
}

double averaged_spectrum::noise_bandwidth() const {
  double bins = 0.0;
  require(dsp_window_enbw(&bins, settings_.window, settings_.active), "compute the noise bandwidth");
  return bins * rate() / settings_.active;
}

std::string averaged_spectrum::method() const {
  const double overlap = 100.0 * (settings_.active - settings_.hop) / settings_.active;
  return std::to_string(blocks_) + (blocks_ == 1 ? " block of " : " blocks of ") + std::to_string(settings_.active) +
         ", overlap " + std::to_string(std::lround(overlap)) + " %, " + settings_.average->title + ", window " +
         settings_.window_name + ", bins " + general(power_.dx) + " Hz, ENBW " + general(noise_bandwidth()) + " Hz";
}

}  // namespace examples
