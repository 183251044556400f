#pragma once

#include <string>
#include <vector>

#include "dsp/dsp.h"

namespace examples {

/** How a Touchstone file writes a complex number: real and imaginary part, magnitude and angle in degrees, or decibels
 * and angle. */
enum class number_format { ri, ma, db };

/** The reflection coefficient of a one-port over frequency, as a .s1p file (Touchstone, version 1) holds it. */
struct reflection {
  std::string name;               // of the file
  std::vector<double> frequency;  // Hz, rising
  std::vector<dsp_complex> s;
  double resistance = 50.0;  // the reference

  int32_t points() const { return static_cast<int32_t>(s.size()); }
};

/** Reads a file; all that is wrong with it is a failure that names file and line. */
reflection read_touchstone(const std::string &path);

/** The text of a file in Hz; each line of `comment` becomes a comment. */
std::string touchstone(const reflection &r, number_format format, const std::string &comment);

/** Fails unless both have the same frequencies (to a part in 10^9) and reference resistance. */
void require_same_sweep(const reflection &a, const reflection &b);

/** A frequency with its unit, to four digits. */
std::string hertz(double frequency);

}  // namespace examples
