// The lowpass that keeps every second output, of which the sample-rate converter is made. Defined by the filters.
#pragma once

#include <cstdint>

#include "dsp/dsp.h"

namespace dsp::filter {

// dspd_sfir(in, scratch, half, odd, 0, history), then dspd_deci(scratch, out, 2, phase): the same numbers and states
// for half the work. `out` may be `in`; `scratch` is neither, and only filters too long to fold use it. `history`
// and `phase` are records.
int32_t decimate_by_two(const dsp_vec *in, dsp_vec *out, dsp_vec *scratch, const dsp_vec *half, bool odd,
                        dsp_vec *history, dsp_vec *phase);

}  // namespace dsp::filter
