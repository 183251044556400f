// What the programs compute, for the page: bench_run() takes the words of a command line, which begin with a task, and
// answers with an object of JSON and columns of numbers. A failure is -1 and a sentence.

#include <algorithm>
#include <cmath>
#include <cstring>
#include <exception>
#include <new>

#include "examples/page/waterfall.h"
#include "examples/support/averaged_spectrum.h"
#include "examples/support/json.h"
#include "examples/support/one_port_figures.h"
#include "examples/support/peaks.h"
#include "examples/support/recording.h"
#include "examples/support/tone_figures.h"

namespace {

using namespace examples;

std::string text;                          // the answer, or why there is none
std::vector<std::vector<double>> columns;  // belong to the answer
std::vector<double> input;                 // samples that the page brings

/** A spectrum on the way: of a recording, or of samples that the page brings. */
struct measurement {
  explicit measurement(const arguments &given) : settings(spectrum_settings_from(given)) {
    if (!given.words().empty()) recording = open_recording(given, given.words()[0]);
    if (recording) channel = std::make_unique<channel_reader>(*recording, channel_of(given));
    const double rate = recording ? recording->rate() : given.number("rate", 0.0, 1.0, 1e9);
    spectrum = std::make_unique<averaged_spectrum>(settings, rate);
    rows = std::make_unique<waterfall>(recording ? 1 : 8, recording != nullptr);
    spectrum->watch([this](const signal &bins) { rows->add(bins); });
  }

