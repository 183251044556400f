#pragma once

#include <string>
#include <vector>

#include "examples/support/window_line.h"

namespace examples {

struct peak {
  double bin, level;
};

/** The strongest peaks of a spectrum in dB between two frequencies, strongest first, their places refined between the
 * bins by the window's `line`: maxima that stand out by 6 dB and are no side lobes. The main lobe at frequency 0 holds
 * an offset, no tone. */
std::vector<peak> find_peaks(const signal &spectrum, const window_line &line, double from, double to, int64_t most);

/** A peak as readers see it, in Hz and dB; bins are `dx` apart. */
struct peak_text {
  std::string frequency, level;
};
peak_text text_of(const peak &p, double dx);

}  // namespace examples
