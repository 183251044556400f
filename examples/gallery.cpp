// Pictures of what the library's windows, filters and sample-rate converter do, one file each, and the figures of
// docs/filters.md. scripts/gallery runs it.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "dsp/dsp.h"
#include "examples/support/arguments.h"
#include "examples/support/failure.h"
#include "examples/support/gnuplot.h"
#include "examples/support/output_file.h"
#include "examples/support/signal.h"

using examples::failure;
using examples::require;
using examples::signal;

namespace {

const char *const introduction =
    "usage: gallery DIRECTORY | gallery --table\n\nDraws every window, filter kind and the converter.\n\n";

const std::vector<examples::option> options = {
    {'t', "table", nullptr, "no pictures: the figures of the converter as a table"},
};

using column = std::vector<double>;

constexpr double pi = 3.14159265358979323846;
constexpr int32_t grid = 16384;

double decibels(double amplitude) { return 20.0 * std::log10(std::max(amplitude, 1e-12)); }

std::string text(const char *format, double value) {
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, format, value);
  return buffer;
}

/** Gain over frequency, 0 ... 0.5, of a kernel. */
column response(const signal &kernel) {
  signal spectrum;
  require(dsp_copy(&spectrum, &kernel), "copy a kernel");
  require(dspi_zpad(&spectrum, grid), "transform a kernel");
  require(dspi_rfft(&spectrum), "transform a kernel");
  require(dspi_mag(&spectrum), "transform a kernel");
  require(dspi_scale(&spectrum, grid), "transform a kernel");
  return column(spectrum.data, spectrum.data + spectrum.length);
}

column range(int32_t n, double first, double step) {
  column x;
  for (int32_t i = 0; i < n; ++i) x.push_back(first + i * step);
  return x;
}

/** Two panels side by side, each a command that plots. */
void draw(const std::string &path, const std::string &title, examples::gnuplot *plot, const std::string &left,
          const std::string &right) {
  examples::output_file picture(path);
  plot->command("set key off; set multiplot layout 1,2 title " + examples::gnuplot::quoted(title) +
                " noenhanced margins 0.08,0.98,0.15,0.9 spacing 0.11");
  plot->command(left);
  plot->command(right);
  plot->command("unset multiplot");
  plot->draw(picture);
  picture.commit();
  std::printf("%s\n", path.c_str());
}

struct window_name {
  const char *name;
  dsp_window_type type;
};
const window_name windows[] = {
    {"uniform", DSP_WINDOW_UNIFORM},
    {"bartlett", DSP_WINDOW_BARTLETT},
    {"hann", DSP_WINDOW_HANN},
    {"hamming", DSP_WINDOW_HAMMING},
    {"blackman", DSP_WINDOW_BLACKMAN},
    {"blackman_harris3", DSP_WINDOW_BLACKMAN_HARRIS3},
    {"blackman_harris4", DSP_WINDOW_BLACKMAN_HARRIS4},
    {"gausstop", DSP_WINDOW_GAUSSTOP},
    {"flat4", DSP_WINDOW_FLAT4},
    {"flattop", DSP_WINDOW_FLATTOP},
    {"flat6", DSP_WINDOW_FLAT6},
    {"flat7", DSP_WINDOW_FLAT7},
    {"p501", DSP_WINDOW_P501},
    {"p601", DSP_WINDOW_P601},
    {"kaiser70", DSP_WINDOW_KAISER70},
    {"kaiser80", DSP_WINDOW_KAISER80},
    {"kaiser90", DSP_WINDOW_KAISER90},
    {"kaiser100", DSP_WINDOW_KAISER100},
    {"kaiser110", DSP_WINDOW_KAISER110},
    {"kaiser120", DSP_WINDOW_KAISER120},
    {"gauss60", DSP_WINDOW_GAUSS60},
    {"gauss70", DSP_WINDOW_GAUSS70},
    {"gauss80", DSP_WINDOW_GAUSS80},
    {"sinc_lobe", DSP_WINDOW_SINC_LOBE},
};

