// Where a result is built, apart from the argument that stays as it is when something fails, and how it gets there.
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

// Makes `to` what `result` is: in a buffer that has room for `room` doubles, or else in that of `result`.
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

// A borrowed buffer is replaced, as dsp_alloc does.
inline void put(dsp_vec *result, dsp_vec *out) { hand_over(result, out, out->capacity); }

// A borrowed buffer serves if the signal that it holds is large enough.
inline void replace(dsp_vec *v, dsp_vec *result) { hand_over(result, v, v->capacity > 0 ? v->capacity : doubles(*v)); }

}  // namespace dsp::poly
