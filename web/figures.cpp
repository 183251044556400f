// What the programs compute, for the page: bench_run() takes the words of a command line, which begin with a task, and
// answers with an object of JSON and columns of numbers. A failure is -1 and a sentence.

#include <algorithm>
#include <cmath>
#include <cstring>
#include <exception>
#include <new>

#include "examples/support/averaged_spectrum.h"
#include "examples/support/input_file.h"
#include "examples/support/json.h"
#include "examples/support/one_port_figures.h"
#include "examples/support/peaks.h"
#include "examples/support/recording.h"
#include "examples/support/tone_figures.h"

// The page's files by their names; the size of one that there is not is -1.
extern "C" {
__attribute__((import_module("page"), import_name("size"))) double page_size(const char *name);
__attribute__((import_module("page"), import_name("read"))) int32_t page_read(const char *name, double at, char *bytes,
                                                                              int32_t count);
}

namespace examples {
namespace {

class page_file : public std::streambuf {
 public:
  explicit page_file(std::string name) : name_(std::move(name)), bytes_(1 << 20) {}

 private:
  int_type underflow() override {
    const int32_t got = page_read(name_.c_str(), at_, bytes_.data(), static_cast<int32_t>(bytes_.size()));
    at_ += got;
    setg(bytes_.data(), bytes_.data(), bytes_.data() + got);
    return got > 0 ? traits_type::to_int_type(*gptr()) : traits_type::eof();
  }

  std::string name_;
  std::vector<char> bytes_;
  double at_ = 0.0;
};

struct page_stream : page_file, std::istream {
  explicit page_stream(const std::string &name) : page_file(name), std::istream(static_cast<page_file *>(this)) {}
};

}  // namespace

int64_t readable_size(const std::string &path) {
  const double size = page_size(path.c_str());
  if (size < 0.0) throw failure("cannot read " + path);
  if (size == 0.0) throw failure(path + " is empty");
  return static_cast<int64_t>(size);
}

std::unique_ptr<std::istream> open_input(const std::string &path) { return std::make_unique<page_stream>(path); }

}  // namespace examples

namespace {

using namespace examples;

std::string text;                          // the answer, or why there is none
std::vector<std::vector<double>> columns;  // belong to the answer
std::vector<double> input;                 // samples that the page brings

/** A row for each so many blocks: of their mean power in dB, the greatest of every few bins. */
class waterfall {
 public:
  /** Of a recording, blocks_per_row grows until there are less than 512 rows. */
  waterfall(int32_t blocks_per_row, bool is_recording) : blocks_per_row_(blocks_per_row), is_recording_(is_recording) {}

  void add(const signal &bins) {
    require(dsph_avg(&bins, &power_, &work_, DSP_AVG_MEAN | DSP_AVG_POWER, ++blocks_, 0, -1.0, 0.0), "average a row");
    if (blocks_ < blocks_per_row_) return;
    blocks_ = 0;
    std::vector<double> row;
    for (int32_t i = 0; i < power_.length; i += group()) {
      const double *first = power_.data + i;
      const double most = *std::max_element(first, first + std::min(group(), power_.length - i));
      row.push_back(10.0 * std::log10(std::max(most, 1e-40)));
    }
    rows_.push_back(row);
    if (is_recording_ && rows_.size() == 512) halve();
  }

  /** Moves the rows to the columns of the answer, and says how far apart they and their bins are. */
  void answer(json *out, double seconds) {
    out->add("row_seconds", blocks_per_row_ * seconds).add("row_dx", group() * power_.dx);
    for (std::vector<double> &row : rows_) columns.push_back(std::move(row));
    rows_.clear();
  }

 private:
  int32_t group() const { return (power_.length + 1023) / 1024; }

  void halve() {
    const auto larger = [](double a, double b) { return std::max(a, b); };
    for (std::size_t i = 0; i < rows_.size() / 2; ++i) {
      rows_[i] = rows_[2 * i];
      std::transform(rows_[i].begin(), rows_[i].end(), rows_[2 * i + 1].begin(), rows_[i].begin(), larger);
    }
    rows_.resize(rows_.size() / 2);
    blocks_per_row_ *= 2;
  }

  int32_t blocks_per_row_, blocks_ = 0;
  bool is_recording_;
  signal power_, work_;
  std::vector<std::vector<double>> rows_;
};

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
  measured->rows->answer(&out, s.hop / spectrum.rate());
  return out;
}

/** The columns of a table, or how many channels a sound has. */
json about(const arguments &given) {
  const std::string &name = given.words().at(0);
  if (given.has("column")) return json().add("names", columns_of(name));
  return json().add("channels", open_sound(name)->channels());
}

/** As many samples as dsp-tone takes. */
void read_samples(const arguments &given, signal *record) {
  read_record(given, *open_recording(given, given.words().at(0)), 1 << 22, record, [](double) {});
}

json samples(const arguments &given) {
  signal record;
  read_samples(given, &record);
  columns.emplace_back(record.data, record.data + record.length);
  return json().add("rate", 1.0 / record.dx);
}

json tone(const arguments &given) {
  signal record;
  read_samples(given, &record);
  std::vector<std::string> rows;
  const tone_report report = measure_tone(record, tone_settings_from(given, 1.0 / record.dx));
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
