// Results are built in a temporary signal and moved to the output at the end: an output that is also the input keeps
// its samples when something fails.
#pragma once

#include <algorithm>
#include <cstdint>
#include <utility>

#include "dsp/core/sizing.h"
#include "dsp/dsp.h"

namespace dsp::poly {

inline dsp_complex *complex_samples(const dsp_vec &v) { return reinterpret_cast<dsp_complex *>(v.data); }

inline int32_t size_as(dsp_vec *v, int32_t length, bool is_complex) {
  v->length = length;
  v->is_complex = is_complex ? 1 : 0;
  return dsp_alloc(v);
}

// Moves `result` to `to`: into its buffer if `room` doubles are enough, else together with its buffer.
inline void hand_over(dsp_vec *result, dsp_vec *to, int64_t room) {
  const int64_t need = doubles(*result);
  if (need > room) {
    std::swap(to->data, result->data);
    std::swap(to->capacity, result->capacity);
  } else {
    std::copy_n(result->data, need, to->data);
  }
  to->length = result->length;
  to->is_complex = result->is_complex;
  to->dx = 1.0;
}

// The result of a routine with an output of its own. A borrowed buffer is replaced, as dsp_alloc does.
inline void put(dsp_vec *result, dsp_vec *out) { hand_over(result, out, out->capacity); }

// The result of a routine that works in place. A borrowed buffer is kept if it holds as many doubles.
inline void replace(dsp_vec *v, dsp_vec *result) { hand_over(result, v, v->capacity > 0 ? v->capacity : doubles(*v)); }

}  // namespace dsp::poly
