#pragma once

#include <string>
#include <vector>

#include "examples/support/simulated_reflectometer.h"
#include "examples/support/touchstone.h"

namespace examples {

/** Reads seven files: three standards, each as measured and as it is, and the device. "short", "open" and "load" are
 * ideal ones. */
calibration_set read_set(const std::vector<std::string> &files);

/** Fails unless all have the same frequencies and the standards differ everywhere. */
void require_three_standards(const calibration_set &set);

struct error_terms {
  std::vector<dsp_complex> directivity, source_match, tracking;
};
error_terms terms_of(const calibration_set &set);

/** The device as it is. */
reflection corrected(const reflection &device, const error_terms &e);

dsp_complex product(const dsp_complex &a, const dsp_complex &b);

}  // namespace examples
