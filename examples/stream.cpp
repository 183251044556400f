// A sound file through a filter, to a lower sample rate, or both, block by block: memory does not grow with the file.
// What comes out lies where it was in time.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <memory>
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
#include "examples/support/progress.h"
#include "examples/support/sample_reader.h"
#include "examples/support/signal.h"
#include "examples/support/sound_writer.h"

using examples::averaged_spectrum;
using examples::failure;
using examples::require;
using examples::signal;

namespace {

const std::vector<examples::option> options = {
    {'f', "filter", "KIND", "lowpass, highpass, bandpass, bandstop, gaussian,\ndifferentiator or hilbert"},
    {'e', "edge", "HZ[,HZ]", "its cut-off, or the lower and upper edge of its band"},
    {'t', "taps", "N", "its length (default 255); longer is steeper"},
    {'w', "window", "NAME", "window on its taps (default Kaiser80; uniform: none)"},
    {'r', "rate", "HZ", "sample rate of the output, at most the input's"},
    {'g', "gain", "DB", "what the output is amplified by (default 0)"},
    {0, "encoding", "E",
     "of the output: s16, s24, s32, f32 or f64 (default: the\ninput's, or what comes closest); floating point never "
     "clips"},
    {'p', "plot", "FILE", "the spectra of the first channel before and after as a\npicture, .png or .svg"},
    {'b', "block", "N", "samples processed at a time (default 16384)"},
    {0, "json", nullptr, "the figures of the output as one object of JSON"},
};

const char *const introduction =
    "usage: dsp-stream [OPTION]... INPUT OUTPUT\n"
    "\n"
    "Filters a sound file, lowers its sample rate, or both, in that order; all channels alike. The end of the "
    "output's\n"
    "name tells its format, and its samples lie where they were in time, to within one sample of the input. - is\n"
    "standard input, or a WAV file on standard output.\n"
    "\n";

const char *const notes =
    "\n"
    "  dsp-stream -r 16000 voice.wav voice16k.wav\n"
    "  dsp-stream -r 8000 --encoding f32 - - <voice.wav | dsp-tone -\n"
    "  dsp-stream -f bandpass -e 300,3400 -t 501 voice.wav phone.wav\n"
    "  dsp-stream -f lowpass -e 4000 -r 11025 -p both.png music.flac small.flac\n"
    "\n"
    "The half amplitude points of a band filter lie at its edges; a gaussian has half power at its cut-off.\n"
    "Conversion keeps frequencies up to 0.39 of the new rate within 0.065 dB; tones from 0.61 of it on leave at most\n"
    "-90 dB there. What lies between 0.39 and 0.61 aliases into 0.39 to 0.5.\n"
    "\n"
    "Samples beyond full scale are clipped by integer encodings; standard error then tells how many, and by how much.\n"
    "\n"
    "JSON holds rate, frames and channels of the output, its largest sample (level, in dB of full scale), how many\n"
    "were clipped, and the time of its first sample in the input (start, in s): 0, but for an even number of taps and\n"
    "for a rate that is converted.\n"
    "\n"
    "Status 0, or 2 with a line on standard error that says what is refused; no file is then written.\n";

struct filter_kind {
  const char *name;
  dsp_fir_type type;
  int edges;
  bool shaped;  // by its formula: needs no window
};
const filter_kind kinds[] = {
    {"lowpass", DSP_FIR_LOWPASS, 1, false},   {"highpass", DSP_FIR_HIGHPASS, 1, false},
    {"bandpass", DSP_FIR_BANDPASS, 2, false}, {"bandstop", DSP_FIR_BANDSTOP, 2, false},
    {"gaussian", DSP_FIR_GAUSSIAN, 1, true},  {"differentiator", DSP_FIR_DIFFERENTIATOR, 1, false},
    {"hilbert", DSP_FIR_HILBERT, 1, false},
};

std::vector<double> edges_of(const std::string &text, double rate) {
  std::vector<double> edges;
  for (std::size_t begin = 0; begin <= text.size();) {
    const std::size_t comma = std::min(text.find(',', begin), text.size());
    double edge = 0.0;
    if (!examples::parse_number(text.substr(begin, comma - begin), &edge) || !(edge > 0.0 && edge < rate / 2.0))
      throw failure("--edge: '" + text + "' is not a frequency below half the sample rate, or two of them");
    edges.push_back(edge);
    begin = comma + 1;
  }
  return edges;
}

/** Designs the filter that the options ask for; leaves `taps` empty when they ask for none. */
void design(const examples::arguments &given, double rate, signal *taps) {
  if (!given.has("filter")) {
    for (const char *name : {"edge", "taps", "window"})
      if (given.has(name)) throw failure(std::string("--") + name + " describes a filter: --filter is missing");
    return;
  }
  const std::string name = given.text("filter", "");
  const auto *kind = std::find_if(std::begin(kinds), std::end(kinds), [&](const auto &k) { return name == k.name; });
  if (kind == std::end(kinds)) throw failure("--filter: '" + name + "' is unknown; --help lists the kinds");
  if (!given.has("edge")) throw failure("--filter " + name + " needs --edge");
  const std::vector<double> edges = edges_of(given.text("edge", ""), rate);
  if (static_cast<int>(edges.size()) != kind->edges || (kind->edges == 2 && !(edges[0] < edges[1])))
    throw failure("--edge: " + name + " takes " + (kind->edges == 2 ? "a lower and a higher edge" : "one edge"));
  const bool is_band = kind->edges == 2;
  const double f = (is_band ? (edges[0] + edges[1]) / 2.0 : edges[0]) / rate;
  const double p = is_band ? (edges[1] - edges[0]) / rate : 0.0;
  taps->length = static_cast<int32_t>(given.integer("taps", 255, 1, 1 << 20));
  if (dspc_fir(taps, kind->type, f, p) != 0) throw failure("--taps: " + name + " needs an odd number of taps");
  if (kind->shaped && !given.has("window")) return;
  const std::string window = given.text("window", "Kaiser80");
  dsp_window_type type = 0;
  if (dsp_window_from_str(window.c_str(), &type) != 0) throw failure("--window: '" + window + "' is unknown");
  require(dspi_window_fir(taps, type), "shape the filter");
}

/** The sample-rate converter of one channel. */
class converter {
 public:
  explicit converter(double ratio) {
    dsph_rsmp_coef_init(&coef_);
    dsph_rsmp_state_init(&state_);
    require(dsph_rsmp_coef_alloc(&coef_, 0), "get memory for the converter");
    require(dsph_rsmp_coef_setup(&coef_, 0, ratio, 0, 0), "set up the converter");
    require(dsph_rsmp_state_alloc(&coef_, &state_, 0), "get memory for the converter");
    require(dsph_rsmp_state_reset(&coef_, &state_), "set up the converter");
  }
  ~converter() {
    dsph_rsmp_state_destroy(&state_);
    dsph_rsmp_coef_destroy(&coef_);
  }
  converter(const converter &) = delete;
  converter &operator=(const converter &) = delete;

