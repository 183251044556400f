#pragma once

#include <cstdint>

#include "examples/support/touchstone.h"

namespace examples {

/** Three standards, measured and actual, and a device as measured: what a calibration starts from. */
struct calibration_set {
  reflection measured[3];
  reflection actual[3];
  reflection device;
};

/** A reflectometer at the end of a lossy cable between two mismatched connectors, 100 MHz to 3 GHz: it measures a
 * short, an open and a load as they are made, and an antenna behind a piece of line, each with noise so many dB below
 * full reflection. The antenna as it really is comes back in *truth. The same seed gives the same set. */
calibration_set simulate_reflectometer(int32_t points, double noise_db, uint64_t seed, reflection *truth);

}  // namespace examples