  spectrum_settings settings;
  std::unique_ptr<sample_reader> recording;
  std::unique_ptr<channel_reader> channel;
  std::unique_ptr<averaged_spectrum> spectrum;
  std::unique_ptr<waterfall> rows;
};
std::unique_ptr<measurement> measured;

json start(const arguments &given) {
  measured = std::make_unique<measurement>(given);
  return json();
}

/** Reads on for a while. */
json step(const arguments &given) {
  averaged_spectrum &spectrum = *measured->spectrum;
  for (const int64_t enough = spectrum.samples() + (1 << 19); spectrum.samples() < enough;)
    if (!spectrum.add_block(*measured->channel)) {
      spectrum.require_block(given.words().at(0));
      return json().add("progress", 1.0);
    }
  return json().add("progress", std::min(measured->recording->progress(), 0.999));
}

json add_input(const arguments &) {
  measured->spectrum->add(input.data(), static_cast<int64_t>(input.size()));
  return json().add("blocks", measured->spectrum->blocks());
}

/** The levels, the rows of the waterfall since the last answer, and the strongest peaks. */
json spectrum(const arguments &) {
  const averaged_spectrum &spectrum = *measured->spectrum;
  const spectrum_settings &s = measured->settings;
  signal levels;
  spectrum.levels(&levels);
  columns.emplace_back(levels.data, levels.data + levels.length);
  std::vector<std::string> lines;
  for (const peak &p : find_peaks(levels, window_line(s.window, s.active, s.grid), 0.0, spectrum.rate() / 2.0, 10))
    lines.push_back(text_of(p, levels.dx).frequency + "\t" + text_of(p, levels.dx).level);
  json out;
  out.add("dx", levels.dx).add("rate", spectrum.rate()).add("enbw", spectrum.noise_bandwidth()).add("peaks", lines);
  out.add("method", spectrum.method()).add("samples", static_cast<double>(spectrum.samples()));
  waterfall &rows = *measured->rows;
  out.add("row_seconds", rows.blocks_per_row() * s.hop / spectrum.rate()).add("row_dx", rows.bin_spacing());
  for (std::vector<double> &row : rows.take_rows()) columns.push_back(std::move(row));
  return out;
}

/** The columns of a table, or how many channels a sound has. */
json about(const arguments &given) {
  const std::string &name = given.words().at(0);
  if (given.has("column")) return json().add("names", columns_of(name));
  return json().add("channels", open_sound(name)->channels());
}

/** Reads as many samples as dsp-tone takes; returns the relative error of their rate. */
double read_samples(const arguments &given, signal *record) {
  const auto recording = open_recording(given, given.words().at(0));
  read_record(given, *recording, 1 << 22, record, [](double) {});
  return recording->rate_error();
}

json samples(const arguments &given) {
  signal record;
  read_samples(given, &record);
  columns.emplace_back(record.data, record.data + record.length);
  return json().add("rate", 1.0 / record.dx);
}

json tone(const arguments &given) {
  signal record;
  const double rate_error = read_samples(given, &record);
  std::vector<std::string> rows;
  tone_report report = measure_tone(record, tone_settings_from(given, 1.0 / record.dx));
  report.frequency_error += report.frequency * rate_error;
  for (const auto &l : report.lines()) rows.push_back(l.name + "\t" + l.value + "\t" + l.unit);
  return json().add("rows", rows);
}

/** Real and imaginary parts in turn. */
std::vector<double> numbers(const std::vector<dsp_complex> &s) { return {&s.front().re, &s.back().im + 1}; }

/** A calibration by the seven files of dsp-oneport, or a simulated one. */
json one_port(const arguments &given) {
  reflection truth;
  const calibration_set set =
      given.words().empty() ? simulate_reflectometer(401, 70.0, 1, &truth) : read_set(given.words());
  require_three_standards(set);
  const error_terms e = terms_of(set);
  const reflection device = corrected(set.device, e);
  const std::vector<double> level = formatted(DSP_FORMAT_LEVEL, device.s);
  const auto least = static_cast<std::size_t>(std::min_element(level.begin(), level.end()) - level.begin());
  const auto format = static_cast<uint32_t>(given.integer("format", DSP_FORMAT_LEVEL, 0, 100));
  columns = {device.frequency, formatted(format, device.s), formatted(format, set.device.s), {}, {}, {}};
  const std::vector<dsp_complex> *const terms[] = {&e.directivity, &e.source_match, &e.tracking};
  for (std::size_t k = 0; k < 3; ++k) columns[3 + k] = formatted(DSP_FORMAT_LEVEL, *terms[k]);
  columns.insert(columns.end(), {numbers(device.s), numbers(set.device.s)});
  std::vector<std::string> lines;
  const auto tell = [&](const one_port_figure &f) { lines.push_back(f.label + ("\t" + f.text())); };
  for (const one_port_figure &f : figures_of_terms(e)) tell(f);
  lines.push_back("least reflection at\t" + hertz(device.frequency[least]));
  for (const one_port_figure &f : figures_of_device(device, least)) tell(f);
  return json().add("rows", lines);
}

const struct {
  const char *name;
  json (*run)(const arguments &given);
} tasks[] = {{"about", about},       {"start", start}, {"step", step},       {"add_input", add_input},
             {"spectrum", spectrum}, {"tone", tone},   {"samples", samples}, {"one_port", one_port}};

/** The words of a line, which ends them in place. */
std::vector<char *> words_of(char *line) {
  std::vector<char *> words;
  for (char *word = std::strtok(line, "\n"); word; word = std::strtok(nullptr, "\n")) words.push_back(word);
  return words;
}

std::string run(std::vector<char *> words) {
  static const std::vector<option> options =
      with_recording_options(joined(spectrum_options(), {{0, "format", "F", ""}}));
  columns.clear();
  for (const auto &task : tasks)
    if (task.name == std::string(words.at(0)))
      return task.run(arguments(static_cast<int>(words.size()), words.data(), options)).text();
  throw failure("no task");
}

}  // namespace

extern "C" {

/** The words are parted by line breaks. */
int32_t bench_run(char *line) {
  try {
    text = run(words_of(line));
    return 0;
  } catch (const std::bad_alloc &) {
    text = "memory ran out";
  } catch (const std::exception &e) {
    text = e.what();
  }
  return -1;
}

const char *bench_text() { return text.c_str(); }
int32_t bench_columns() { return static_cast<int32_t>(columns.size()); }
int32_t bench_length(std::size_t column) { return static_cast<int32_t>(columns[column].size()); }
const double *bench_column(std::size_t column) { return columns[column].data(); }

/** Where the page is to write samples for add_input. */
double *bench_input(std::size_t samples) {
  input.resize(samples);
  return input.data();
}
}
