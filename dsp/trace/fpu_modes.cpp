// The modes of the floating-point unit, as bits of the VFP's FPSCR: bit 24 flushes subnormal numbers to zero, bit 25
// selects the default NaN, bits 22 and 23 the rounding.
#include <cstdint>

#include "dsp/dsp.h"

#if defined(__SSE2_MATH__) || defined(_M_X64)
#include <xmmintrin.h>
#endif

namespace dsp::trace {
namespace {

constexpr uint32_t flush_to_zero = 1u << 24;
constexpr uint32_t default_nan = 1u << 25;

// For each unit: read_modes(), and write_modes(value, changing), which writes the bits in `changing` and keeps all
// others as the host has set them.

#if defined(__arm__) && defined(__VFP_FP__) && !defined(__SOFTFP__)

uint32_t read_modes() {
  uint32_t value;
  __asm__ volatile("vmrs %0, fpscr" : "=r"(value));
  return value;
}

void write_modes(uint32_t value, uint32_t) { __asm__ volatile("vmsr fpscr, %0" : : "r"(value) : "memory"); }

#elif defined(__aarch64__)

uint32_t read_modes() {
  uint64_t value;
  __asm__ volatile("mrs %0, fpcr" : "=r"(value));
  return static_cast<uint32_t>(value);
}

void write_modes(uint32_t value, uint32_t) { __asm__ volatile("msr fpcr, %0" : : "r"(uint64_t{value}) : "memory"); }

#elif defined(__SSE2_MATH__) || defined(_M_X64)

// MXCSR has the same modes at other bits, and its rounding modes 1 and 2 are exchanged.
constexpr uint32_t mxcsr_flush = 0x8000 | 0x0040;  // results and operands
constexpr uint32_t swap_bits(uint32_t two) { return (two & 1) << 1 | two >> 1; }

uint32_t from_mxcsr(uint32_t mxcsr) {
  return ((mxcsr & mxcsr_flush) == mxcsr_flush ? flush_to_zero : 0) | swap_bits(mxcsr >> 13 & 3) << 22;
}

uint32_t to_mxcsr(uint32_t modes) {
  return ((modes & flush_to_zero) != 0 ? mxcsr_flush : 0) | swap_bits(modes >> 22 & 3) << 13;
}

// A thread inherits the unit's modes, so its stored word starts from them.
thread_local uint32_t word = from_mxcsr(_mm_getcsr());

uint32_t read_modes() { return word; }

void write_modes(uint32_t value, uint32_t changing) {
  const uint32_t mask = to_mxcsr(changing);
  word = value;
  _mm_setcsr((_mm_getcsr() & ~mask) | (to_mxcsr(value) & mask));
}

#else  // no such modes: a variable stores the word

uint32_t word = 0;

uint32_t read_modes() { return word; }

void write_modes(uint32_t value, uint32_t) { word = value; }

#endif

}  // namespace
}  // namespace dsp::trace

using namespace dsp;
using namespace dsp::trace;

uint32_t get_fpscr(void) { return read_modes(); }

uint32_t set_fpscr(uint32_t value) {
  const uint32_t before = read_modes();
  write_modes(value, ~0u);
  return before;
}

uint32_t set_runfast(int32_t on) {
  constexpr uint32_t run_fast = flush_to_zero | default_nan;
  const uint32_t value = on != 0 ? read_modes() | run_fast : read_modes() & ~run_fast;
  write_modes(value, run_fast);
  return value;
}
