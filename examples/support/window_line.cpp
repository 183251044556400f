#include "examples/support/window_line.h"

#include <algorithm>
#include <cmath>

namespace examples {
namespace {

constexpr double pi = 3.14159265358979323846;
constexpr int32_t steps = 8;  // of the table, in a bin of the window

/** The first place of a table at which the line has fallen this far; its length if nowhere. */
int32_t first_below(const signal &table, double decibels) {
  int32_t k = 0;
  while (k < table.length && table[k] > decibels) ++k;
  return k;
}

}  // namespace

window_line::window_line(dsp_window_type window, int32_t active, int32_t grid)
    : window_(std::min(active, 2048)), widening_(static_cast<double>(grid) / active) {
  for (int32_t i = 0; i < window_.length; ++i) window_[i] = 1.0;
  require(dspi_window(&window_, window, DSP_WND_RAW | DSP_WND_NO_SWAP), "make the window");
  const int32_t n = steps * window_.length;
  require(dsp_copy(&side_lobes_, &window_), "copy the window");
  require(dspi_zpad(&side_lobes_, n), "pad the window");
  require(dspi_rdft(&side_lobes_), "transform the window");
  require(dspi_magsq(&side_lobes_), "square the window's spectrum");
  require(dspi_scale(&side_lobes_, 1.0 / side_lobes_[0]), "scale the window's spectrum");
  require(dspi_db(&side_lobes_, 10.0), "convert the window's spectrum to dB");
  const double to_grid = widening_ / steps;
  half_width_ = std::min(static_cast<int32_t>(std::ceil(first_below(side_lobes_, -40.0) * to_grid)), grid / 2);
  shoulder_ = std::max(static_cast<int32_t>(std::lround(first_below(side_lobes_, -6.0) * to_grid)), 1);
  // From the first valley on, the table keeps the highest of what follows.
  int32_t valley = first_below(side_lobes_, -6.0);
  while (valley + 1 < side_lobes_.length && side_lobes_[valley + 1] < side_lobes_[valley]) ++valley;
  for (int32_t k = side_lobes_.length - 2; k >= valley; --k)
    side_lobes_[k] = std::max(side_lobes_[k], side_lobes_[k + 1]);
  for (int32_t k = 0; k < std::min(valley, side_lobes_.length); ++k)
    side_lobes_[k] = side_lobes_[std::min(valley, side_lobes_.length - 1)];
}

double window_line::side_lobe(double distance) const {
  return side_lobes_[static_cast<int32_t>(std::min(distance / widening_ * steps, side_lobes_.length - 1.0))];
}

double window_line::power(double distance) const {
  const int32_t n = window_.length;
  double sum = 0.0;
  for (int32_t i = 0; i < n; ++i) sum += window_[i] * std::cos(2.0 * pi * distance / widening_ * (i - n / 2) / n);
  return sum * sum;
}

void window_line::centre(const signal &levels, int32_t i, double *offset, double *rise) const {
  *offset = *rise = 0.0;
  if (i < shoulder_ || i + shoulder_ >= levels.length) return;
  // The two shoulders balance where the line's centre is; below -30 dB they are lost in what else there is.
  const double left = levels[i - shoulder_], right = levels[i + shoulder_];
  if (std::max(left, right) < levels[i] - 30.0) return;
  const double ratio = std::pow(10.0, -std::abs(right - left) / 10.0);
  double lo = 0.0, hi = std::max(shoulder_ / 2.0, 0.5);
  for (int halving = 0; halving < 32; ++halving) {
    const double middle = (lo + hi) / 2.0;
    (power(shoulder_ + middle) > ratio * power(shoulder_ - middle) ? lo : hi) = middle;
  }
  *rise = -10.0 * std::log10(power(lo) / power(0.0));
  *offset = right > left ? lo : -lo;
}

}  // namespace examples
