// A live spectrum in the terminal: raw samples come in on standard input, the averaged spectrum is drawn again and
// again as a text plot, with the strongest line's frequency and level below it.

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#define isatty _isatty
#define fileno _fileno
#else
#include <unistd.h>
#endif

#include "dsp/dsp.h"
#include "examples/support/arguments.h"
#include "examples/support/averaged_spectrum.h"
#include "examples/support/axis.h"
#include "examples/support/failure.h"
#include "examples/support/json.h"
#include "examples/support/signal.h"

using examples::averaged_spectrum;
using examples::failure;
using examples::require;
using examples::signal;

namespace {

const std::vector<examples::option> options = {
    {'r', "rate", "HZ", "sample rate (default 48000)"},
    {'f', "format", "F",
     "of a sample, in this machine's byte order: s16 (default), s32,\nf32 or f64; integers have full scale 1"},
    {'c', "channels", "N", "interleaved channels, of which the first is shown (default 1)"},
    {'b', "block", "N", "samples of a block, a power of two (default 4096)"},
    {'a', "average", "N", "blocks that the average remembers (default 8)"},
    {'t', "top", "DB", "highest level shown (default 0)"},
    {'d', "depth", "DB", "range of levels shown (default 120)"},
    {'w', "width", "N", "columns of the plot (default 72)"},
    {'l', "lines", "N", "lines of the plot (default 16)"},
    {0, "json", nullptr, "no plot: the strongest line at the end as one object of JSON"},
};

const char *const introduction =
    "usage: dsp-live [OPTION]... <SAMPLES\n"
    "\n"
    "Draws the spectrum of the raw samples on standard input as they come, ten times a second; when the output is no\n"
    "terminal, once, at the end.\n"
    "\n";

const char *const notes =
    "\n"
    "Levels are in dB relative to full scale: a sine of full amplitude reads 0 dB.\n"
    "\n"
    "  arecord -q -t raw -f S16_LE -r 48000 | dsp-live\n"
    "  sox voice.wav -t f64 - | dsp-live -f f64 -r 44100 --depth 90\n"
    "\n"
    "JSON holds its frequency in Hz and its level, the sample rate and the number of blocks.\n"
    "\n"
    "Status 0 at the end of the samples; 1 if there was no line; 2 with a line on standard error that says what is\n"
    "refused.\n";

/** Samples of one type on standard input. */
class raw_input {
 public:
  raw_input(const std::string &format, int channels) : channels_(channels) {
#ifdef _WIN32
    _setmode(_fileno(stdin), _O_BINARY);
#endif
    if (format == "s16") bytes_ = 2, value_ = [](const char *p) { return as<int16_t>(p) / 32768.0; };
    if (format == "s32") bytes_ = 4, value_ = [](const char *p) { return as<int32_t>(p) / 2147483648.0; };
    if (format == "f32") bytes_ = 4, value_ = [](const char *p) { return static_cast<double>(as<float>(p)); };
    if (format == "f64") bytes_ = 8, value_ = [](const char *p) { return as<double>(p); };
    if (bytes_ == 0) throw failure("--format: '" + format + "' is not one of s16, s32, f32, f64");
  }

  /** Reads `count` samples of the first channel; false at the end. */
  bool read(double *samples, int32_t count) {
    const std::size_t frame = bytes_ * static_cast<std::size_t>(channels_);
    frames_.resize(frame * static_cast<std::size_t>(count));
    if (std::fread(frames_.data(), frame, static_cast<std::size_t>(count), stdin) < static_cast<std::size_t>(count))
      return false;
    for (int32_t i = 0; i < count; ++i, ++done_) {
      samples[i] = value_(frames_.data() + static_cast<std::size_t>(i) * frame);
      if (!(std::abs(samples[i]) <= 1e90))
        throw failure("sample " + std::to_string(done_ + 1) + " is not finite, or too large; see --format");
    }
    return true;
  }

 private:
  template <class T>
  static T as(const char *p) {
    T value;
    std::memcpy(&value, p, sizeof value);
    return value;
  }

