// The element-wise loops over two signals, compiled once per instruction set; the same bits on every processor.
#pragma once

#include "dsp/core/sharing.h"
#include "dsp/simd/isa.h"

namespace dsp::elementwise {

// The output is complex when an operand is; w is the weight of the blend. conjugate_product needs a complex b, pair
// real operands.
using binary_loop = void (*)(double *out, const operands &in, double w);

struct binary_kernel_set {
  binary_loop sum, product, conjugate_product, quotient, blend, better, pair;
};

DSP_DECLARE_KERNELS(binary)

}  // namespace dsp::elementwise
