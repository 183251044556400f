// Instruction sets. A file named *.isa.cpp is compiled once for each, with DSP_ISA naming the namespace its kernels
// live in; its family keeps one table of kernels per set and asks active_isa() which to use. Such a file includes no
// standard header that defines inline functions: the linker would keep one copy of them, perhaps not the one every
// processor can run.
#pragma once

#include <cstdint>

namespace dsp {

enum class isa : std::int32_t { baseline, avx2, avx512 };

// The best set of this processor that was compiled in, found when the library is loaded, unless a test forced another.
extern isa chosen_isa;
inline isa active_isa() { return chosen_isa; }

// For tests: false, and no change, when this processor or this build does not have it.
bool force_isa(isa wanted);

}  // namespace dsp

// Picks this processor's entry: DSP_KERNELS(fft_kernels) is dsp::baseline::fft_kernels or one of its siblings. The
// tables are declared with DSP_DECLARE_KERNELS(type, name) at namespace dsp.
#ifdef DSP_ISA_X86
#define DSP_DECLARE_KERNELS(type, name) \
  namespace baseline {                  \
  extern const type name;               \
  }                                     \
  namespace avx2 {                      \
  extern const type name;               \
  }                                     \
  namespace avx512 {                    \
  extern const type name;               \
  }
#define DSP_KERNELS(name)                                          \
  (::dsp::active_isa() == ::dsp::isa::avx512 ? ::dsp::avx512::name \
   : ::dsp::active_isa() == ::dsp::isa::avx2 ? ::dsp::avx2::name   \
                                             : ::dsp::baseline::name)
#else
#define DSP_DECLARE_KERNELS(type, name) \
  namespace baseline {                  \
  extern const type name;               \
  }
#define DSP_KERNELS(name) (::dsp::baseline::name)
#endif