  int channels_;
  std::size_t bytes_ = 0;
  double (*value_)(const char *) = nullptr;
  std::vector<char> frames_;
  int64_t done_ = 0;
};

struct screen {
  double top, depth;
  int32_t width, lines;
};

/** The highest level in each column of the plot, as a number of eighths of a line. */
std::vector<int> heights_of(const signal &levels, const screen &s) {
  std::vector<int> heights;
  for (int64_t column = 0; column < s.width; ++column) {
    const int64_t first = column * levels.length / s.width, end = (column + 1) * levels.length / s.width;
    double level = levels[static_cast<int32_t>(first)];
    for (int64_t i = first + 1; i < end; ++i) level = std::max(level, levels[static_cast<int32_t>(i)]);
    const double share = std::clamp(1.0 - (s.top - level) / s.depth, 0.0, 1.0);
    heights.push_back(static_cast<int>(std::lround(share * 8 * s.lines)));
  }
  return heights;
}

/** Round levels, each beside the line of the plot that it falls on; empty elsewhere. */
std::vector<std::string> level_labels(const screen &s) {
  std::vector<std::string> labels(static_cast<std::size_t>(s.lines));
  for (const double level : examples::round_numbers(s.top - s.depth, s.top, std::clamp(s.lines / 3, 1, 10))) {
    const auto line = std::lround((s.top - level) / s.depth * s.lines);
    if (line < s.lines) labels[static_cast<std::size_t>(line)] = examples::fixed(level, s.depth < 5.0 ? 1 : 0);
  }
  return labels;
}

/** The frequency axis: a line with marks, and round numbers centred below them, the last with its unit. */
std::string axis(double highest, int32_t width) {
  const examples::frequency_unit unit = examples::unit_for(highest);
  const std::vector<double> numbers = examples::round_numbers(0.0, highest, std::max(width / 12, 2));
  const int decimals = examples::decimals_for((numbers[1] - numbers[0]) / unit.hertz);
  std::string marks, labels(static_cast<std::size_t>(width) + 24, ' ');
  std::vector<bool> is_mark(static_cast<std::size_t>(width) + 1, false);
  for (const double number : numbers) {
    const auto column = static_cast<std::size_t>(std::lround(number / highest * width));
    is_mark[column] = true;
    std::string label = examples::fixed(number / unit.hertz, decimals);
    const std::size_t half = label.size() / 2;
    if (number == numbers.back()) label += std::string(" ") + unit.name;
    labels.replace(8 + column - std::min(half, column), label.size(), label);
  }
  for (const bool mark : is_mark) marks += mark ? "┴" : "─";
  return "       " + marks + "\n" + labels.substr(1, labels.find_last_not_of(' ')) + "\n";
}

std::string plot(const signal &levels, const screen &s) {
  static const char *const eighths[] = {" ", "▁", "▂", "▃", "▄", "▅", "▆", "▇", "█"};
  const std::vector<int> heights = heights_of(levels, s);
  const std::vector<std::string> labels = level_labels(s);
  std::string text;
  for (int32_t line = s.lines - 1; line >= 0; --line) {
    const std::string &label = labels[static_cast<std::size_t>(s.lines - 1 - line)];
    text += std::string(6 - std::min(label.size(), std::size_t{6}), ' ') + label + " │";
    for (const int height : heights) text += eighths[std::clamp(height - 8 * line, 0, 8)];
    text += "\n";
  }
  return text + axis(levels.dx * (levels.length - 1), s.width);
}

/** A line in the spectrum; its values are NaN if there is none. */
struct line {
  double frequency, level;
};

/** The strongest line, between the bins; the main lobe at frequency 0 holds an offset. */
line strongest(const signal &power) {
  constexpr int32_t half_lobe = 5;
  constexpr double curvature = 0.631127298315668;  // of the logarithm of this window's line, a Gaussian
  signal lines, peak;
  require(dspu_subvec(&power, &lines, half_lobe, power.length), "cut the spectrum");
  if (dsps_peak(&lines, &peak, DSP_PEAK_GAUSS, 0) != 0 || !(peak[0] > 0.0)) return {std::nan(""), std::nan("")};
  const auto bin = static_cast<int32_t>(std::lround(peak[1]));
  const double offset = peak[1] - bin;
  return {(peak[1] + half_lobe) * power.dx, 10.0 * std::log10(lines[bin] * std::exp(curvature * offset * offset))};
}

/** The frequency to a thousandth of a bin, or to 0.01 Hz where bins are wide. */
std::string told(const line &l, double bin, double rate) {
  if (std::isnan(l.frequency)) return "no line stands out\n";
  char text[80];
  std::snprintf(text, sizeof text, " Hz, %.2f dB; sample rate %.10g Hz\n", l.level, rate);
  return "strongest: " + examples::fixed(l.frequency, std::max(examples::decimals_for(bin / 1000.0), 2)) + text;
}

std::string frame(const averaged_spectrum &spectrum, const screen &s) {
  signal levels;
  spectrum.levels(&levels);
  return plot(levels, s) + told(strongest(spectrum.power()), spectrum.power().dx, spectrum.rate());
}

int live(const examples::arguments &given) {
  if (!given.words().empty()) throw failure("samples come on standard input; --help tells more");
  const screen s = {given.number("top", 0.0, -300.0, 300.0), given.number("depth", 120.0, 1.0, 300.0),
                    static_cast<int32_t>(given.integer("width", 72, 20, 1000)),
                    static_cast<int32_t>(given.integer("lines", 16, 2, 200))};
  const double rate = given.number("rate", 48000.0, 1e-9, 1e15);
  const auto n = static_cast<int32_t>(given.integer("block", 4096, 256, 1 << 24));
  if ((n & (n - 1)) != 0) throw failure("--block: " + std::to_string(n) + " is not a power of two");
  examples::spectrum_settings settings = examples::half_overlapped(n, DSP_WINDOW_GAUSSTOP);
  settings.exponential = static_cast<double>(given.integer("average", 8, 1, 1 << 30));
  raw_input input(given.text("format", "s16"), static_cast<int>(given.integer("channels", 1, 1, 256)));

  using clock = std::chrono::steady_clock;
  const bool on_terminal = isatty(fileno(stdout)) != 0 && !given.has("json");
  auto next = clock::now();
  averaged_spectrum spectrum(settings, rate);
  signal block(n);
  while (input.read(block.data, spectrum.wanted())) {
    spectrum.add(block.data, spectrum.wanted());
    if (!on_terminal || clock::now() < next) continue;
    next = clock::now() + std::chrono::milliseconds(100);
    std::printf("\x1b[H\x1b[J%s", frame(spectrum, s).c_str());
    std::fflush(stdout);
  }
  if (spectrum.blocks() == 0) throw failure("there are fewer samples than a block of " + std::to_string(n));
  const line found = strongest(spectrum.power());
  if (given.has("json"))
    examples::json()
        .add("frequency", found.frequency)
        .add("level", found.level)
        .add("rate", rate)
        .add("blocks", spectrum.blocks())
        .print();
  else
    std::printf("%s%s", on_terminal ? "\x1b[H\x1b[J" : "", frame(spectrum, s).c_str());
  return std::isnan(found.frequency) ? 1 : 0;
}

}  // namespace

int main(int argc, char **argv) { return examples::run({"dsp-live", introduction, options, notes}, argc, argv, live); }
