// The figures of a tone in a recording: frequency, level, harmonics, noise, and what they make of each other. Tone and
// harmonics are fitted to a spectrum; the noise is the sum of what else lies in one.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "dsp/dsp.h"
#include "examples/support/arguments.h"
#include "examples/support/failure.h"
#include "examples/support/json.h"
#include "examples/support/line_fit.h"
#include "examples/support/progress.h"
#include "examples/support/recording.h"
#include "examples/support/sample_reader.h"
#include "examples/support/signal.h"

using examples::failure;
using examples::not_readable;
using examples::require;
using examples::signal;

namespace {

const std::vector<examples::option> options = {
    {'n', "harmonics", "N", "highest harmonic counted as distortion, up to 100\n(default 10)"},
    {0, "from", "HZ", "lowest frequency at which the tone is looked for"},
    {0, "to", "HZ", "and the highest"},
    {'a', "accuracy", "DB", "error of the level that is tolerated (default 0.002)"},
    {'m', "samples", "N", "samples to take from the start (default: all, at most 4194304)"},
    {'c', "channel", "N", "channel of a sound file, from 1; mix: the mean of all (default)"},
    {'r', "rate", "HZ", "sample rate of a text file (default: from its column of times);\nmakes any file a text file"},
    {'k', "column", "C",
     "its column: a number from 1, or a name of its header\n(default: the only one beside the times)"},
    {'s', "full-scale", "X", "amplitude that reads 0 dB (default 1)"},
    {0, "json", nullptr, "the figures as one object of JSON, with all digits"},
};

const char *const introduction =
    "usage: dsp-tone [OPTION]... RECORDING\n"
    "\n"
    "Measures the strongest tone of a recording, a sound file or a column of numbers: frequency, level, harmonics,\n"
    "distortion and noise.\n"
    "\n";

const char *const notes =
    "\n"
    "The tone is fitted together with its nearest harmonics, an offset and a slope, so that it reads right from 3\n"
    "periods in the recording on, and up to as much below half the sample rate. Harmonics above half the sample rate\n"
    "are looked for where they fold to. What lies within eight bins of 0 Hz is an offset and no noise. Noise is all\n"
    "else, with the bins that tone and harmonics cover filled in.\n"
    "\n"
    "  dsp-tone sine.wav\n"
    "  dsp-tone --rate 1e6 -k voltage -s 2.5 scope.csv\n"
    "  dsp-tone --json --from 500 hum.wav\n"
    "\n"
    "JSON holds frequencies in Hz, levels in dB: level and noise of full scale, harmonics (from the second on) and\n"
    "distortion of the tone.\n"
    "\n"
    "Status 0; 1 if there is no tone, or its level cannot be read to the accuracy asked for; 2 if an option or a file\n"
    "is refused. Either comes with a line on standard error that says why.\n";

// Side lobes 147 dB down: what leaks out of a line is less than a 24 bit converter can tell.
constexpr dsp_window_type window = DSP_WINDOW_P601;
constexpr int32_t half_lobe = 8;  // bins: half of the main lobe, and one for a line between two bins
constexpr int32_t least_samples = 32 * half_lobe;
constexpr double least_periods = 2.9;  // in the record: below, fit and offset cannot be told apart safely

/** The power of every bin: a tone of amplitude A shows (A / full_scale)^2, spread over its line. */
void power_spectrum(const signal &record, double full_scale, signal *power) {
  require(dsph_dft(&record, power, window, 0), "transform the recording");
  require(dspi_magsq(power), "square the spectrum");
  // Zero and half the sample rate have no other side to be doubled for.
  (*power)[0] *= 0.25;
  if (record.length % 2 == 0) (*power)[power->length - 1] *= 0.25;
  require(dspi_scale(power, 1.0 / (full_scale * full_scale)), "scale the spectrum");
}

/** Takes a line around `centre` out of the spectrum: its bins become NaN. */
void take(signal &power, int32_t centre) {
  for (int32_t i = std::max(centre - half_lobe, 0); i <= std::min(centre + half_lobe, power.length - 1); ++i)
    power[i] = std::nan("");
}

std::string text(const char *format, double value) {
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, format, value);
  return buffer;
}

