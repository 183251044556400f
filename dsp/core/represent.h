// A signal made real or complex, whichever another asks for.
#pragma once

#include "dsp/dsp.h"

namespace dsp {

// What is so already stays as it is.
inline int32_t represent(dsp_vec *v, bool is_complex) { return is_complex ? dspi_rtoc(v) : dspi_real(v); }

}  // namespace dsp
