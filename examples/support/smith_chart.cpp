#include "examples/support/smith_chart.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdio>

#include "examples/support/axis.h"

namespace examples {
namespace {

using complex = std::complex<double>;

constexpr double pi = 3.14159265358979323846;
constexpr int steps = 90;

complex reflection_of(const complex &impedance) { return (impedance - 1.0) / (impedance + 1.0); }

/** More values the smaller the part of the chart that is seen. */
std::vector<double> values_for(double extent) {
  std::vector<double> values = {0.2, 0.5, 1.0, 2.0, 5.0};
  if (extent < 0.7) values.insert(values.end(), {0.1, 0.3, 0.7, 1.5, 3.0});
  if (extent < 0.3) values.insert(values.end(), {0.05, 0.8, 0.9, 1.1, 1.25});
  return values;
}

void add_label(gnuplot &g, const std::string &text, const complex &at, const char *manner) {
  char place[80];
  std::snprintf(place, sizeof place, "' at %.6g,%.6g ", at.real(), at.imag());
  g.command("set label '" + text + place + manner);
}

std::string number(double value) {
  char text[24];
  std::snprintf(text, sizeof text, "%g", value);
  return text;
}

void add_values(gnuplot &g, double extent) {
  const char *const quiet = "center front font ',9' textcolor rgb '#909090'";
  for (const double v : values_for(extent)) {
    const complex on_axis = reflection_of(v);
    if (std::abs(on_axis) < 0.95 * extent) add_label(g, number(v), on_axis + complex(0.0, 0.03 * extent), quiet);
    for (const double x : {v, -v}) {
      const complex at = extent < 1.0 ? reflection_of({1.0, x}) : 1.055 * reflection_of({0.0, x});
      if (extent < 1.0 && std::abs(at) > 0.95 * extent) continue;
      add_label(g, (x < 0.0 ? "-j" : "j") + number(v), at, quiet);
    }
  }
}

}  // namespace

double smith_extent(const reflection &a, const reflection &b) {
  double largest = 0.01;
  for (const reflection *r : {&a, &b})
    for (const dsp_complex &z : r->s) largest = std::max(largest, std::hypot(z.re, z.im));
  return largest > 0.8 ? 1.0 : 1.25 * largest;
}

void add_smith_chart(gnuplot &g, double extent) {
  std::vector<double> x, y;
  const auto add = [&](const complex &impedance) {
    const complex at = reflection_of(impedance);
    x.push_back(at.real());
    y.push_back(at.imag());
  };
  const auto end_curve = [&] { x.push_back(NAN), y.push_back(NAN); };
  std::vector<double> resistances = values_for(extent), reactances = {0.0};
  resistances.push_back(0.0);
  for (const double value : values_for(extent)) reactances.insert(reactances.end(), {value, -value});
  for (const double r : resistances) {
    for (int i = -steps; i <= steps; ++i) add({r, (r + 1.0) * std::tan(0.4999 * pi * i / steps)});
    end_curve();
  }
  for (const double reactance : reactances) {
    for (int i = 0; i <= steps; ++i) add({std::tan(0.4999 * pi * i / steps), reactance});
    end_curve();
  }
  g.table("chart", {x, y});
  add_values(g, extent);
}

void add_frequency_marks(gnuplot &g, const reflection &trace, double unit) {
  std::vector<double> x, y;
  const std::vector<double> &f = trace.frequency;
  const std::vector<double> round = round_numbers(f.front() / unit, f.back() / unit, 5);
  for (const double value : round) {
    const auto above = std::lower_bound(f.begin(), f.end(), value * unit);
    auto i = static_cast<std::size_t>(above - f.begin());
    if (i == f.size() || (i > 0 && value * unit - f[i - 1] < f[i] - value * unit)) --i;
    if (std::abs(f[i] - value * unit) > 0.02 * (f.back() - f.front())) continue;  // no point there
    x.push_back(trace.s[i].re);
    y.push_back(trace.s[i].im);
    add_label(g, fixed(value, decimals_for(round.size() > 1 ? round[1] - round[0] : value)), {x.back(), y.back()},
              "left front offset 0.6,0.5 font ',10' textcolor rgb '#003060'");
  }
  g.table("marks", {x, y});
}

}  // namespace examples
