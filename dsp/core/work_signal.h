// A signal that the library keeps from its first use until the caches are released. Plain data in static storage, empty
// at load time.
#pragma once

#include "dsp/dsp.h"

namespace dsp {

struct work_signal {
  dsp_vec signal;
  bool initialised;

  dsp_vec *obtain() {
    if (!initialised) dsp_init(&signal);
    initialised = true;
    return &signal;
  }

  int32_t release() {
    initialised = false;
    return dsp_destroy(&signal);
  }
};

}  // namespace dsp
