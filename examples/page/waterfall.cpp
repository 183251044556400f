#include "examples/page/waterfall.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace examples {

void waterfall::add(const signal &bins) {
  require(dsph_avg(&bins, &power_, &work_, DSP_AVG_MEAN | DSP_AVG_POWER, ++blocks_, 0, -1.0, 0.0), "average a row");
  if (blocks_ < blocks_per_row_) return;
  blocks_ = 0;
  rows_.push_back(row());
  if (is_recording_ && rows_.size() == 512) halve();
}

std::vector<std::vector<double>> waterfall::take_rows() { return std::exchange(rows_, {}); }

std::vector<double> waterfall::row() const {
  std::vector<double> levels;
  for (int32_t i = 0; i < power_.length; i += bins_per_point()) {
    const double *first = power_.data + i;
    const double most = *std::max_element(first, first + std::min(bins_per_point(), power_.length - i));
    levels.push_back(10.0 * std::log10(std::max(most, 1e-40)));
  }
  return levels;
}

/** Of two rows each, the greater levels. */
void waterfall::halve() {
  const auto larger = [](double a, double b) { return std::max(a, b); };
  for (std::size_t i = 0; i < rows_.size() / 2; ++i) {
    rows_[i] = rows_[2 * i];
    std::transform(rows_[i].begin(), rows_[i].end(), rows_[2 * i + 1].begin(), rows_[i].begin(), larger);
  }
  rows_.resize(rows_.size() / 2);
  blocks_per_row_ *= 2;
}

}  // namespace examples