double db(double power) { return 10.0 * std::log10(power); }

/** The power of what is left, as if the bins that were taken held as much as the others; NaN if all were taken. */
double noise_of(const signal &power) {
  double sum = 0.0;
  int32_t bins = 0;
  for (int32_t i = 0; i < power.length; ++i) {
    if (std::isnan(power[i])) continue;
    sum += power[i];
    ++bins;
  }
  return sum / bins * power.length;
}

/** Least samples for so many periods, or as many bins below half the sample rate, of what shows at `distance` now. */
std::string samples_for(double distance, const signal &record) {
  return std::to_string(std::llround(std::ceil(3.0 * record.length / distance)));
}

/** The strongest tone; refuses one that the recording is too short for, or too noisy. */
examples::tone_fit find_tone(const examples::line_fit &lines, const signal &record, const examples::arguments &given,
                             int harmonics) {
  const double highest = 0.5 / record.dx, to_bins = record.dx * record.length;
  const double lo = given.number("from", 0.0, 0.0, highest) * to_bins;
  const double hi = given.number("to", highest, 0.0, highest) * to_bins;
  const double place = lines.strongest(lo, hi);
  if (place < 0.0) throw not_readable("there is no tone");
  const examples::tone_fit tone = lines.tone(place, harmonics);
  const std::string at = text("%.4g Hz", tone.bin / to_bins);
  if (tone.bin < least_periods)
    throw not_readable("the strongest component, near " + at +
                       ", has fewer than 3 periods in the recording; it takes " +
                       (tone.bin > 0.5 ? samples_for(tone.bin, record) + " samples" : "a longer one") +
                       ", or --from to look above it");
  if (lines.half_rate() - tone.bin < least_periods)
    throw not_readable("the strongest component, at " + at + ", is too close to half the sample rate; it takes " +
                       samples_for(std::max(lines.half_rate() - tone.bin, 1e-3), record) +
                       " samples, or a higher sample rate");
  const double error = 20.0 * std::log10(1.0 + tone.amplitude_error / tone.amplitude);
  const double tolerated = given.number("accuracy", 0.002, 1e-9, 10.0);
  if (!(error <= 10.0)) throw not_readable("no tone stands out: the strongest component is at " + at);
  if (error > tolerated)
    throw not_readable("noise or other components around the tone at " + at + " can change its level by " +
                       text("%.2g", error) + " dB; take more samples, or --accuracy " + text("%.1g", 1.5 * error));
  return tone;
}

struct figure {
  const char *label, *member;
  double value;
  const char *unit;
};

std::vector<figure> figures_of(double tone, double harmonics, double noise, double rate) {
  const double unwanted = noise + harmonics;
  return {{"total distortion", "total_distortion", db(harmonics / tone), "dB of the tone"},
          {"noise", "noise", db(noise), "dB of full scale"},
          {"noise density", "noise_density", db(noise / (rate / 2.0)), "dB of full scale in 1 Hz"},
          {"signal to noise", "signal_to_noise", db(tone / noise), "dB"},
          {"SINAD", "sinad", db(tone / unwanted), "dB"},
          {"effective bits", "effective_bits", (db(1.0 / unwanted) - db(1.5)) / db(4.0), ""}};
}

void show(const std::string &name, double value, const char *unit) {
  if (std::isfinite(value))
    std::printf("%-22s %14.*f %s\n", name.c_str(), name == "level" ? 3 : 2, value, unit);
  else
    std::printf("%-22s %14s\n", name.c_str(), "none");
}

struct report {
  double frequency, frequency_error, level, level_error;
  std::vector<double> harmonics;  // in dB of the tone, from the second on; minus infinity or NaN: none
  std::vector<figure> figures;

