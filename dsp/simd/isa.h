// Instruction sets. A file named *.isa.cpp is compiled once for each, into the namespace that DSP_ISA names. It
// includes no standard header that defines inline functions: the linker keeps one copy of such a function, and that
// copy might use instructions the processor does not have.
#pragma once

#include <cstdint>

namespace dsp {

enum class isa : int32_t { baseline, avx2, avx512 };

// The best set of this processor that was compiled in, found when the library is loaded, unless a test forced another.
extern isa chosen_isa;
inline isa active_isa() { return chosen_isa; }

// For tests: false, and no change, when this processor or this build does not have it.
bool force_isa(isa wanted);

}  // namespace dsp

// A topic's header defines the struct <topic>_kernel_set, its *.isa.cpp the object <topic>_set of each instruction set.
// DSP_DECLARE_KERNELS(topic) declares those objects, and <topic>_kernels(), this processor's.
#ifdef DSP_ISA_X86
#define DSP_DECLARE_KERNELS(topic)                            \
  namespace baseline {                                        \
  extern const topic##_kernel_set topic##_set;                \
  }                                                           \
  namespace avx2 {                                            \
  extern const topic##_kernel_set topic##_set;                \
  }                                                           \
  namespace avx512 {                                          \
  extern const topic##_kernel_set topic##_set;                \
  }                                                           \
  static inline const topic##_kernel_set &topic##_kernels() { \
    const isa active = active_isa();                          \
    return active == isa::avx512 ? avx512::topic##_set        \
           : active == isa::avx2 ? avx2::topic##_set          \
                                 : baseline::topic##_set;     \
  }
#else
#define DSP_DECLARE_KERNELS(topic)             \
  namespace baseline {                         \
  extern const topic##_kernel_set topic##_set; \
  }                                            \
  static inline const topic##_kernel_set &topic##_kernels() { return baseline::topic##_set; }
#endif
