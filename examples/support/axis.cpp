#include "examples/support/axis.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace examples {
namespace {

/** 1, 2 and 5 times the powers of ten within a range of more than a decade; the powers alone from three decades on. */
std::vector<double> decades(double from, double to) {
  std::vector<double> numbers;
  for (double power = std::pow(10.0, std::floor(std::log10(from))); power <= to; power *= 10.0)
    for (const double digit : {1.0, 2.0, 5.0})
      if (power * digit >= from && power * digit <= to && (digit == 1.0 || to < 1000.0 * from))
        numbers.push_back(power * digit);
  return numbers;
}

}  // namespace

frequency_unit unit_for(double greatest) {
  for (const frequency_unit &unit : {frequency_unit{1e9, "GHz"}, {1e6, "MHz"}, {1e3, "kHz"}})
    if (greatest >= 10.0 * unit.hertz) return unit;
  return {1.0, "Hz"};
}

std::vector<double> round_numbers(double lo, double hi, int count) {
  const double rough = (hi - lo) / count, power = std::pow(10.0, std::floor(std::log10(rough)));
  const double step = power * (rough < 1.5 * power   ? 1.0
                               : rough < 3.5 * power ? 2.0
                               : rough < 7.5 * power ? 5.0
                                                     : 10.0);
  std::vector<double> numbers;
  for (double k = std::ceil(lo / step - 1e-9); k * step <= hi + 1e-9 * step; ++k)
    numbers.push_back(k * step + 0.0);  // no minus 0
  return numbers;
}

int decimals_for(double step) { return std::clamp(static_cast<int>(std::ceil(-std::log10(step) - 1e-9)), 0, 15); }

std::string fixed(double value, int decimals) {
  char text[400];
  std::snprintf(text, sizeof text, "%.*f", decimals, value);
  return text;
}

std::string frequency_axis(double from, double to, bool logarithmic) {
  const frequency_unit unit = unit_for(to);
  const std::vector<double> numbers = logarithmic && to > 10.0 * from ? decades(from, to) : round_numbers(from, to, 8);
  double step = to;
  for (std::size_t i = 1; i < numbers.size(); ++i) step = std::min(step, numbers[i] - numbers[i - 1]);
  std::string tics;
  for (const double number : numbers) {
    const double shown = number / unit.hertz;
    char text[64];
    std::snprintf(
        text, sizeof text, "%s'%s' %.15g", tics.empty() ? "" : ", ",
        fixed(shown, logarithmic ? decimals_for(number / unit.hertz) : decimals_for(step / unit.hertz)).c_str(),
        number);
    tics += text;
  }
  char range[80];
  std::snprintf(range, sizeof range, "set xrange [%.15g:%.15g]\n", from, to);
  return range + ("set xtics (" + tics + ")\nset xlabel 'frequency / " + unit.name + "'\n") +
         (logarithmic ? "set logscale x\n" : "");
}

}  // namespace examples
