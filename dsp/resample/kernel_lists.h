// The built-in interpolation kernels: coefficient lists, the number of taps first.
#pragma once

#include <cstdint>

#include "dsp/dsp.h"

namespace dsp::resample {

struct kernel_list {
  const double *coefficients;
  int32_t count;
  int32_t (*build)(dsp_vec *v, const dsp_vec *c);
  int32_t table_length;  // that dspd_rsmp2 uses
};

// Null for a kind that does not exist.
const kernel_list *find_kernel_list(int32_t kind);

}  // namespace dsp::resample
