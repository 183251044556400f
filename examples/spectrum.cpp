// The averaged spectrum of a recording: overlapping blocks are windowed, transformed and folded into one average, whose
// strongest peaks are refined between the bins, listed and drawn.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <limits>
#include <string>
#include <vector>

#include "dsp/dsp.h"
#include "examples/support/arguments.h"
#include "examples/support/averaged_spectrum.h"
#include "examples/support/axis.h"
#include "examples/support/failure.h"
#include "examples/support/gnuplot.h"
#include "examples/support/json.h"
#include "examples/support/output_file.h"
#include "examples/support/peaks.h"
#include "examples/support/progress.h"
#include "examples/support/recording.h"
#include "examples/support/sample_reader.h"
#include "examples/support/signal.h"
#include "examples/support/window_line.h"

using examples::averaged_spectrum;
using examples::decimals_for;
using examples::failure;
using examples::fixed;
using examples::frequency_axis;
using examples::frequency_unit;
using examples::json;
using examples::peak;
using examples::signal;
using examples::unit_for;
using examples::window_line;

namespace {

const std::vector<examples::option> of_output = {
    {'o', "output", "FILE", "the picture, .png or .svg, or the numbers, .csv\n(default: RECORDING.png here)"},
    {0, "csv", nullptr,
     "numbers instead of a picture: frequency in Hz, level in dB;\nto standard output unless -o is given"},
};

const std::vector<examples::option> of_result = {
    {'n', "count", "N", "blocks to average (default: all)"},
    {'p', "peaks", "N", "peaks to list at most (default 10)"},
    {0, "from", "HZ", "lowest frequency shown (default 0)"},
    {0, "to", "HZ", "highest frequency shown (default: half the sample rate)"},
    {'l', "log", nullptr, "logarithmic frequency axis"},
    {0, "json", nullptr, "peaks and figures as one object of JSON, with all digits;\na picture only if -o is given"},
};

const std::vector<examples::option> options = examples::with_recording_options(
    examples::joined(of_output, examples::joined(examples::spectrum_options(), of_result)));

const char *const introduction =
    "usage: dsp-spectrum [OPTION]... RECORDING\n"
    "\n"
    "Measures the spectrum of a recording: any sound file, or a column of numbers in a text file (.csv, .tsv,\n"
    ".txt, .dat). Cuts it into overlapping blocks, averages their spectra, lists the strongest peaks and draws\n"
    "the spectrum as RECORDING.png.\n"
    "\n";

const char *const notes =
    "\n"
    "Levels are in dB relative to full scale: a sine of full amplitude reads 0 dB, whatever the window. Noise\n"
    "reads higher the wider the bins are: its density is the level less 10 log10(ENBW), the equivalent noise\n"
    "bandwidth that the table states. What does not fill a last block is left out.\n"
    "\n"
    "Windows, in any case of letters: Gausstop (default: frequency and level of tones far apart in strength),\n"
    "Hann (general use), Flattop (levels within 0.01 dB), Blackman_Harris4, Kaiser70 ... Kaiser120, Gauss60 ...\n"
    "Gauss80 (weak tones beside strong ones), Hamming, Blackman, Bartlett, Riemann, Uniform (transients, or\n"
    "periods that fit the block), and all other names of the library.\n"
    "\n"
    "Peaks are local maxima that rise 6 dB above the valleys on both sides and above the side lobes of stronger ones,\n"
    "refined between bins by the shape of the window's own line.\n"
    "\n"
    "  dsp-spectrum voice.wav                                   table, and voice.png\n"
    "  dsp-spectrum -o hum.svg --log --to 2000 -b 32768 voice.flac\n"
    "  dsp-spectrum --csv -w hann --rate 1e6 -k voltage scope.csv >spectrum.csv\n"
    "\n"
    "JSON holds frequency and level of the strongest peak, and all of them; frequencies in Hz, levels in dB.\n"
    "\n"
    "Status 0; 1 if no peak was found; 2 with a line on standard error that says what is refused: no file is then\n"
    "written.\n";

enum class output_kind { picture, csv, none };

struct settings {
  std::string recording, output;  // an empty output is standard output
  output_kind kind;
  examples::spectrum_settings spectrum;
  int64_t count;
  int channel;
  double from, to;
  int64_t peaks;
  bool logarithmic;
};

void choose_output(const examples::arguments &given, settings *s) {
  s->output = given.text("output", "");
  const bool csv = given.has("csv") || examples::extension_of(s->output) == ".csv";
  s->kind = csv ? output_kind::csv : s->output.empty() && given.has("json") ? output_kind::none : output_kind::picture;
  if (csv && s->output.empty() && given.has("json"))
    throw failure("--csv and --json both want standard output; see --output");
  if (s->kind == output_kind::picture && s->output.empty())
    s->output = s->recording == "-" ? "spectrum.png" : std::filesystem::path(s->recording).stem().string() + ".png";
}

settings settings_from(const examples::arguments &given) {
  if (given.words().size() != 1) throw failure("one recording is needed; --help tells more");
  settings s{};
  s.recording = given.words()[0];
  choose_output(given, &s);
  s.spectrum = examples::spectrum_settings_from(given);
  constexpr int64_t most = std::numeric_limits<int32_t>::max();
  s.count = given.integer("count", most, 1, most);
  s.channel = examples::channel_of(given);
  s.peaks = given.integer("peaks", 10, 0, 1000);
  s.logarithmic = given.has("log");
  return s;
}

void choose_range(const examples::arguments &given, double rate, settings *s) {
  s->from = given.number("from", 0.0, 0.0, rate / 2.0);
  s->to = given.number("to", rate / 2.0, 0.0, rate / 2.0);
  if (s->logarithmic) s->from = std::max(s->from, rate / s->spectrum.grid);
  if (!(s->from < s->to)) throw failure("--from and --to leave no frequency between them");
}

void measure(examples::sample_reader &recording, const settings &s, averaged_spectrum *spectrum) {
  examples::channel_reader channel(recording, s.channel);
  examples::progress progress("measuring " + s.recording);
  while (spectrum->blocks() < s.count && spectrum->add_block(channel)) progress.show(recording.progress());
  spectrum->require_block(s.recording);
}

std::string text(const char *format, double value) {
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, format, value);
  return buffer;
}

