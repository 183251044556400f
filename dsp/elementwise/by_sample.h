// Calls f(samples, count) with a signal's samples by their own type.
#pragma once

#include "dsp/core/sizing.h"
#include "dsp/dsp.h"
#include "dsp/simd/traversal.h"

namespace dsp::elementwise {

template <class F>
void by_sample(dsp_vec *v, F f) {
  if (v->is_complex != 0)
    f(as<dsp_complex>(v->data), samples(*v));
  else
    f(v->data, samples(*v));
}

}  // namespace dsp::elementwise
