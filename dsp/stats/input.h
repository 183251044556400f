// The input of a statistic, read before the output, which may be the same record, is written.
#pragma once

#include <cstdint>

#include "dsp/core/sizing.h"
#include "dsp/dsp.h"

namespace dsp::stats {

struct stats_input {
  const double *data;
  int64_t n;
  bool is_complex;
  int width;  // doubles per sample

  explicit stats_input(const dsp_vec &in)
      : data(in.data), n(samples(in)), is_complex(in.is_complex != 0), width(is_complex ? 2 : 1) {}
};

}  // namespace dsp::stats
