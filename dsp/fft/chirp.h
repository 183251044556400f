// The transform of any length as a convolution with a chirp (Bluestein 1970).
#pragma once

#include "dsp/dsp.h"

namespace dsp::fft {

// n = v->length >= 3; forward with the factor 1/n. Leaves v->dx as it is.
int32_t chirp_dft(dsp_vec *v, bool inverse);

}  // namespace dsp::fft
