// Copying, cutting, appending.
#include <algorithm>
#include <cstdint>

#include "dsp/core/move_doubles.h"
#include "dsp/core/sharing.h"
#include "dsp/core/sizing.h"
#include "dsp/dsp.h"

using namespace dsp;

int32_t dspu_subvec(const dsp_vec *src, dsp_vec *dst, int32_t start, int32_t count) {
  const int32_t length = samples(*src);
  const int32_t first = std::clamp(start, 0, length);
  const int32_t n = std::clamp(count, 0, length - first);
  const bool is_complex = src->is_complex != 0;
  const double *from = src->data;  // read before dst, which may be src, is sized and loses a borrowed buffer
  dst->dx = src->dx;
  dst->is_complex = is_complex;
  dst->length = n;
  if (dsp_alloc(dst) != 0) return -1;
  dsp_move_doubles(dst->data, from + doubles_of(first, is_complex),
                   static_cast<std::size_t>(doubles_of(n, is_complex)) * sizeof(double));
  return 0;
}

int32_t dsp_copy(dsp_vec *dst, const dsp_vec *src) { return dspu_subvec(src, dst, 0, src->length); }

int32_t dsp_copy_at_most(dsp_vec *dst, const dsp_vec *src, int32_t count) { return dspu_subvec(src, dst, 0, count); }

int32_t dsp_append(dsp_vec *dst, const dsp_vec *src) {
  const int32_t old = samples(*dst);
  const int32_t added = samples(*src);
  if (dst == src || lies_within(*src, *dst) || added > INT32_MAX - old) return -1;
  if (src->is_complex != 0 && dst->is_complex == 0 && dspi_rtoc(dst) != 0) return -1;
  dst->length = old + added;
  if (dsp_realloc(dst, old, dst->is_complex) != 0) return -1;
  if (added == 0) return 0;
  double *to = dst->data + doubles_of(old, dst->is_complex != 0);
  if ((src->is_complex != 0) == (dst->is_complex != 0)) {
    dsp_move_doubles(to, src->data, static_cast<std::size_t>(doubles(*src)) * sizeof(double));
  } else {
    for (int32_t i = 0; i < added; ++i, to += 2) {
      to[0] = src->data[i];
      to[1] = 0.0;
    }
  }
  return 0;
}