void print_table(const std::vector<peak> &peaks, double dx) {
  std::printf("\n%16s  %10s\n", "frequency / Hz", "level / dB");
  for (const peak &p : peaks) {
    const examples::peak_text t = examples::text_of(p, dx);
    std::printf("%16s  %10s\n", t.frequency.c_str(), t.level.c_str());
  }
  if (peaks.empty()) std::printf("%16s\n", "no peaks");
}

void print_json(const std::vector<peak> &peaks, double dx, const averaged_spectrum &spectrum) {
  std::vector<json> list;
  for (const peak &p : peaks) list.push_back(json().add("frequency", p.bin * dx).add("level", p.level));
  const peak first = peaks.empty() ? peak{std::nan(""), std::nan("")} : peaks[0];
  json out;
  out.add("frequency", first.bin * dx).add("level", first.level).add("peaks", list);
  out.add("rate", spectrum.rate()).add("blocks", spectrum.blocks()).add("bin_width", dx);
  out.add("noise_bandwidth", spectrum.noise_bandwidth());
  out.print();
}

void write_csv(const signal &spectrum, const settings &s, std::FILE *out) {
  std::fprintf(out, "frequency_hz,level_db\n");
  for (int32_t i = 0; i < spectrum.length; ++i)
    if (i * spectrum.dx >= s.from && i * spectrum.dx <= s.to)
      std::fprintf(out, "%.12g,%.6f\n", i * spectrum.dx, spectrum[i]);
}

/** Where on the frequency axis, 0 left to 1 right. */
double along_axis(const settings &s, double f) {
  return s.logarithmic ? std::log(f / s.from) / std::log(s.to / s.from) : (f - s.from) / (s.to - s.from);
}

struct points {
  std::vector<double> frequency, level;
  void add(double f, double l) {
    frequency.push_back(f);
    level.push_back(l);
  }
};

/** What a drawing can show of a spectrum: the first bin, and the least and greatest level, of each of 2000 columns. */
points outline_of(const signal &spectrum, const settings &s) {
  points line;
  int column = -1, bins = 0;
  for (int32_t i = 0; i < spectrum.length; ++i) {
    const double f = i * spectrum.dx, level = spectrum[i];
    if (f < s.from || f > s.to) continue;
    const int next = static_cast<int>(2000.0 * along_axis(s, f));
    bins = next == column ? bins + 1 : 1;
    column = next;
    if (bins < 4) {
      line.add(f, level);
      continue;
    }
    double &least = line.level.end()[-2], &greatest = line.level.end()[-1];
    if (least > greatest) std::swap(least, greatest);
    least = std::min(least, level);
    greatest = std::max(greatest, level);
  }
  if (line.level.empty()) throw failure("no bin lies between --from and --to");
  return line;
}

struct label {
  double frequency, level, peak;
  std::string text;
  double left, right;  // along the axis
};

/** Frequencies written above their peaks and above all of the trace that they span, strongest first; those that would
 * leave the picture or cover another one are left out. */
