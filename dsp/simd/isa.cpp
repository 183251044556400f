#include "dsp/simd/isa.h"

// GCOVR_EXCL_BR_START: one processor takes one way
namespace dsp {
namespace {

bool supported(isa wanted) {
#ifdef DSP_ISA_X86
  __builtin_cpu_init();
  const bool avx2 = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
  if (wanted == isa::avx2) return avx2;
  if (wanted == isa::avx512)
    return avx2 && __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq") &&
           __builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("avx512bw");
#endif
  return wanted == isa::baseline;
}

isa best() { return supported(isa::avx512) ? isa::avx512 : supported(isa::avx2) ? isa::avx2 : isa::baseline; }

}  // namespace

isa chosen_isa = best();

bool force_isa(isa wanted) {
  if (!supported(wanted)) return false;
  chosen_isa = wanted;
  return true;
}

}  // namespace dsp
// GCOVR_EXCL_BR_STOP
