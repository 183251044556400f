// The result of a statistic: a signal of one sample that keeps its dx. Written after the last input sample has been
// read, since the output may be the input.
#pragma once

#include <cstdint>

#include "dsp/dsp.h"

namespace dsp::stats {

inline int32_t put_sample(dsp_vec *out, bool is_complex, double re, double im) {
  out->length = 1;
  out->is_complex = is_complex;
  if (dsp_alloc(out) != 0) return -1;
  out->data[0] = re;
  if (is_complex) out->data[1] = im;
  return 0;
}

inline int32_t put_number(dsp_vec *out, double value) { return put_sample(out, false, value, 0.0); }

}  // namespace dsp::stats
