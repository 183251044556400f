#pragma once

#include <cstdint>
#include <vector>

#include "examples/support/least_squares.h"
#include "examples/support/signal.h"

namespace examples {

/** A tone and its harmonics, which show as lines in the spectrum of a record: places and errors in bins, amplitudes in
 * the record's own unit. */
struct tone_fit {
  double bin, amplitude;
  double bin_error, amplitude_error;  // by the rest of the spectrum, and by an amplitude that changes
};

/** Fits lines to the bins of a windowed spectrum, several at once where they are so close to each other, to frequency 0
 * or to half the sample rate that one reaches into the next. The window is a squared Hann window: its line is 3 bins
 * wide to either side and falls by 30 dB an octave beyond. */
class line_fit {
 public:
  explicit line_fit(const dsp_vec &record);

  double half_rate() const { return n_ / 2.0; }  // in bins
  /** The place of the strongest line within lo ... hi bins, to a quarter of a bin; -1 in silence. */
  double strongest(double lo, double hi) const;
  /** The tone near `bin`, with those of its harmonics 2 ... `harmonics` that lie close. */
  tone_fit tone(double bin, int harmonics) const;
  /** The amplitudes of harmonics 1 ... `harmonics` of a tone whose place is known; NaN: not to be told from another. */
  std::vector<double> amplitudes(double bin, int harmonics) const;
  /** Where harmonic h of a tone shows after folding at both ends; *slope is how its place follows the tone's. */
  double folded(double bin, int h, double *slope = nullptr) const;

 private:
  struct range {
    int32_t first, last;
  };
  struct harmonic {
    double bin, slope;
  };
  double kernel(double offset) const;
  double kernel_slope(double offset) const;
  range around(double lo, double hi, double margin) const;
  column data(const range &rows) const;
  column cosine(double bin, const range &rows) const;
  column sine(double bin, const range &rows) const;
  column slope_of_line(double bin, double a, double b, const range &rows) const;
  column curvature_of_line(double bin, double a, double b, const range &rows) const;
  std::vector<column> model(const std::vector<harmonic> &lines, const range &rows) const;
  std::vector<harmonic> neighbours(double bin, int harmonics) const;
  struct step;
  step step_from(double bin, int harmonics) const;
  double rest_of(const least_squares &fit, const range &fitted_rows, std::size_t unknowns, double bin) const;
  double variation(const step &s, double bin) const;
  double explained(double bin, const range &rows, double silent) const;

  double n_;
  signal bins_;  // complex, 0 ... n/2; phase 0 in the middle of the record
};

}  // namespace examples
