// The zeros of a polynomial by modulus, then by phase.
#pragma once

#include <cstdint>

#include "dsp/dsp.h"
#include "dsp/poly/polynomial.h"

namespace dsp::poly {

// z receives p.zeros() zeros. -1: no memory, or a zero is too large for a double.
int32_t find_zeros(const polynomial &p, dsp_complex *z);

}  // namespace dsp::poly
