// The rows of the interpolation kernel that was used last.
#pragma once

#include "dsp/resample/fractional_kernels.h"
#include "dsp/resample/kernel_table.h"

namespace dsp::resample {

// Rows for kernel `k`, not all of them filled; valid until the next call. Null: no memory.
kernel_rows *obtain_rows(const kernel &k);

void free_rows();

}  // namespace dsp::resample
