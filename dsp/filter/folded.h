// Filters given by their first half.
#pragma once

#include <cstdint>

#include "dsp/dsp.h"
#include "dsp/filter/fir_direct.h"

namespace dsp::filter {

inline int64_t full_length(const dsp_vec &half, bool odd) { return 2 * int64_t{half.length} - (odd ? 1 : 0); }

// Whether the filter is real and short enough to add mirrored samples before the product.
inline bool foldable(const dsp_vec &half, bool odd) {
  return half.is_complex == 0 && half.length > 0 && full_length(half, odd) <= folded_limit;
}

inline folded_filter fold(const dsp_vec &half, bool odd, bool anti) {
  return {half.data, half.length - (odd ? 1 : 0), odd, anti};
}

}  // namespace dsp::filter
