// Pictures of what the library's windows, filters, sample-rate converter, polynomials, circles and arcs do, one file
// each, and the figures of docs/filters.md. scripts/gallery runs it.

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
    signal out;
    convert(frequency, &out);
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

  /** What comes out in the pass band; dB. */
  double in_pass_band(double frequency) const {
    signal out;
    convert(frequency, &out);
    require(dspu_subvec(&out, &out, 200, 1000), "cut a signal");
    require(dspi_window(&out, DSP_WINDOW_BLACKMAN_HARRIS4, DSP_WND_POWER), "apply a window");
    require(dspi_rdft(&out), "transform a signal");
    double power = 0.0;
    for (int32_t bin = 0; bin <= 390; ++bin) power += std::pow(std::hypot(out[2 * bin], out[2 * bin + 1]), 2);
    return decibels(2.0 * std::sqrt(power));
  }

  double ratio() const { return ratio_; }

 private:
  void convert(double frequency, signal *out) const {
    signal in(static_cast<int32_t>(1500 * ratio_));
    require(dspc_cos(&in, frequency / ratio_, 0.3), "make a tone");
    require(dsph_rsmp(&in, out, nullptr, &coef_, nullptr), "convert a tone");
  }

  double ratio_;
  dsph_rsmp_coef coef_;
};

constexpr double ratios[] = {1.0001, 1.25, 1.5, 1.999, 2.0, 2.7, 3.3, 4.0, 5.3, 7.9, 8.0};

