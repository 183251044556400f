#include "examples/support/one_port_figures.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace examples {
namespace {

constexpr double pi = 3.14159265358979323846;

/** The mean group delay, from the phase without its jumps. */
double delay_of(const reflection &device) {
  const int32_t n = device.points();
  if (n < 2) return 0.0;
  std::vector<double> phase(device.s.size());
  vfpd_UnwrapPhase(device.s.data(), 0, n, phase.data());
  return (phase.front() - phase.back()) / (2.0 * pi * (device.frequency.back() - device.frequency.front()));
}

struct circle {
  dsp_complex centre;
  double rms;
};

/** The circle nearest to a part of a trace; its rms is infinite when no circle fits. */
circle circle_near(const std::vector<dsp_complex> &s) {
  circle c = {};
  double radius;
  if (vfpd_CircleFit(s.data(), 0, static_cast<int32_t>(s.size()), &c.centre, &radius, &c.rms) != 0) c.rms = HUGE_VAL;
  return c;
}

/** The points of [first, last] without a delay on the way there and back. */
std::vector<dsp_complex> undelayed(const reflection &device, std::size_t first, std::size_t last, double delay) {
  std::vector<dsp_complex> s;
  for (std::size_t i = first; i <= last; ++i) {
    const double turn = 2.0 * pi * delay * (device.frequency[i] - device.frequency[first]);
    s.push_back(product(device.s[i], {std::cos(turn), std::sin(turn)}));
  }
  return s;
}

/** The loaded quality factor of the resonance at the least reflection; 0 without a resonance. Between the half-power
 * frequencies the reflection runs along a circle, where f is at the angle 2 atan(2 Q (f/f0 - 1)) from f0. A line in
 * front of the resonator bends the circle: its delay is found as the one whose removal brings the points nearest to a
 * circle. */
double quality_of(const reflection &device, std::size_t least) {
  const auto power = [&](std::size_t i) { return std::pow(device.s[i].re, 2) + std::pow(device.s[i].im, 2); };
  const double half = 0.5 * (1.0 + power(least));
  std::size_t first = least, last = least;
  while (first > 0 && power(first - 1) <= half) --first;
  while (last + 1 < device.s.size() && power(last + 1) <= half) ++last;
  const double band = device.frequency[last] - device.frequency[first];
  double delay = 0.0, best = HUGE_VAL;
  for (double step = 0.02 / band; step > 1e-6 / band; step *= 0.2) {
    const double middle = delay;
    for (int k = -20; k <= 20; ++k) {
      const double rms = circle_near(undelayed(device, first, last, middle + k * step)).rms;
      if (rms < best) best = rms, delay = middle + k * step;
    }
  }
  if (best == HUGE_VAL) return 0.0;
  const std::vector<dsp_complex> s = undelayed(device, first, last, delay);
  const dsp_complex centre = circle_near(s).centre;
  const auto angle = [&](const dsp_complex &z) { return std::atan2(z.im - centre.im, z.re - centre.re); };
  const double at_least = angle(s[least - first]);
  const auto half_tangent = [&](const dsp_complex &z) { return std::fabs(std::tan(0.5 * (angle(z) - at_least))); };
  return 0.5 * device.frequency[least] * (half_tangent(s.front()) + half_tangent(s.back())) / band;
}

}  // namespace

std::vector<double> formatted(uint32_t format, const std::vector<dsp_complex> &s) {
  std::vector<double> out(s.size());
  vfpd_FormatBuffer(format, s.data(), out.data(), 0, static_cast<int32_t>(s.size()));
  return out;
}

double largest(const std::vector<double> &x) {
  return x[static_cast<std::size_t>(vfpd_FindMax(x.data(), 0, static_cast<int32_t>(x.size())))];
}

std::string one_port_figure::text() const {
  char buffer[100];
  std::snprintf(buffer, sizeof buffer, format, value);
  return buffer;
}

std::vector<one_port_figure> figures_of_terms(const error_terms &e) {
  return {{"directivity", "directivity", largest(formatted(DSP_FORMAT_LEVEL, e.directivity)), "%8.2f dB at worst"},
          {"source match", "source_match", largest(formatted(DSP_FORMAT_LEVEL, e.source_match)), "%8.2f dB at worst"},
          {"reflection loss", "reflection_loss", largest(formatted(DSP_FORMAT_RETURN_LOSS, e.tracking)),
           "%8.2f dB at most"}};
}

std::vector<one_port_figure> figures_of_device(const reflection &device, std::size_t least) {
  std::vector<one_port_figure> figures = {
      {"  return loss", "return_loss", formatted(DSP_FORMAT_RETURN_LOSS, device.s)[least], "%8.2f dB"},
      {"  standing-wave ratio", "standing_wave_ratio", formatted(DSP_FORMAT_SWR, device.s)[least], "%8.3f"},
      {"  phase", "phase", formatted(DSP_FORMAT_PHASE, device.s)[least], "%8.1f degrees"},
      {"delay", "delay", delay_of(device) * 1e12, "%8.4g ps there and back"}};
  const double quality = quality_of(device, least);
  if (quality > 0.0) figures.push_back({"quality factor", "quality_factor", quality, "%8.2f, loaded"});
  return figures;
}

}  // namespace examples
