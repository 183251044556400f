// The whole interface in one table, for tests that ask the same of every routine.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "tests/support/record.h"

namespace support {

// One call: the signals in the order of the routine's arguments, the number of the row's variant, and room for results
// that are not signals.
struct call {
  dsp_vec *const *signals;
  int variant;
  reals numbers;

  dsp_vec *operator[](std::size_t i) const { return signals[i]; }
  int32_t gives(double x) { return numbers.push_back(x), 0; }
};

// Why a routine has no result to be expected everywhere.
enum : uint64_t {
  of_functions = 1,  // the C library's mathematical functions
  of_transforms = 2  // transforms, whose kernels fuse products where the processor does
};

struct routine {
  const char *name;  // as in dsp.h
  // A word a signal: its part, what it holds and, if it is not the row's, its length. "i*" is an input of either
  // representation, "fr20" a filter of 20 real taps.
  //   i input                          * real and complex, in turn
  //   f input no output may share      r real    c complex
  //   o output                         u real and rising
  //   b both: changed in place         t table of a resampling kernel, real
  //   s state, shares with none
  //   w work space
  const char *signals;
  std::vector<int> lengths;
  uint64_t result;  // hash of all results, or why there is none
  std::function<int32_t(call &)> run;
  int variants = 1;
};

const std::vector<routine> &routines();

}  // namespace support