void draw_window(const std::string &directory, const window_name &w) {
  constexpr int32_t n = 256;
  signal v(n);
  for (int32_t i = 0; i < n; ++i) v[i] = 1.0;
  require(dspi_window(&v, w.type, DSP_WND_RAW | DSP_WND_NO_SWAP), "make a window");
  column level = response(v);
  const double peak = level[0];
  for (double &l : level) l = decibels(l / peak);
  double bandwidth = 0.0;
  require(dsp_window_enbw(&bandwidth, w.type, n), "measure a window");

  examples::gnuplot plot(1100, 460);
  plot.table("samples", {range(n, 0.0, 1.0), column(v.data, v.data + n)});
  plot.table("spectrum", {range(grid / 2 + 1, 0.0, static_cast<double>(n) / grid), level});
  draw(directory + "/window_" + w.name + ".png", std::string(w.name) + text(", noise bandwidth %.4f bins", bandwidth),
       &plot,
       "set xlabel 'sample'; set ylabel 'weight'; set xrange [0:256]; set yrange [*:1.05]; plot $samples with lines",
       "set xlabel 'frequency / bins'; set ylabel 'level / dB'; set xrange [0:32]; set yrange [-160:5]; plot $spectrum "
       "with "
       "lines");
}

struct filter_name {
  const char *name;
  dsp_fir_type type;
  double f, p;
  bool in_decibels;
};
const filter_name filters[] = {
    {"bandpass", DSP_FIR_BANDPASS, 0.2, 0.1, true},
    {"bandstop", DSP_FIR_BANDSTOP, 0.2, 0.1, true},
    {"highpass", DSP_FIR_HIGHPASS, 0.2, 0.0, true},
    {"lowpass", DSP_FIR_LOWPASS, 0.2, 0.0, true},
    {"sinh", DSP_FIR_SINH, 0.0, 0.0, true},
    {"delayed_lowpass", DSP_FIR_DELAYED_LOWPASS, 0.2, 0.5, true},
    {"differentiator", DSP_FIR_DIFFERENTIATOR, 0.4, 0.0, false},
    {"gaussian", DSP_FIR_GAUSSIAN, 0.03, 0.0, true},
    {"hilbert", DSP_FIR_HILBERT, 0.4, 0.0, false},
    {"kaiser_spectrum", DSP_FIR_KAISER_SPECTRUM, 0.0, 0.0, true},
    {"ramp", DSP_FIR_RAMP, 0.4, 0.0, false},
};

void draw_filter(const std::string &directory, const filter_name &kind) {
  constexpr int32_t n = 63;
  signal h;
  h.length = n;
  require(dspc_fir(&h, kind.type, kind.f, kind.p), "design a filter");
  column plain = response(h), windowed;
  require(dspi_window_fir(&h, DSP_WINDOW_KAISER70), "shape a filter");
  windowed = response(h);
  require(dspc_fir(&h, kind.type, kind.f, kind.p), "design a filter");
  if (kind.in_decibels)
    for (column *levels : {&plain, &windowed})
      for (double &l : *levels) l = decibels(l);

  examples::gnuplot plot(1100, 460);
  plot.table("taps", {range(n, -0.5 * (n - 1), 1.0), column(h.data, h.data + n)});
  plot.table("response", {range(grid / 2 + 1, 0.0, 1.0 / grid), windowed, plain});
  const std::string axis = kind.in_decibels ? "set ylabel 'gain / dB'; set yrange [-120:10]" : "set ylabel 'gain'";
  draw(
      directory + "/fir_" + kind.name + ".png",
      std::string(kind.name) + text(", %.0f taps", n) + ": as designed (blue), and times a Kaiser70 window (orange)",
      &plot,
      "set xlabel 'time / samples'; set ylabel 'tap'; plot $taps with impulses, $taps with points linetype 1 pointtype "
      "7 "
      "pointsize 0.5",
      "set xlabel 'frequency / sample rate'; set xrange [0:0.5]; " + axis +
          "; plot $response using 1:3 with lines linetype 1, $response with lines linetype 2");
}

/** The converter for one ratio, measured with tones. Frequencies are cycles per output sample. */
class converter {
 public:
  explicit converter(double ratio) : ratio_(ratio) {
    dsph_rsmp_coef_init(&coef_);
    require(dsph_rsmp_coef_alloc(&coef_, 0), "get memory for the converter");
    require(dsph_rsmp_coef_setup(&coef_, 0, ratio, 0, 0), "set up the converter");
  }
  ~converter() { dsph_rsmp_coef_destroy(&coef_); }
  converter(const converter &) = delete;
  converter &operator=(const converter &) = delete;

  struct tone {
    double gain;     // of the tone where it may pass, of all that comes out where it must not; dB
    double residue;  // what comes out beside the tone, relative to it; dB
  };