  /** The time of the first output, in samples of the input. */
  double first() const {
    const double stage = std::ldexp(1.0, coef_.halvings);
    return (coef_.halvings > 0 ? 14.0 * stage + 19.0 : 0.0) +
           (coef_.delay2 > 0 ? stage * (coef_.ratio * (coef_.delay2 - 9.5) - 17.5) : 0.0);
  }

  void process(const dsp_vec &in, dsp_vec *out) {
    require(dsph_rsmp(&in, out, &scratch_, &coef_, &state_), "convert a block");
  }

 private:
  dsph_rsmp_coef coef_;
  dsph_rsmp_state state_;
  signal scratch_;
};

/** The processing of one channel. An output block may have another length than its input block. */
class channel {
 public:
  /** No taps: no filter. */
  channel(const signal &taps, double ratio) : taps_(taps), to_drop_(std::max(taps.length - 1, 0) / 2) {
    if (taps.length > 0 && taps.length % 2 == 0) start_ = -0.5;
    if (ratio == 1.0) return;
    converter_ = std::make_unique<converter>(ratio);
    // Silence ahead moves the time of the first output to that of the first sample, or less than one sample after it.
    signal lead(static_cast<int32_t>(converter_->first()));
    start_ += converter_->first() - lead.length;
    require(dspi_zero(&lead), "prepare the converter");
    signal nothing;
    converter_->process(lead, &nothing);
  }

