#include "examples/support/simulated_reflectometer.h"

#include <cmath>
#include <complex>
#include <random>

namespace examples {
namespace {

using complex = std::complex<double>;

constexpr double pi = 3.14159265358979323846;
constexpr double reference = 50.0;
const complex j(0.0, 1.0);

/** A two-port seen from its left side: its reflections on both sides and the product of both transmissions. */
struct two_port {
  complex left, right, both_ways;

  complex seen(complex behind) const { return left + both_ways * behind / (1.0 - right * behind); }

  two_port then(const two_port &next) const {
    const complex loop = 1.0 - right * next.left;
    return {seen(next.left), next.right + next.both_ways * right / loop, both_ways * next.both_ways / (loop * loop)};
  }
};

two_port mismatch(double reflection) { return {reflection, -reflection, 1.0 - reflection * reflection}; }

/** There and back along a line: its delay in seconds one way, its loss in dB one way at 1 GHz (skin effect). */
complex there_and_back(double frequency, double delay, double loss_db) {
  const double nepers = 2.0 * loss_db * std::sqrt(frequency / 1e9) / 8.685889638065037;
  return std::exp(-nepers - j * 4.0 * pi * frequency * delay);
}

complex of_impedance(complex z) { return (z - reference) / (z + reference); }

complex short_standard(double f) { return -there_and_back(f, 31e-12, 0.004); }

complex open_standard(double f) {
  const complex fringe = 1.0 / (j * 2.0 * pi * f * 55e-15);
  return of_impedance(fringe) * there_and_back(f, 29e-12, 0.004);
}

complex load_standard(double f) { return of_impedance(reference + j * 2.0 * pi * f * 60e-12); }

complex antenna(double f) {
  const double resonance = 1.575e9, resistance = 43.0, quality = 9.0;
  const complex z = resistance * (1.0 + j * quality * (f / resonance - resonance / f));
  return of_impedance(z) * there_and_back(f, 180e-12, 0.08);
}

}  // namespace

calibration_set simulate_reflectometer(int32_t points, double noise_db, uint64_t seed, reflection *truth) {
  using curve = complex (*)(double);
  const curve curves[] = {short_standard, open_standard, load_standard, antenna};
  const char *const names[] = {"short", "open", "load", "antenna"};
  calibration_set set;
  std::mt19937_64 engine(seed);
  std::normal_distribution<double> noise(0.0, std::pow(10.0, -noise_db / 20.0) / std::sqrt(2.0));
  for (int k = 0; k < 4; ++k) {
    reflection &actual = k < 3 ? set.actual[k] : *truth;
    reflection &measured = k < 3 ? set.measured[k] : set.device;
    actual.name = std::string(names[k]) + "_actual.s1p";
    measured.name = std::string(names[k]) + "_measured.s1p";
    for (int32_t i = 0; i < points; ++i) {
      const double f = std::round(100e6 + 2900e6 * i / std::max(points - 1, 1));
      const two_port line = {0.0, 0.0, there_and_back(f, 1.7e-9, 0.35)};
      const complex a = curves[k](f);
      const complex g = mismatch(0.04).then(line).then(mismatch(-0.07)).seen(a);
      actual.frequency.push_back(f);
      actual.s.push_back({a.real(), a.imag()});
      measured.frequency.push_back(f);
      measured.s.push_back({g.real() + noise(engine), g.imag() + noise(engine)});
    }
  }
  return set;
}

}  // namespace examples
