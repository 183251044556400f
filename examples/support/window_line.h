#pragma once

#include <cstdint>

#include "examples/support/signal.h"

namespace examples {

/** The line that a tone shows in a windowed spectrum: `active` samples under the window, zeros up to `grid`. Distances
 * are in bins of the grid, powers relative to the line's centre. */
class window_line {
 public:
  window_line(dsp_window_type window, int32_t active, int32_t grid);

  /** Half of the main lobe, down to -40 dB; half the grid when the line does not fall so far. */
  int32_t half_width() const { return half_width_; }
  /** The highest side lobe at this distance or beyond, in dB. */
  double side_lobe(double distance) const;
  /** How far the line's centre lies from the highest bin i of a spectrum in dB, and how much higher, in dB. */
  void centre(const signal &levels, int32_t i, double *offset, double *rise) const;

 private:
  double power(double distance) const;

  signal window_, side_lobes_;  // side_lobes_[k]: at k / 8 bins of the unpadded window and beyond, in dB
  double widening_;             // bins of the grid in one of the unpadded window
  int32_t half_width_, shoulder_;
};

}  // namespace examples