std::vector<label> labels_of(const std::vector<peak> &peaks, const points &line, double dx, double bottom, double top,
                             const settings &s) {
  const frequency_unit unit = unit_for(s.to);
  const double height = 0.035 * (top - bottom), width = 0.0072;  // of a line of text, and of a letter
  std::vector<label> labels;
  for (const peak &p : peaks) {
    const double f = p.bin * dx, told = std::max(dx / 10.0, (s.logarithmic ? 2.0 * f : s.to - s.from) / 1000.0);
    label l = {f, p.level, p.level, fixed(f / unit.hertz, decimals_for(told / unit.hertz)), 0.0, 0.0};
    const double x = along_axis(s, l.frequency), half = width * static_cast<double>(l.text.size() + 1) / 2.0;
    l.left = x - half;
    l.right = x + half;
    for (std::size_t k = 0; k < line.level.size(); ++k)
      if (std::abs(along_axis(s, line.frequency[k]) - x) < half) l.level = std::max(l.level, line.level[k]);
    bool is_free = labels.size() < 8 && l.left > 0.0 && l.right < 1.0 && l.level < top - 1.6 * height;
    for (const label &other : labels)
      is_free =
          is_free && (l.left > other.right || l.right < other.left || std::abs(l.level - other.level) > 1.5 * height);
    if (is_free) labels.push_back(l);
  }
  return labels;
}

void draw(const signal &spectrum, const std::vector<peak> &peaks, const settings &s, const std::string &subtitle,
          examples::output_file &picture) {
  const points line = outline_of(spectrum, s);
  const auto [lowest, highest] = std::minmax_element(line.level.begin(), line.level.end());
  const double top = 10.0 * std::ceil((*highest + 8.0) / 10.0);
  const double bottom = std::clamp(10.0 * std::floor(*lowest / 10.0), top - 150.0, top - 40.0);
  points dots, leaders;
  for (const peak &p : peaks) dots.add(p.bin * spectrum.dx, p.level);

  examples::gnuplot plot;
  plot.table("spectrum", {line.frequency, line.level});
  plot.table("peaks", {dots.frequency, dots.level});
  for (const label &l : labels_of(peaks, line, spectrum.dx, bottom, top, s)) {
    plot.command("set label '" + l.text + "' at first " + text("%.12g", l.frequency) + "," + text("%.6g", l.level) +
                 " center offset 0,0.7 front textcolor rgb '#a04000'");
    if (l.level - l.peak < 0.01 * (top - bottom)) continue;
    for (const double level : {l.peak, l.level, std::nan("")}) leaders.add(l.frequency, level);
  }
  plot.table("leaders", {leaders.frequency, leaders.level});
  const std::string name = std::filesystem::path(s.recording).filename().string();
  plot.command("set title " + examples::gnuplot::quoted(name + "\n" + subtitle) + " noenhanced");
  plot.command(frequency_axis(s.from, s.to, s.logarithmic));
  plot.command("set ylabel 'level / dB relative to full scale'; set key off");
  plot.command("set yrange [" + text("%.0f", bottom) + ":" + text("%.0f", top) + "]");
  std::string drawing = "plot $spectrum with lines linetype 1";
  if (!peaks.empty()) drawing += ", $peaks with points pointtype 7 pointsize 0.7 linecolor rgb '#d06010'";
  if (!leaders.level.empty()) drawing += ", $leaders with lines linewidth 0.7 linecolor rgb '#d06010'";
  plot.command(drawing);
  plot.draw(picture);
}

int spectrum_of(const examples::arguments &given) {
  settings s = settings_from(given);
  if (s.kind == output_kind::picture) examples::require_gnuplot(s.output);
  const auto recording = examples::open_recording(given, s.recording);
  const double rate = recording->rate();
  choose_range(given, rate, &s);
  std::unique_ptr<examples::output_file> file;
  std::error_code error;
  if (std::filesystem::equivalent(s.recording, s.output, error))
    throw failure(s.output + " would replace the recording");
  if (!s.output.empty()) file = std::make_unique<examples::output_file>(s.output);

  averaged_spectrum measured(s.spectrum, rate);
  measure(*recording, s, &measured);
  signal spectrum;
  measured.levels(&spectrum);
  const window_line line(s.spectrum.window, s.spectrum.active, s.spectrum.grid);
  const std::vector<peak> peaks = examples::find_peaks(spectrum, line, s.from, s.to, s.peaks);
  const std::string how = measured.method(), read = examples::channel_read(given, *recording);
  if (s.kind == output_kind::csv) write_csv(spectrum, s, file ? file->stream() : stdout);
  if (s.kind == output_kind::picture) draw(spectrum, peaks, s, how, *file);
  if (s.kind == output_kind::csv && !file) return 0;
  if (file) file->commit();
  if (given.has("json")) {
    print_json(peaks, spectrum.dx, measured);
  } else {
    std::printf("%s: %s\n", s.recording.c_str(), how.c_str());
    if (!read.empty()) std::printf("read: %s\n", read.c_str());
    print_table(peaks, spectrum.dx);
    std::printf("\nwritten to %s\n", s.output.c_str());
  }
  return peaks.empty() && s.peaks > 0 ? 1 : 0;
}

}  // namespace

int main(int argc, char **argv) {
  return examples::run({"dsp-spectrum", introduction, options, notes}, argc, argv, spectrum_of);
}