/** Pass band up to 0.39 of the output rate, tones that may fall into it from 0.61 on. */
void print_table() {
  std::printf("| ratio | lowest gain / dB | highest gain / dB | residue / dB | rejection / dB |\n|--|--|--|--|--|\n");
  for (const double ratio : ratios) {
    const converter c(ratio);
    double lowest = 0.0, highest = 0.0, residue = -400.0, leak = -400.0;
    for (double f = 0.005; f < 0.4; f += 0.01) {
      const converter::tone t = c.measure(f);
      lowest = std::min(lowest, t.gain);
      highest = std::max(highest, t.gain);
      residue = std::max(residue, t.residue);
    }
    for (double f = 0.61; f < 0.5 * ratio; f += 0.0037) leak = std::max(leak, c.in_pass_band(f));
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

/** Real and imaginary parts of complex samples. */
std::vector<column> parts_of(const dsp_complex *z, std::size_t n) {
  std::vector<column> parts(2);
  for (std::size_t i = 0; i < n; ++i) {
    parts[0].push_back(z[i].re);
    parts[1].push_back(z[i].im);
  }
  return parts;
}

std::vector<column> parts_of(const signal &z) {
  return parts_of(reinterpret_cast<const dsp_complex *>(z.data), static_cast<std::size_t>(z.length));
}

const char *const plane = "set xlabel 'real part'; set ylabel 'imaginary part'; set size ratio -1; ";

/** The zeros of a lowpass filter: those of its stop band lie on the unit circle. */
void draw_zeros(const std::string &directory) {
  signal h;
  h.length = 41;
  require(dspc_fir(&h, DSP_FIR_LOWPASS, 0.15, 0.0), "design a filter");
  require(dspi_window_fir(&h, DSP_WINDOW_HAMMING), "shape a filter");
  column level = response(h);
  for (double &l : level) l = decibels(l);
  require(dspi_proots(&h), "find zeros");
  examples::gnuplot plot(1100, 460);
  plot.table("zeros", parts_of(h));
  plot.table("response", {range(grid / 2 + 1, 0.0, 1.0 / grid), level});
  draw(directory + "/proots.png", "a lowpass of 41 taps: the zeros of its polynomial, and its response", &plot,
       std::string(plane) +
           "set xrange [-1.6:1.6]; set yrange [-1.6:1.6]; set parametric; set trange [0:2*pi]; plot cos(t), sin(t) "
           "linecolor rgb '#c0c0c0', $zeros using 1:2 with points pointtype 6 linetype 1; unset parametric",
       "set size noratio; set xrange [0:0.5]; set yrange [-100:5]; set xlabel 'frequency / sample rate'; set ylabel "
       "'gain / dB'; plot $response with lines");
}

/** A filter that stops three tones, from the zeros that do so. */
void draw_coefficients(const std::string &directory) {
  signal v(6, 1);
  auto *const z = reinterpret_cast<dsp_complex *>(v.data);
  const double tones[] = {0.1, 0.18, 0.3};
  for (int k = 0; k < 3; ++k) {
    z[2 * k] = {std::cos(2.0 * pi * tones[k]), std::sin(2.0 * pi * tones[k])};
    z[2 * k + 1] = {z[2 * k].re, -z[2 * k].im};
  }
  require(dspi_pztoc(&v), "multiply zeros out");
  column level = response(v);
  for (double &l : level) l = decibels(l);
  examples::gnuplot plot(1100, 460);
  plot.table("taps", {range(v.length, 0.0, 1.0), column(v.data, v.data + v.length)});
  plot.table("response", {range(grid / 2 + 1, 0.0, 1.0 / grid), level});
  draw(directory + "/pztoc.png", "from zeros on the unit circle to the taps that stop 0.1, 0.18 and 0.3", &plot,
       "set xlabel 'power'; set ylabel 'coefficient'; set xrange [-0.5:6.5]; plot $taps with impulses, $taps with "
       "points linetype 1 pointtype 7",
       "set xrange [0:0.5]; set yrange [-80:20]; set xlabel 'frequency / sample rate'; set ylabel 'gain / dB'; plot "
       "$response with lines");
}

/** A curve inverted, and a family of equations solved in the plane. */
void draw_solutions(const std::string &directory) {
  double c[] = {0.0, 3.0, 0.0, -1.0};
  const dsp_vec p = {1.0, c, 0, 4, 0, 0};
  column x = range(221, -2.2, 0.02), y, places, values, readings = {-2.5, -1.0, 1.0};
  for (const double at : x) y.push_back(at * (3.0 - at * at));
  signal out;
  for (const double reading : readings) {
    require(dsps_psolve(&p, &out, reading), "solve an equation");
    places.insert(places.end(), out.data, out.data + out.length);
    values.insert(values.end(), static_cast<std::size_t>(out.length), reading);
  }
  std::vector<column> moduli(4);
  for (int k = 0; k < 4; ++k)
    for (double turn = 0.0; turn < 2.0 * pi; turn += 0.01) {
      require(dsps_pcsolve(&p, &out, (k + 0.5) * std::cos(turn), (k + 0.5) * std::sin(turn)), "solve an equation");
      for (int32_t i = 0; i < out.length; ++i) {
        moduli[0].push_back(out.data[2 * i]);
        moduli[1].push_back(out.data[2 * i + 1]);
        moduli[2].push_back(k + 0.5);
      }
    }
  moduli.pop_back();
  examples::gnuplot plot(1100, 460);
  plot.table("curve", {x, y});
  plot.table("solutions", {places, values});
  plot.table("plane", moduli);
  draw(directory + "/solve.png",
       "3 x - x^3: where it is -2.5, -1 and 1, and where its modulus is 0.5, 1.5, 2.5 and 3.5", &plot,
       "set xlabel 'x'; set ylabel 'value'; plot $curve with lines, $solutions with points pointtype 7 linetype 2",
       std::string(plane) + "unset colorbox; plot $plane using 1:2:3 with dots linecolor palette");
}

/** A resonance seen in noise, and the circle nearest to it. */
void draw_circle(const std::string &directory) {
  constexpr int32_t n = 160;
  std::vector<dsp_complex> z;
  double noise = 0.5;
  const auto uniform = [&noise] { return noise = std::fmod(noise * 9301.0 + 0.49297, 1.0); };
  for (int32_t i = 0; i < n; ++i) {
    const double t = 0.06 * (i - n / 2), re = 1.0 / (1.0 + t * t);
    z.push_back({0.7 - 1.2 * re + 0.1 * (uniform() - 0.5), 0.3 + 1.2 * t * re + 0.1 * (uniform() - 0.5)});
  }
  dsp_complex centre;
  double radius, rms;
  require(vfpd_CircleFit(z.data(), 0, n, &centre, &radius, &rms), "fit a circle");
  column distance;
  for (const dsp_complex &p : z) distance.push_back(std::hypot(p.re - centre.re, p.im - centre.im) - radius);
  examples::gnuplot plot(1100, 460);
  plot.table("points", parts_of(z.data(), z.size()));
  plot.table("distance", {range(n, 0.0, 1.0), distance});
  draw(directory + "/circle_fit.png",
       text("a resonance in noise: radius %.4f,", radius) + text(" rms distance %.4f", rms), &plot,
       std::string(plane) + "set parametric; set trange [0:2*pi]; plot $points using 1:2 with points pointtype 7 " +
           "pointsize 0.4 linetype 1, " + text("%.6f + ", centre.re) + text("%.6f * cos(t), ", radius) +
           text("%.6f + ", centre.im) + text("%.6f * sin(t) linetype 2; unset parametric", radius),
       "set size noratio; set xlabel 'point'; set ylabel 'distance from the circle'; plot $distance with impulses");
}

/** A coarse trace and the arcs between its points. */
void draw_arcs(const std::string &directory) {
  const auto reflection = [](double x) {
    return dsp_complex{0.9 * std::exp(-0.1 * x) * std::cos(1.4 * x), -0.9 * std::exp(-0.1 * x) * std::sin(1.4 * x)};
  };
  const column x = range(9, 0.0, 1.0), at = range(801, 0.0, 0.01);
  std::vector<dsp_complex> z, zi(at.size());
  for (const double each : x) z.push_back(reflection(each));
  require(CircularInterpolation(x.data(), z.data(), 9, at.data(), zi.data(), 801), "interpolate");
  column by_arcs, by_lines;
  for (std::size_t i = 0; i < at.size(); ++i) {
    const dsp_complex truth = reflection(at[i]);
    const std::size_t k = std::min<std::size_t>(i / 100, 7);
    const double t = at[i] - x[k];
    const dsp_complex line = {z[k].re + t * (z[k + 1].re - z[k].re), z[k].im + t * (z[k + 1].im - z[k].im)};
    by_arcs.push_back(std::hypot(zi[i].re - truth.re, zi[i].im - truth.im));
    by_lines.push_back(std::hypot(line.re - truth.re, line.im - truth.im));
  }
  examples::gnuplot plot(1100, 460);
  plot.table("nodes", parts_of(z.data(), z.size()));
  plot.table("arcs", parts_of(zi.data(), zi.size()));
  plot.table("errors", {at, by_arcs, by_lines});
  draw(directory + "/arcs.png", "a reflection behind a lossy line, nine points of it, and the arcs between them", &plot,
       std::string(plane) + "plot $arcs using 1:2 with lines, $nodes using 1:2 with points pointtype 7 linetype 1",
       "set size noratio; set key top right; set xlabel 'x'; set ylabel 'error'; set logscale y; set yrange [1e-5:1]; "
       "plot $errors using 1:2 with lines title 'arcs', $errors using 1:3 with lines title 'straight lines'");
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
  for (const auto picture : {draw_zeros, draw_coefficients, draw_solutions, draw_circle, draw_arcs}) picture(directory);
  return 0;
}

}  // namespace

int main(int argc, char **argv) { return examples::run({"gallery", introduction, options, ""}, argc, argv, gallery); }
