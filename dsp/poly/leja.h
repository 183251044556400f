// Leja's order of points: the largest first, then always the one whose distances from all before it have the largest
// product. Partial products of (z - z[k]) then stay about as small as they can. (Calvetti and Reichel, BIT 43, 2003.)
#pragma once

#include <cstdint>

#include "dsp/dsp.h"

namespace dsp::poly {

// Sorts z[0..n). -1: no memory.
int32_t sort_leja(dsp_complex *z, int32_t n);

}  // namespace dsp::poly
