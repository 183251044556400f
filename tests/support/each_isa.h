// Checks repeated on every instruction set that the processor has.
#pragma once

#include <gtest/gtest.h>

#include "dsp/simd/isa.h"

namespace support {

template <class Check>
void on_each_isa(const Check &check) {
  const dsp::isa best = dsp::active_isa();
  for (const dsp::isa set : {dsp::isa::baseline, dsp::isa::avx2, dsp::isa::avx512}) {
    SCOPED_TRACE(testing::Message() << "instruction set " << static_cast<int>(set));
    if (dsp::force_isa(set)) check();
  }
  dsp::force_isa(best);
}

}  // namespace support
