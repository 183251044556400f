#pragma once

#include <string>
#include <vector>

namespace examples {

/** A unit in which the greatest of some frequencies is a handy number. */
struct frequency_unit {
  double hertz;
  const char *name;
};
frequency_unit unit_for(double greatest);

/** Round numbers within lo ... hi, about `count` of them, 1, 2 or 5 times a power of ten apart. */
std::vector<double> round_numbers(double lo, double hi, int count);

/** As few decimals as tell numbers apart that lie `step` from each other. */
int decimals_for(double step);

std::string fixed(double value, int decimals);

/** Commands for a frequency axis in hertz, whose label names the unit of the numbers on it. */
std::string frequency_axis(double from, double to, bool logarithmic);

}  // namespace examples