  void print() const {
    const int decimals = std::clamp(static_cast<int>(std::ceil(-std::log10(frequency_error))), 3, 12);
    std::printf("%-22s %14.*f Hz\n", "frequency", decimals, frequency);
    show("level", level, "dB of full scale");
    for (std::size_t i = 0; i < std::min(harmonics.size(), std::size_t{4}); ++i)
      show("harmonic " + std::to_string(i + 2), harmonics[i], "dB of the tone");
    for (const figure &f : figures) show(f.label, f.value, f.unit);
  }

  void print_json() const {
    examples::json out;
    out.add("frequency", frequency).add("frequency_error", frequency_error);
    out.add("level", level).add("level_error", level_error).add("harmonics", harmonics);
    for (const figure &f : figures) out.add(f.member, f.value);
    out.print();
  }
};

report measure(const signal &record, const examples::arguments &given) {
  const double full_scale = given.number("full-scale", 1.0, 1e-12, 1e12);
  const auto last = static_cast<int>(given.integer("harmonics", 10, 1, 100));
  const examples::line_fit lines(record);
  const examples::tone_fit tone = find_tone(lines, record, given, last);

  double enbw = 0.0;
  require(dsp_window_enbw(&enbw, window, record.length), "compute the noise bandwidth");
  signal power;
  power_spectrum(record, full_scale, &power);
  take(power, 0);
  report r{};
  double harmonics = 0.0;
  const std::vector<double> amplitudes = lines.amplitudes(tone.bin, last);
  for (int h = 1; h <= last; ++h) {
    take(power, static_cast<int32_t>(std::lround(lines.folded(tone.bin, h))));
    if (h == 1) continue;
    const double share = std::pow(amplitudes[static_cast<std::size_t>(h) - 1] / tone.amplitude, 2);
    r.harmonics.push_back(db(share));
    if (share > 0.0) harmonics += share;
  }
  const double to_hz = 1.0 / (record.dx * record.length), level = std::pow(tone.amplitude / full_scale, 2);
  r.frequency = tone.bin * to_hz;
  r.frequency_error = tone.bin_error * to_hz;
  r.level = db(level);
  r.level_error = 2.0 * db(1.0 + tone.amplitude_error / tone.amplitude);
  r.figures = figures_of(level, harmonics * level, noise_of(power) / enbw, 1.0 / record.dx);
  return r;
}

/** Fills the record, or as much of it as there are samples. */
void read_all(const examples::sample_reader &recording, examples::channel_reader &channel, const std::string &name,
              signal *record) {
  examples::progress progress("reading " + name);
  constexpr int64_t at_once = 65536;
  int64_t done = 0;
  for (int64_t got = at_once; got == at_once && done < record->length; done += got) {
    got = channel.read(record->data + done, std::min(at_once, record->length - done));
    progress.show(recording.progress());
  }
  record->length = static_cast<int32_t>(done);
  record->dx = 1.0 / recording.rate();
}

int tone_of(const examples::arguments &given) {
  if (given.words().size() != 1) throw failure("one recording is needed; --help tells more");
  const std::string &name = given.words()[0];
  const auto recording = examples::open_recording(given, name);
  examples::channel_reader channel(*recording, examples::channel_of(given));
  signal record(static_cast<int32_t>(given.integer("samples", 1 << 22, least_samples, 1 << 24)));
  read_all(*recording, channel, name, &record);
  if (record.length < least_samples)
    throw not_readable(name + " holds " + std::to_string(record.length) + " samples; it takes " +
                       std::to_string(least_samples) + " at least");
  const std::string read = examples::channel_read(given, *recording);
  try {
    const report r = measure(record, given);
    if (given.has("json"))
      r.print_json();
    else
      r.print();
  } catch (const not_readable &e) {
    throw not_readable(name + ": " + e.what() + (read.empty() ? "" : " (this is " + read + ")"));
  }
  if (!read.empty() && !given.has("json")) std::printf("\nread: %s\n", read.c_str());
  return 0;
}

}  // namespace

int main(int argc, char **argv) {
  return examples::run({"dsp-tone", introduction, options, notes}, argc, argv, tone_of);
}
