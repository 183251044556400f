#include "examples/support/one_port_calibration.h"

#include <cmath>
#include <utility>

#include "examples/support/failure.h"

namespace examples {
namespace {

reflection read_actual(const std::string &word, const reflection &measured) {
  const std::pair<const char *, double> ideals[] = {{"short", -1.0}, {"open", 1.0}, {"load", 0.0}};
  for (const auto &[name, coefficient] : ideals) {
    if (word != name) continue;
    reflection r = measured;
    r.name = word;
    r.s.assign(measured.s.size(), {coefficient, 0.0});
    return r;
  }
  return read_touchstone(word);
}

}  // namespace

calibration_set read_set(const std::vector<std::string> &files) {
  if (files.size() != 7)
    throw failure("three standards, each measured and actual, and a device are seven files, not " +
                  std::to_string(files.size()) + "; --help tells more");
  calibration_set set;
  for (std::size_t k = 0; k < 3; ++k) {
    set.measured[k] = read_touchstone(files[2 * k]);
    set.actual[k] = read_actual(files[2 * k + 1], set.measured[k]);
  }
  set.device = read_touchstone(files[6]);
  return set;
}

void require_three_standards(const calibration_set &set) {
  for (int k = 0; k < 3; ++k) {
    require_same_sweep(set.device, set.measured[k]);
    require_same_sweep(set.device, set.actual[k]);
  }
  for (int k = 0; k < 3; ++k) {
    const reflection &one = set.actual[k], &next = set.actual[(k + 1) % 3];
    for (std::size_t i = 0; i < one.s.size(); ++i)
      if (std::hypot(one.s[i].re - next.s[i].re, one.s[i].im - next.s[i].im) < 1e-6)
        throw failure(one.name + " and " + next.name + " are the same standard at " + hertz(one.frequency[i]) +
                      "; a calibration takes three different ones");
  }
}

error_terms terms_of(const calibration_set &set) {
  error_terms e = {set.measured[0].s, set.measured[1].s, set.measured[2].s};
  Compute1PortTerms(e.directivity.data(), e.source_match.data(), e.tracking.data(), set.actual[0].s.data(),
                    set.actual[1].s.data(), set.actual[2].s.data(), 0, set.device.points());
  return e;
}

dsp_complex product(const dsp_complex &a, const dsp_complex &b) {
  return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
}

// The error box maps the actual coefficient a to (p a + e00) / (1 - e11 a), p = e10e01 - e00 e11: a quotient of two
// linear forms. The inverse of their matrix, applied to (g, 1), gives those of a.
reflection corrected(const reflection &device, const error_terms &e) {
  reflection r = device;
  r.name = "corrected";
  for (std::size_t i = 0; i < r.s.size(); ++i) {
    const dsp_complex e00 = e.directivity[i], e11 = e.source_match[i], both = product(e00, e11);
    dsp_complex box[] = {{e.tracking[i].re - both.re, e.tracking[i].im - both.im}, e00, {-e11.re, -e11.im}, {1.0, 0.0}};
    const dsp_complex measured[] = {device.s[i], {1.0, 0.0}};
    dsp_complex actual[2];
    if (invert(box, 2) == 0 || MatrixMult(box, measured, actual, 2, 2, 1) != 2 || invert(&actual[1], 1) == 0)
      throw failure("the standards do not tell the errors at " + hertz(r.frequency[i]));
    r.s[i] = product(actual[0], actual[1]);
  }
  return r;
}

}  // namespace examples
