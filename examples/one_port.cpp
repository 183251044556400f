// A one-port calibration: from three measured standards and a measured device to the device as it is.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "dsp/dsp.h"
#include "examples/support/arguments.h"
#include "examples/support/axis.h"
#include "examples/support/failure.h"
#include "examples/support/gnuplot.h"
#include "examples/support/json.h"
#include "examples/support/one_port_calibration.h"
#include "examples/support/one_port_figures.h"
#include "examples/support/output_file.h"
#include "examples/support/simulated_reflectometer.h"
#include "examples/support/smith_chart.h"
#include "examples/support/touchstone.h"

namespace {

using namespace examples;

using figure = one_port_figure;

const std::vector<option> options = {
    {'o', "output", "FILE.s1p", "write the corrected device"},
    {'f', "format", "FORMAT", "its numbers: ri (default), ma or db"},
    {'p', "plot", "FILE", "draw level and Smith chart (.png or .svg)"},
    {'s', "smooth", "POINTS", "average the level over an odd number of points\nbefore its minimum is looked for"},
    {'m', "marker", "HZ",
     "tell the reflection at this frequency, also between\npoints, where it is interpolated along arcs"},
    {0, "simulate", nullptr, "make a set instead of reading one: an antenna\nbehind a cable, the standards, and noise"},
    {0, "points", "N", "points of the simulated sweep (default 401)"},
    {0, "noise", "DB", "its noise, in dB below full reflection\n(default 70)"},
    {0, "seed", "N", "of the noise (default 1)"},
    {0, "keep", "DIR", "write the simulated set there, as .s1p files"},
    {0, "json", nullptr, "the figures as one object of JSON, with all digits"},
};

const char *const usage =
    "usage: dsp-oneport [options] MEASURED ACTUAL MEASURED ACTUAL MEASURED ACTUAL DEVICE\n"
    "       dsp-oneport [options] --simulate\n"
    "\n"
    "Corrects the measured reflection of DEVICE for the errors of the reflectometer\n"
    "(directivity, source match, reflection tracking), which three standards show.\n"
    "All files are Touchstone one-ports (.s1p; Hz to GHz; RI, MA or DB) over the same\n"
    "frequencies. For each standard give what was measured and what it actually is;\n"
    "instead of an ACTUAL file short, open or load mean ideal ones: -1, +1 and 0.\n"
    "\n";

const char *const examples_of_use =
    "\n"
    "  dsp-oneport --simulate --plot antenna.png\n"
    "  dsp-oneport s.s1p short o.s1p open l.s1p load filter.s1p -o corrected.s1p -p c.svg\n"
    "\n"
    "The exit status is 0, or 2 after one line that says what is wrong. Output files\n"
    "appear complete or not at all.\n";

number_format format_named(const std::string &name) {
  if (name == "ri") return number_format::ri;
  if (name == "ma") return number_format::ma;
  if (name == "db") return number_format::db;
  throw failure("--format: '" + name + "' is not one of ri, ma, db");
}

void write_file(const std::string &path, const std::string &text) {
  output_file file(path);
  std::fputs(text.c_str(), file.stream());
  file.commit();
}

void keep_set(const calibration_set &set, const reflection &truth, const std::string &directory) {
  std::error_code error;
  std::filesystem::create_directories(directory, error);
  for (const reflection *r : {&set.measured[0], &set.actual[0], &set.measured[1], &set.actual[1], &set.measured[2],
                              &set.actual[2], &set.device, &truth})
    write_file(directory + "/" + r->name, touchstone(*r, number_format::ri, "simulated reflectometer"));
}

// The level as its minimum is looked for: smoothed or not.
std::vector<double> searched_level(const reflection &device, int32_t smooth) {
  const std::vector<double> level = formatted(DSP_FORMAT_LEVEL, device.s);
  if (smooth == 0) return level;
  std::vector<double> smoothed(level.size());
  const int32_t n = device.points();
  if (vfpd_Smooth(level.data(), smoothed.data(), n, 0, n, smooth, 0) != n)
    throw failure("--smooth: an odd number of points from 3 on");
  return smoothed;
}

// The reflection at a frequency, between points along arcs.
dsp_complex at_marker(const reflection &device, double frequency) {
  dsp_complex s;
  if (CircularInterpolation(device.frequency.data(), device.s.data(), device.points(), &frequency, &s, 1) != 0)
    throw failure("--marker: the frequencies of " + device.name + " do not rise");
  return s;
}

std::vector<figure> figures_of_marker(const dsp_complex &s) {
  return {{"marker, level", "marker_level", formatted(DSP_FORMAT_LEVEL, {s})[0], "%8.2f dB"},
          {"marker, phase", "marker_phase", formatted(DSP_FORMAT_PHASE, {s})[0], "%8.1f degrees"}};
}

figure deviation_of(const reflection &device, const reflection &truth) {
  std::vector<dsp_complex> d = device.s;
  for (std::size_t i = 0; i < d.size(); ++i) d[i] = {d[i].re - truth.s[i].re, d[i].im - truth.s[i].im};
  return {"deviation", "deviation", largest(formatted(DSP_FORMAT_LEVEL, d)),
          "%8.2f dB at worst, from the antenna simulated"};
}

void tell(const std::vector<figure> &figures) {
  for (const figure &f : figures) std::printf("%-20s %s\n", f.label, f.text().c_str());
}

json as_json(const reflection &device, double frequency, const std::vector<figure> &figures) {
  json out;
  out.add("points", device.points()).add("from", device.frequency.front()).add("to", device.frequency.back());
  out.add("frequency", frequency);
  for (const figure &f : figures) out.add(f.member, f.member == std::string("delay") ? f.value * 1e-12 : f.value);
  return out;
}

std::vector<double> parts(const reflection &r, double dsp_complex::*part) {
  std::vector<double> x;
  for (const dsp_complex &z : r.s) x.push_back(z.*part);
  return x;
}

void draw(output_file &file, const reflection &measured, const reflection &device, const std::vector<double> &level,
          std::size_t least) {
  const frequency_unit unit =
      device.frequency.back() >= 1e9 ? frequency_unit{1e9, "GHz"} : unit_for(device.frequency.back());
  std::vector<double> frequency = device.frequency;
  vfpdbMul1(1.0 / unit.hertz, frequency.data(), device.points());
  gnuplot g(1280, 600);
  g.table("level", {frequency, formatted(DSP_FORMAT_LEVEL, measured.s), formatted(DSP_FORMAT_LEVEL, device.s), level});
  g.table("least", {{frequency[least]}, {level[least]}, {device.s[least].re}, {device.s[least].im}});
  g.table("reflection", {parts(measured, &dsp_complex::re), parts(measured, &dsp_complex::im),
                         parts(device, &dsp_complex::re), parts(device, &dsp_complex::im)});
  g.command("set multiplot");
  g.command("set size 0.58, 1");
  g.command("set xlabel " + gnuplot::quoted(std::string("frequency / ") + unit.name));
  g.command("set ylabel 'reflection / dB'");
  g.command("set autoscale xfix");
  g.command("set offsets 0, 0, graph 0.12, graph 0.05");
  g.command("set key outside top center horizontal");
  g.command(
      "plot $level using 1:2 with lines linetype 2 title 'measured', "
      "$level using 1:4 with lines linetype 1 linewidth 2 title 'corrected', "
      "$least using 1:2 with points pointtype 7 pointsize 1 linecolor rgb '#c02020' title " +
      gnuplot::quoted("least: " + hertz(device.frequency[least])));
  g.command("set origin 0.58, 0");
  g.command("set size 0.42, 1");
  g.command("unset border; unset tics; unset grid; unset xlabel; unset ylabel; unset key; unset offsets");
  const double extent = smith_extent(measured, device), edge = extent < 1.0 ? extent : 1.1;
  add_smith_chart(g, extent);
  add_frequency_marks(g, device, unit.hertz);
  char frame[200];
  std::snprintf(
      frame, sizeof frame,
      "set size ratio -1; set lmargin 0; set rmargin 0; set tmargin 1; set bmargin 2; set xrange [%g:%g]; set "
      "yrange [%g:%g]",
      -edge, edge, -edge, edge);
  g.command(frame);
  std::snprintf(frame, sizeof frame,
                "set label 'in units of %.4g ohms, frequencies in %s' at 0, %g center offset 0,-0.8", device.resistance,
                unit.name, -edge);
  g.command(frame);
  g.command(
      "plot $chart using 1:2 with lines linewidth 0.6 linecolor rgb '#c0c0c0', "
      "$reflection using 1:2 with lines linetype 2 linewidth 0.6 linecolor rgb '#f0c0a0', "
      "$reflection using 3:4 with lines linetype 1 linewidth 2, "
      "$marks using 1:2 with points pointtype 7 pointsize 0.6 linecolor rgb '#003060', "
      "$least using 3:4 with points pointtype 7 pointsize 1 linecolor rgb '#c02020'");
  g.command("unset multiplot");
  g.draw(file);
}

int calibrate(const arguments &args) {
  const number_format format = format_named(args.text("format", "ri"));
  const auto smooth = static_cast<int32_t>(args.integer("smooth", 0, 3, 1000001));
  if (args.has("plot")) require_gnuplot(args.text("plot", ""));
  if (args.has("simulate") && !args.words().empty()) throw failure("--simulate takes no files");
  if (args.has("keep") && !args.has("simulate")) throw failure("--keep goes with --simulate");
  std::error_code error;
  for (const std::string &input : args.words())
    if (std::filesystem::equivalent(input, args.text("output", ""), error))
      throw failure("--output would replace " + input);

  reflection truth;
  const calibration_set set =
      args.has("simulate") ? simulate_reflectometer(static_cast<int32_t>(args.integer("points", 401, 2, 1000000)),
                                                    args.number("noise", 70.0, 0.0, 300.0),
                                                    static_cast<uint64_t>(args.integer("seed", 1, 0, 1000000)), &truth)
                           : read_set(args.words());
  require_three_standards(set);
  if (args.has("keep")) keep_set(set, truth, args.text("keep", ""));

  const error_terms e = terms_of(set);
  const reflection device = corrected(set.device, e);
  std::vector<figure> of_marker;
  if (args.has("marker"))
    of_marker = figures_of_marker(
        at_marker(device, args.number("marker", 0.0, device.frequency.front(), device.frequency.back())));
  const std::vector<double> level = searched_level(device, smooth);
  const auto least = static_cast<std::size_t>(vfpd_FindMin2(level.data(), 0, device.points(), 0, 0));
  if (args.has("output"))
    write_file(args.text("output", ""),
               touchstone(device, format,
                          set.device.name + ", corrected by three standards: " + set.actual[0].name + ", " +
                              set.actual[1].name + ", " + set.actual[2].name));
  if (args.has("plot")) {
    output_file picture(args.text("plot", ""));
    draw(picture, set.device, device, level, least);
    picture.commit();
  }

  const std::vector<figure> of_terms = figures_of_terms(e);
  std::vector<figure> of_device = figures_of_device(device, least);
  of_device.insert(of_device.end(), of_marker.begin(), of_marker.end());
  if (args.has("simulate")) of_device.push_back(deviation_of(device, truth));
  if (args.has("json")) {
    std::vector<figure> all = of_terms;
    all.insert(all.end(), of_device.begin(), of_device.end());
    as_json(device, device.frequency[least], all).print();
    return 0;
  }
  std::printf("%-20s %d from %s to %s\n", "points", device.points(), hertz(device.frequency.front()).c_str(),
              hertz(device.frequency.back()).c_str());
  tell(of_terms);
  std::printf("%-20s %s\n", "least reflection at", hertz(device.frequency[least]).c_str());
  tell(of_device);
  return 0;
}

}  // namespace

int main(int argc, char **argv) { return run({"dsp-oneport", usage, options, examples_of_use}, argc, argv, calibrate); }
