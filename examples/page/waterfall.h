#pragma once

#include <vector>

#include "examples/support/signal.h"

namespace examples {

/** The rows of a waterfall, one for each so many blocks: their mean power in dB, as the greatest of every few bins. */
class waterfall {
 public:
  /** For a recording, blocks_per_row doubles whenever there are 512 rows; a live display takes its rows in time. */
  waterfall(int32_t blocks_per_row, bool is_recording) : blocks_per_row_(blocks_per_row), is_recording_(is_recording) {}

  void add(const signal &bins);

  int32_t blocks_per_row() const { return blocks_per_row_; }
  double bin_spacing() const { return bins_per_point() * power_.dx; }

  /** Hands out the rows since the last call. */
  std::vector<std::vector<double>> take_rows();

 private:
  int32_t bins_per_point() const { return (power_.length + 1023) / 1024; }
  std::vector<double> row() const;
  void halve();

  int32_t blocks_per_row_, blocks_ = 0;
  bool is_recording_;
  signal power_, work_;
  std::vector<std::vector<double>> rows_;
};

}  // namespace examples
