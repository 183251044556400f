#pragma once

#include <string>
#include <vector>

#include "dsp/dsp.h"
#include "examples/support/arguments.h"
#include "examples/support/failure.h"

namespace examples {

struct tone_settings {
  double from, to;          // Hz: where the tone is looked for
  double accuracy = 0.002;  // dB: error of the level that is tolerated
  double full_scale = 1.0;  // amplitude that reads 0 dB
  int harmonics = 10;       // the highest that counts as distortion
};

/** What --full-scale, --harmonics, --from, --to and --accuracy say. */
tone_settings tone_settings_from(const arguments &given, double rate);

/** A figure of a report: how it is called for readers and in JSON, and its unit. */
struct figure {
  const char *label, *member;
  double value;
  const char *unit;
};

/** What a tone in a record measures. Levels in dB of full scale; harmonics (from the second on) and distortion in dB of
 * the tone, where minus infinity or NaN is none. */
struct tone_report {
  double frequency, frequency_error, level, level_error;
  std::vector<double> harmonics;
  std::vector<figure> figures;

  struct line {
    std::string name, value, unit;
  };
  /** The figures as they are shown, the value of what is not finite being "none". */
  std::vector<line> lines() const;
};

/** No tone can be read; `advice` continues the sentence by options of dsp-tone that would help. */
struct no_tone : not_readable {
  explicit no_tone(const std::string &what, std::string options = "")
      : not_readable(what), advice(std::move(options)) {}
  std::string advice;
};

constexpr int32_t least_tone_samples = 256;

/** Fits tone and harmonics to a spectrum of the record; the noise is the sum of what else lies in one. */
tone_report measure_tone(const dsp_vec &record, const tone_settings &s);

}  // namespace examples