  /** The time of the first output, in samples of the input. */
  double start() const { return start_; }

  /** Replaces the block by its output. */
  void process(signal *block) {
    if (taps_.length > 0) {
      require(dspd_fir(block, block, &taps_, &past_), "filter a block");
      const int32_t dropped = std::min(to_drop_, block->length);
      require(dspi_shift(block, dropped), "filter a block");
      to_drop_ -= dropped;
    }
    if (converter_) converter_->process(*block, block);
  }

 private:
  const signal &taps_;
  signal past_;
  int32_t to_drop_;  // outputs of the filter that come before the first sample
  double start_ = 0.0;
  std::unique_ptr<converter> converter_;
};

/** A spectrum in blocks of a twentieth of a second, so that noise has one level at every sample rate. */
std::unique_ptr<averaged_spectrum> meter_for(double rate) {
  const auto block = static_cast<int32_t>(std::clamp(std::round(rate / 20.0), 64.0, 1048576.0));
  return std::make_unique<averaged_spectrum>(examples::half_overlapped(block, DSP_WINDOW_BLACKMAN_HARRIS4), rate);
}

/** Level in dB over frequency. A stream shorter than a block is measured with zeros behind it. */
std::vector<std::vector<double>> table_of(averaged_spectrum *spectrum) {
  if (spectrum->blocks() == 0) {
    const std::vector<double> zeros(static_cast<std::size_t>(spectrum->wanted()), 0.0);
    spectrum->add(zeros.data(), spectrum->wanted());
  }
  signal levels;
  spectrum->levels(&levels);
  std::vector<std::vector<double>> columns(2);
  for (int32_t i = 0; i < levels.length; ++i) {
    columns[0].push_back(i * levels.dx);
    columns[1].push_back(std::max(levels[i], -200.0));
  }
  return columns;
}

/** Splits frames into channels, and puts channels together again. */
void take_channel(const std::vector<double> &frames, int64_t count, int channels, int c, signal *block) {
  block->resize(static_cast<int32_t>(count));
  for (int32_t i = 0; i < block->length; ++i) (*block)[i] = frames[static_cast<std::size_t>(int64_t{i} * channels + c)];
}

void put_channel(const signal &block, int channels, int c, std::vector<double> *frames) {
  frames->resize(static_cast<std::size_t>(block.length) * static_cast<std::size_t>(channels));
  for (int32_t i = 0; i < block.length; ++i) (*frames)[static_cast<std::size_t>(int64_t{i} * channels + c)] = block[i];
}

std::string name_of(const std::string &path) { return std::filesystem::path(path).filename().string(); }

void draw(const std::string &path, const std::string &title, double highest, averaged_spectrum *before,
          averaged_spectrum *after) {
  examples::output_file picture(path);
  examples::gnuplot plot;
  plot.table("before", table_of(before));
  plot.table("after", table_of(after));
  plot.command("set title " + examples::gnuplot::quoted(title) + " noenhanced");
  plot.command(examples::frequency_axis(0.0, highest, false));
  plot.command("set ylabel 'level / dB relative to full scale'; set yrange [-160:*]");
  plot.command(
      "plot $before with lines linetype 1 linecolor rgb '#b0b0b0' title 'before', $after with lines linetype 1 title "
      "'after'");
  plot.draw(picture);
  picture.commit();
}

struct job {
  std::string input, output, picture;
  double ratio, gain;
  int64_t block;
};

/** The whole stream through the channels; returns how many frames were written. */
int64_t process(examples::sample_reader &recording, const job &j, const signal &taps, examples::sound_writer &sound,
                averaged_spectrum *before, averaged_spectrum *after) {
  const int channels = recording.channels();
  const double gain = std::pow(10.0, j.gain / 20.0);
  std::vector<std::unique_ptr<channel>> stream;
  for (int c = 0; c < channels; ++c) stream.push_back(std::make_unique<channel>(taps, j.ratio));
  examples::progress progress("processing " + j.input);
  std::vector<double> in(static_cast<std::size_t>(j.block * channels)), out;
  signal block;
  int64_t read = 0, written = 0;
  for (bool at_end = false;;) {
    const int64_t got = at_end ? 0 : recording.read(in.data(), j.block);
    read += got;
    at_end = got < j.block;
    const auto wanted = static_cast<int64_t>(std::ceil(static_cast<double>(read) / j.ratio));
    if (at_end && got == 0 && written >= wanted) return written;
    // Behind the last sample comes silence, which pushes out what the filters still hold.
    if (got == 0) std::fill(in.begin(), in.end(), 0.0);
    for (int c = 0; c < channels; ++c) {
      take_channel(in, got == 0 ? j.block : got, channels, c, &block);
      if (c == 0 && got > 0 && before) before->add(block.data, block.length);
      stream[static_cast<std::size_t>(c)]->process(&block);
      require(dspi_scale(&block, gain), "amplify a block");
      if (got == 0) block.length = static_cast<int32_t>(std::min<int64_t>(block.length, wanted - written));
      if (c == 0 && after) after->add(block.data, block.length);
      put_channel(block, channels, c, &out);
    }
    sound.write(out.data(), block.length);
    written += block.length;
    progress.show(recording.progress());
  }
}

/** What there is to say of a written stream: to standard error where samples were clipped, and a line of report. */
void tell(const job &j, const examples::arguments &given, const examples::sound_writer &sound, int64_t frames,
          double rate, int channels, double start) {
  const double level = 20.0 * std::log10(sound.largest());
  if (sound.clipped() > 0)
    std::fprintf(
        stderr,
        "dsp-stream: %lld samples were clipped, the largest %.2f dB beyond full scale; --gain %.2f or --encoding "
        "f32 keeps them\n",
        static_cast<long long>(sound.clipped()), level, j.gain - std::ceil(100.0 * level) / 100.0);
  if (j.output == "-") return;
  if (!given.has("json")) {
    std::printf("%s: %lld frames at %.0f Hz\n", j.output.c_str(), static_cast<long long>(frames), rate);
    return;
  }
  examples::json out;
  out.add("rate", rate).add("frames", static_cast<double>(frames)).add("channels", channels);
  out.add("level", level).add("clipped", static_cast<double>(sound.clipped())).add("start", start).print();
}

int stream_of(const examples::arguments &given) {
  if (given.words().size() != 2) throw failure("an input and an output are needed; --help tells more");
  job j = {given.words()[0],
           given.words()[1],
           given.text("plot", ""),
           1.0,
           given.number("gain", 0.0, -300.0, 300.0),
           given.integer("block", 16384, 1, 1 << 24)};
  std::error_code error;
  if (std::filesystem::equivalent(j.input, j.output, error)) throw failure(j.output + " is the input itself");
  if (j.output == "-" && given.has("json")) throw failure("--json: standard output is taken by the sound");
  if (!j.picture.empty()) {
    examples::require_gnuplot(j.picture);
    const examples::output_file writable(j.picture);
  }
  examples::sound_encoding encoding = 0;
  const auto recording = examples::open_sound(j.input, &encoding);
  if (given.has("encoding")) encoding = examples::encoding_named(given.text("encoding", ""));
  const double rate = recording->rate();
  const double new_rate = static_cast<double>(given.integer("rate", std::lround(rate), 1, std::lround(rate)));
  j.ratio = rate / new_rate;
  signal taps;
  design(given, rate, &taps);

  std::unique_ptr<averaged_spectrum> before, after;
  if (!j.picture.empty()) {
    before = meter_for(rate);
    after = meter_for(new_rate);
  }
  const int channels = recording->channels();
  examples::sound_writer sound(j.output, encoding, given.has("encoding"), new_rate, channels);
  const int64_t frames = process(*recording, j, taps, sound, before.get(), after.get());
  if (before) draw(j.picture, name_of(j.input) + " and " + name_of(j.output), rate / 2.0, before.get(), after.get());
  sound.commit();
  tell(j, given, sound, frames, new_rate, channels, channel(taps, j.ratio).start() / rate);
  return 0;
}

}  // namespace

int main(int argc, char **argv) {
  return examples::run({"dsp-stream", introduction, options, notes}, argc, argv, stream_of);
}
