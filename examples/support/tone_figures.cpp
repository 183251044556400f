#include "examples/support/tone_figures.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "examples/support/line_fit.h"
#include "examples/support/signal.h"

namespace examples {
namespace {

// Side lobes 147 dB down: what leaks out of a line is less than a 24 bit converter can tell.
constexpr dsp_window_type window = DSP_WINDOW_P601;
constexpr int32_t half_lobe = 8;       // bins: half of the main lobe, and one for a line between two bins
constexpr double least_periods = 2.9;  // in the record: below, fit and offset cannot be told apart safely
static_assert(least_tone_samples == 32 * half_lobe, "the lines leave enough of the spectrum for the noise");

/** The power of every bin: a tone of amplitude A shows (A / full_scale)^2, spread over its line. */
void power_spectrum(const dsp_vec &record, double full_scale, signal *power) {
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

std::string fixed(double value, int decimals) {
  char buffer[400];  // a double can have 309 digits before its point
  const double least = 0.5 * std::pow(10.0, -decimals);
  std::snprintf(buffer, sizeof buffer, "%.*f", decimals, std::abs(value) < least ? 0.0 : value);  // no -0.000
  return std::isfinite(value) ? buffer : "none";
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
std::string samples_for(double distance, const dsp_vec &record) {
  return std::to_string(std::llround(std::ceil(3.0 * record.length / distance)));
}

/** The strongest tone; refuses one that the recording is too short for, or too noisy. */
tone_fit find_tone(const line_fit &fit, const dsp_vec &record, const tone_settings &s) {
  const double to_bins = record.dx * record.length;
  const double place = fit.strongest(s.from * to_bins, s.to * to_bins);
  if (place < 0.0) throw no_tone("there is no tone");
  const tone_fit tone = fit.tone(place, s.harmonics);
  const std::string at = text("%.4g Hz", tone.bin / to_bins);
  if (tone.bin < least_periods)
    throw no_tone("the strongest component, near " + at + ", has fewer than 3 periods in the recording; it takes " +
                      (tone.bin > 0.5 ? samples_for(tone.bin, record) + " samples" : "a longer one"),
                  ", or --from to look above it");
  if (fit.half_rate() - tone.bin < least_periods)
    throw no_tone("the strongest component, at " + at + ", is too close to half the sample rate; it takes " +
                  samples_for(std::max(fit.half_rate() - tone.bin, 1e-3), record) +
                  " samples, or a higher sample rate");
  const double error = 20.0 * std::log10(1.0 + tone.amplitude_error / tone.amplitude);
  if (!(error <= 10.0)) throw no_tone("no tone stands out: the strongest component is at " + at);
  if (error > s.accuracy)
    throw no_tone("noise, other components or unsteadiness of the tone at " + at + " can change its level by " +
                      text("%.2g", error) + " dB; take more samples",
                  ", or --accuracy " + text("%.1g", 1.5 * error));
  return tone;
}

std::vector<figure> figures_of(double tone, double harmonics, double noise, double rate) {
  const double unwanted = noise + harmonics;
  return {{"total distortion", "total_distortion", db(harmonics / tone), "dB of the tone"},
          {"noise", "noise", db(noise), "dB of full scale"},
          {"noise density", "noise_density", db(noise / (rate / 2.0)), "dB of full scale in 1 Hz"},
          {"signal to noise", "signal_to_noise", db(tone / noise), "dB"},
          {"SINAD", "sinad", db(tone / unwanted), "dB"},
          {"effective bits", "effective_bits", (db(1.0 / unwanted) - db(1.5)) / db(4.0), ""}};
}

}  // namespace

tone_settings tone_settings_from(const arguments &given, double rate) {
  tone_settings s{};
  s.full_scale = given.number("full-scale", 1.0, 1e-12, 1e12);
  s.harmonics = static_cast<int>(given.integer("harmonics", 10, 1, 100));
  s.from = given.number("from", 0.0, 0.0, rate / 2.0);
  s.to = given.number("to", rate / 2.0, 0.0, rate / 2.0);
  if (s.from > s.to) throw failure("--from and --to leave no frequency between them");
  s.accuracy = given.number("accuracy", 0.002, 1e-9, 10.0);
  return s;
}

std::vector<tone_report::line> tone_report::lines() const {
  const int decimals = std::clamp(static_cast<int>(std::ceil(-std::log10(frequency_error))), 3, 12);
  std::vector<line> all = {{"frequency", fixed(frequency, decimals), "Hz"},
                           {"level", fixed(level, 3), "dB of full scale"}};
  for (std::size_t i = 0; i < std::min(harmonics.size(), std::size_t{4}); ++i)
    all.push_back({"harmonic " + std::to_string(i + 2), fixed(harmonics[i], 2), "dB of the tone"});
  for (const figure &f : figures) all.push_back({f.label, fixed(f.value, 2), f.unit});
  return all;
}

tone_report measure_tone(const dsp_vec &record, const tone_settings &s) {
  if (record.length < least_tone_samples)
    throw no_tone("it holds " + std::to_string(record.length) + " samples; it takes " +
                  std::to_string(least_tone_samples) + " at least");
  const line_fit fit(record);
  const tone_fit tone = find_tone(fit, record, s);

  double enbw = 0.0;
  require(dsp_window_enbw(&enbw, window, record.length), "compute the noise bandwidth");
  signal power;
  power_spectrum(record, s.full_scale, &power);
  take(power, 0);
  tone_report r{};
  double harmonics = 0.0;
  const std::vector<double> amplitudes = fit.amplitudes(tone.bin, s.harmonics);
  for (int h = 1; h <= s.harmonics; ++h) {
    take(power, static_cast<int32_t>(std::lround(fit.folded(tone.bin, h))));
    if (h == 1) continue;
    const double share = std::pow(amplitudes[static_cast<std::size_t>(h) - 1] / tone.amplitude, 2);
    r.harmonics.push_back(db(share));
    if (share > 0.0) harmonics += share;
  }
  const double to_hz = 1.0 / (record.dx * record.length), level = std::pow(tone.amplitude / s.full_scale, 2);
  r.frequency = tone.bin * to_hz;
  r.frequency_error = tone.bin_error * to_hz;
  r.level = db(level);
  r.level_error = 2.0 * db(1.0 + tone.amplitude_error / tone.amplitude);
  r.figures = figures_of(level, harmonics * level, noise_of(power) / enbw, 1.0 / record.dx);
  return r;
}

}  // namespace examples
