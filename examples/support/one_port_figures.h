#pragma once

#include <string>
#include <vector>

#include "examples/support/one_port_calibration.h"

namespace examples {

/** Reflections as DSP_FORMAT_LEVEL and its like show them. */
std::vector<double> formatted(uint32_t format, const std::vector<dsp_complex> &s);
double largest(const std::vector<double> &x);

/** A figure of a report: its line in the table, and its name among the members of the object of JSON. */
struct one_port_figure {
  const char *label, *member;
  double value;
  const char *format;

  /** The value with its unit. */
  std::string text() const;
};

std::vector<one_port_figure> figures_of_terms(const error_terms &e);

/** What the device is at a point, its delay, and its quality factor if it is a resonator whose least reflection is
 * there. */
std::vector<one_port_figure> figures_of_device(const reflection &device, std::size_t least);

}  // namespace examples
