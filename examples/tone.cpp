// The figures of a tone in a recording: frequency, level, harmonics, noise, and what they make of each other.

#include <cstdio>
#include <string>
#include <vector>

#include "dsp/dsp.h"
#include "examples/support/arguments.h"
#include "examples/support/failure.h"
#include "examples/support/json.h"
#include "examples/support/progress.h"
#include "examples/support/recording.h"
#include "examples/support/sample_reader.h"
#include "examples/support/signal.h"
#include "examples/support/tone_figures.h"

using examples::failure;
using examples::not_readable;
using examples::signal;
using examples::tone_report;

namespace {

const std::vector<examples::option> options = examples::with_recording_options({
    {'n', "harmonics", "N", "highest harmonic counted as distortion, up to 100\n(default 10)"},
    {0, "from", "HZ", "lowest frequency at which the tone is looked for"},
    {0, "to", "HZ", "and the highest"},
    {'a', "accuracy", "DB", "error of the level that is tolerated (default 0.002)"},
    {'m', "samples", "N", "samples to take from the start (default: all, at most 4194304)"},
    {0, "json", nullptr, "the figures as one object of JSON, with all digits"},
});

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
    "else, with the bins that tone and harmonics cover filled in. A level that changes along the recording, as it\n"
    "does where another component lies within a bin of the tone, is refused when it changes by more than the accuracy\n"
    "asked for. A component so close that the level hardly changes, or one that folds onto the tone, is read as a\n"
    "part of it.\n"
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

void print(const tone_report &r) {
  for (const tone_report::line &l : r.lines())
    std::printf("%-22s %14s%s%s\n", l.name.c_str(), l.value.c_str(), l.value == "none" ? "" : " ",
                l.value == "none" ? "" : l.unit.c_str());
}

void print_json(const tone_report &r) {
  examples::json out;
  out.add("frequency", r.frequency).add("frequency_error", r.frequency_error);
  out.add("level", r.level).add("level_error", r.level_error).add("harmonics", r.harmonics);
  for (const examples::figure &f : r.figures) out.add(f.member, f.value);
  out.print();
}

int tone_of(const examples::arguments &given) {
  if (given.words().size() != 1) throw failure("one recording is needed; --help tells more");
  const std::string &name = given.words()[0];
  const auto recording = examples::open_recording(given, name);
  signal record;
  const int64_t most = given.integer("samples", 1 << 22, examples::least_tone_samples, 1 << 24);
  examples::progress progress("reading " + name);
  examples::read_record(given, *recording, most, &record, [&](double share) { progress.show(share); });
  const std::string read = examples::channel_read(given, *recording);
  try {
    tone_report r = examples::measure_tone(record, examples::tone_settings_from(given, 1.0 / record.dx));
    r.frequency_error += r.frequency * recording->rate_error();
    given.has("json") ? print_json(r) : print(r);
  } catch (const examples::no_tone &e) {
    throw not_readable(name + ": " + e.what() + e.advice + (read.empty() ? "" : " (this is " + read + ")"));
  }
  if (!read.empty() && !given.has("json")) std::printf("\nread: %s\n", read.c_str());
  return 0;
}

}  // namespace

int main(int argc, char **argv) {
  return examples::run({"dsp-tone", introduction, options, notes}, argc, argv, tone_of);
}