  tone measure(double frequency) const {
    signal in(static_cast<int32_t>(1500 * ratio_)), out;
    require(dspc_cos(&in, frequency / ratio_, 0.3), "make a tone");
    require(dsph_rsmp(&in, &out, nullptr, &coef_, nullptr), "convert a tone");
    const int32_t first = 200, last = out.length - 200;
    double power = 0.0;
    for (int32_t i = first; i < last; ++i) power += out[i] * out[i];
    const double all = std::sqrt(2.0 * power / (last - first));
    if (frequency >= 0.5) return {decibels(all), 0.0};
    double cc = 0, cs = 0, ss = 0, xc = 0, xs = 0, rest = 0;
    const auto angle = [=](int32_t i) { return 2.0 * pi * std::fmod(frequency * i, 1.0); };
    for (int32_t i = first; i < last; ++i) {
      const double c = std::cos(angle(i)), s = std::sin(angle(i));
      cc += c * c, cs += c * s, ss += s * s, xc += out[i] * c, xs += out[i] * s;
    }
    const double det = cc * ss - cs * cs, a = (xc * ss - xs * cs) / det, b = (xs * cc - xc * cs) / det;
    for (int32_t i = first; i < last; ++i)
      rest += std::pow(out[i] - a * std::cos(angle(i)) - b * std::sin(angle(i)), 2);
    const double amplitude = std::hypot(a, b);
    return {decibels(amplitude), decibels(std::sqrt(2.0 * rest / (last - first)) / amplitude)};
  }

  double ratio() const { return ratio_; }

 private:
  double ratio_;
  dsph_rsmp_coef coef_;
};

constexpr double ratios[] = {1.0001, 1.25, 1.5, 1.999, 2.0, 2.7, 3.3, 4.0, 5.3, 7.9, 8.0};

/** Pass band up to 0.395, stop band from 0.625 of the output rate: what folds back from there falls into the former. */
void print_table() {
  std::printf("| ratio | lowest gain / dB | highest gain / dB | residue / dB | rejection / dB |\n|--|--|--|--|--|\n");
  for (const double ratio : ratios) {
    const converter c(ratio);
    double lowest = 0.0, highest = 0.0, residue = -400.0, leak = -400.0;
    for (double f = 0.005; f <= 0.3951; f += 0.01) {
      const converter::tone t = c.measure(f);
      lowest = std::min(lowest, t.gain);
      highest = std::max(highest, t.gain);
      residue = std::max(residue, t.residue);
    }
    for (double f = 0.625; f < 0.5 * ratio; f += 0.0173) leak = std::max(leak, c.measure(f).gain);
    std::printf("| %g | %.3f | %+.3f | %.1f | %s |\n", ratio, lowest, highest, std::max(residue, -250.0),
                leak > -400.0 ? text("%.1f", -leak).c_str() : "-");
  }
}

void draw_converter(const std::string &directory) {
  examples::gnuplot plot(1100, 460);
  std::string pass, stop;
  for (const double ratio : {1.25, 2.0, 2.7, 5.3}) {
    const converter c(ratio);
    column f, gain;
    for (double at = 0.003; at < 0.5 * ratio && at < 2.0; at += 0.004) {
      f.push_back(at);
      gain.push_back(c.measure(at).gain);
    }
    const std::string name = "r" + text("%.0f", 100.0 * ratio);
    plot.table(name, {f, gain});
    const std::string line = "$" + name + " with lines title '" + text("%g", ratio) + "'";
    pass += (pass.empty() ? "plot " : ", ") + line;
    stop += (stop.empty() ? "plot " : ", ") + line;
  }
  draw(directory + "/converter.png", "sample-rate conversion by 1.25, 2, 2.7 and 5.3", &plot,
       "set key top right; set xlabel 'frequency / output rate'; set ylabel 'gain / dB'; set xrange [0:0.45]; set "
       "yrange "
       "[-0.2:0.2]; " +
           pass,
       "set xrange [0:2]; set yrange [-140:5]; " + stop);
}

int gallery(const examples::arguments &given) {
  if (given.has("table")) {
    print_table();
    return 0;
  }
  if (given.words().size() != 1) throw failure("a directory for the pictures is needed");
  const std::string directory = given.words()[0];
  examples::require_gnuplot("gallery.png");
  std::error_code error;
  std::filesystem::create_directories(directory, error);
  if (error) throw failure("cannot make " + directory + ": " + error.message());
  for (const window_name &w : windows) draw_window(directory, w);
  for (const filter_name &kind : filters) draw_filter(directory, kind);
  draw_converter(directory);
  return 0;
}

}  // namespace

int main(int argc, char **argv) { return examples::run({"gallery", introduction, options, ""}, argc, argv, gallery); }
