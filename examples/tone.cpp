// The figures of a tone in a recording: frequency, level, harmonics, noise, and what they make of each other. All
// powers are sums over the bins of one spectrum, so they do not depend on where a line lies between the bins.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "dsp/dsp.h"
#include "examples/support/arguments.h"
#include "examples/support/failure.h"
#include "examples/support/recording.h"
#include "examples/support/sample_reader.h"
#include "examples/support/signal.h"

using examples::failure;
using examples::require;
using examples::signal;

namespace {

const std::vector<examples::option> options = {
    {'n', "harmonics", "N", "highest harmonic counted as distortion (default 10)"},
    {'m', "samples", "N", "samples to take from the start (default: all, at most 4194304)"},
    {'c', "channel", "N", "channel of a sound file, from 1; mix: the mean of all (default)"},
    {'r', "rate", "HZ", "sample rate of a text file; makes any file a text file"},
    {'k', "column", "C", "its column: a number from 1 (default 1) or a header's name"},
    {'s', "full-scale", "X", "amplitude that reads 0 dB (default 1)"},
};

const char *const introduction =
    "usage: dsp-tone [OPTION]... RECORDING\n"
    "\n"
    "Measures the strongest tone of a recording, a sound file or a column of numbers: frequency, level, harmonics,\n"
    "distortion and noise.\n"
    "\n";

const char *const notes =
    "\n"
    "Harmonics above half the sample rate are looked for where they fold to. What lies within eight bins of 0 Hz is\n"
    "an offset and counts as nothing. Noise is all else, with the bins that tone and harmonics cover filled in.\n"
    "\n"
    "  dsp-tone sine.wav\n"
    "  dsp-tone --rate 1e6 -k voltage -s 2.5 scope.csv\n"
    "\n"
    "Status 0, or 2 with a line on standard error that says what is wrong.\n";

// Side lobes 147 dB down: what leaks out of a line is less than a 24 bit converter can tell.
constexpr dsp_window_type window = DSP_WINDOW_P601;
constexpr int32_t half_lobe = 8;  // bins: half of the main lobe, and one for a line between two bins
constexpr int32_t least_samples = 32 * half_lobe;

/** The power of every bin: a tone of amplitude A shows (A / full_scale)^2, spread over its line. */
void power_spectrum(const signal &record, double full_scale, signal *power) {
  require(dsph_dft(&record, power, window, 0), "transform the recording");
  require(dspi_magsq(power), "square the spectrum");
  // Zero and half the sample rate have no other side to be doubled for.
  (*power)[0] *= 0.25;
  if (record.length % 2 == 0) (*power)[power->length - 1] *= 0.25;
  require(dspi_scale(power, 1.0 / (full_scale * full_scale)), "scale the spectrum");
}

/** The power of what lies around `centre`, taken out of the spectrum: its bins become NaN. */
double take(signal &power, int32_t centre) {
  double sum = 0.0;
  for (int32_t i = std::max(centre - half_lobe, 0); i <= std::min(centre + half_lobe, power.length - 1); ++i) {
    if (!std::isnan(power[i])) sum += power[i];
    power[i] = std::nan("");
  }
  return sum;
}

/** The place of the tone between the bins: where the powers of its line balance. */
double centre_of(const signal &power, int32_t peak) {
  double sum = 0.0, moment = 0.0;
  for (int32_t i = std::max(peak - half_lobe, 0); i <= std::min(peak + half_lobe, power.length - 1); ++i) {
    sum += power[i];
    moment += (i - peak) * power[i];
  }
  return peak + moment / sum;
}

int32_t strongest(const signal &power) {
  int32_t peak = half_lobe;
  for (int32_t i = half_lobe; i < power.length; ++i)
    if (power[i] > power[peak]) peak = i;
  return peak;
}

double db(double power) { return 10.0 * std::log10(power); }

void show(const char *name, double value, const char *unit) {
  if (std::isfinite(value))
    std::printf("%-22s %14.2f %s\n", name, value, unit);
  else
    std::printf("%-22s %14s\n", name, "none");
}

/** Where harmonic h of a tone at bin `centre` shows, after folding at both ends of n/2 bins. */
int32_t folded(double centre, int h, double n) {
  const double turn = std::fmod(h * centre, n);
  return static_cast<int32_t>(std::lround(turn > n / 2.0 ? n - turn : turn));
}

/** The power of what is left, as if the bins that were taken held as much as the others. */
double noise_of(const signal &power) {
  double sum = 0.0;
  int32_t bins = 0;
  for (int32_t i = 0; i < power.length; ++i) {
    if (std::isnan(power[i])) continue;
    sum += power[i];
    ++bins;
  }
  if (bins == 0) throw failure("no bins are left for the noise: take more samples");
  return sum / bins * power.length;
}

int tone_of(const examples::arguments &given) {
  if (given.words().size() != 1) throw failure("one recording is needed; --help tells more");
  const std::string &name = given.words()[0];
  const auto recording = examples::open_recording(given, name);
  examples::channel_reader channel(*recording, examples::channel_of(given));
  signal record(static_cast<int32_t>(given.integer("samples", 1 << 22, least_samples, 1 << 24)));
  record.length = static_cast<int32_t>(channel.read(record.data, record.length));
  record.dx = 1.0 / recording->rate();
  if (record.length < least_samples)
    throw failure(name + " holds fewer than " + std::to_string(least_samples) + " samples");

  double enbw = 0.0;
  require(dsp_window_enbw(&enbw, window, record.length), "compute the noise bandwidth");
  signal power;
  power_spectrum(record, given.number("full-scale", 1.0, 1e-12, 1e12), &power);
  const int32_t peak = strongest(power);
  if (!(power[peak] > 0.0)) throw failure("there is no tone in " + name);
  const double centre = centre_of(power, peak);
  take(power, 0);
  const double tone = take(power, peak) / enbw;
  std::printf("%-22s %14.6f Hz\n", "frequency", centre * power.dx);
  show("level", db(tone), "dB of full scale");

  double harmonics = 0.0;
  const auto last = static_cast<int>(given.integer("harmonics", 10, 1, 1000));
  for (int h = 2; h <= last; ++h) {
    const double harmonic = take(power, folded(centre, h, record.length)) / enbw;
    harmonics += harmonic;
    if (h <= 5) show(("harmonic " + std::to_string(h)).c_str(), db(harmonic / tone), "dB of the tone");
  }
  const double noise = noise_of(power) / enbw;
  const double unwanted = noise + harmonics;
  show("total distortion", db(harmonics / tone), "dB of the tone");
  show("noise", db(noise), "dB of full scale");
  show("noise density", db(noise / (recording->rate() / 2.0)), "dB of full scale in 1 Hz");
  show("signal to noise", db(tone / noise), "dB");
  show("SINAD", db(tone / unwanted), "dB");
  show("effective bits", (db(1.0 / unwanted) - db(1.5)) / db(4.0), "");
  return 0;
}

}  // namespace

int main(int argc, char **argv) {
  return examples::run({"dsp-tone", introduction, options, notes}, argc, argv, tone_of);
}
