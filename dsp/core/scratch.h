// The two scratch signals of the library: they live until the caches are released.
#pragma once

#include "dsp/core/work_signal.h"

namespace dsp {

extern work_signal scratch_output;  // stands in for an output that shares its input's buffer
extern work_signal scratch_state;   // the state of a routine whose caller passed none

}  // namespace dsp
