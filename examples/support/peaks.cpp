#include "examples/support/peaks.h"

#include <algorithm>
#include <cmath>

#include "examples/support/axis.h"

namespace examples {
namespace {

/** Does it rise 6 dB above the valleys towards higher maxima, or towards the ends? */
bool stands_out(const signal &spectrum, int32_t i) {
  constexpr double excursion = 6.0;
  for (int32_t step : {-1, 1}) {
    double valley = spectrum[i];
    for (int32_t k = i + step; k >= 0 && k < spectrum.length && spectrum[k] <= spectrum[i]; k += step)
      valley = std::min(valley, spectrum[k]);
    if (spectrum[i] - valley < excursion) return false;
  }
  return true;
}

/** The local maxima beyond bin `first` that stand out, strongest first. */
std::vector<int32_t> maxima_of(const signal &spectrum, int32_t first) {
  std::vector<int32_t> maxima;
  for (int32_t i = first; i < spectrum.length - 1; ++i)
    if (spectrum[i] > spectrum[i - 1] && spectrum[i] >= spectrum[i + 1] && stands_out(spectrum, i)) maxima.push_back(i);
  std::stable_sort(maxima.begin(), maxima.end(), [&](int32_t a, int32_t b) { return spectrum[a] > spectrum[b]; });
  return maxima;
}

/** Is it no more than a side lobe of one of these lines, or of several that add up? */
bool is_side_lobe(const signal &spectrum, int32_t i, const std::vector<peak> &lines, const window_line &line) {
  constexpr double margin = 4.0;
  for (const peak &p : lines)
    if (spectrum[i] < p.level + line.side_lobe(std::abs(i - p.bin)) + margin) return true;
  return false;
}

peak refined(const signal &spectrum, int32_t i, const window_line &line) {
  double offset = 0.0, rise = 0.0;
  line.centre(spectrum, i, &offset, &rise);
  return {i + offset, spectrum[i] + rise};
}

}  // namespace

std::vector<peak> find_peaks(const signal &spectrum, const window_line &line, double from, double to, int64_t most) {
  const int32_t last = spectrum.length - 1;
  // Both ends of the spectrum, which were not doubled, are lines like the others in what they leak.
  std::vector<peak> lines = {{0.0, spectrum[0] + 6.02}, {static_cast<double>(last), spectrum[last] + 6.02}}, peaks;
  for (const int32_t i : maxima_of(spectrum, line.half_width())) {
    if (static_cast<int64_t>(peaks.size()) == most) break;
    const bool is_shown = i * spectrum.dx >= from && i * spectrum.dx <= to;
    const bool is_strong = lines.size() < 100;  // weaker ones leak less than these
    if ((!is_shown && !is_strong) || is_side_lobe(spectrum, i, lines, line)) continue;
    const peak found = refined(spectrum, i, line);
    if (is_strong) lines.push_back(found);
    if (is_shown) peaks.push_back(found);
  }
  std::stable_sort(peaks.begin(), peaks.end(), [](const peak &a, const peak &b) { return a.level > b.level; });
  return peaks;
}

peak_text text_of(const peak &p, double dx) {
  const int decimals = std::clamp(static_cast<int>(3.0 - std::floor(std::log10(dx))), 0, 9);
  return {fixed(p.bin * dx, decimals), fixed(p.level, 2)};
}

}  // namespace examples
