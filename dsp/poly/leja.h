// Leja's order of points: the largest first, then always the point with the largest product of distances from those
// before it. The coefficients of the partial products of z - z[k] then stay small. (Calvetti and Reichel, BIT 43,
// 2003.)
#pragma once

#include <cstdint>

#include "dsp/dsp.h"

namespace dsp::poly {

// Sorts z[0..n). -1: no memory.
int32_t sort_leja(dsp_complex *z, int32_t n);

}  // namespace dsp::poly
