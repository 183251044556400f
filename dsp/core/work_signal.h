// A signal of the library's own that lives from its first use to the release of the caches. Static storage, plain data:
// empty at load time.
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
