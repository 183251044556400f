// A target is a table of routines: an input names rows of it, one after the other, and says what each is called with.
#pragma once

#include <cstddef>
#include <cstdint>

#include "fuzz/play.h"

namespace fuzz {

struct target {
  const char *name;
  const row *rows;
  std::size_t count;
};

// Rows keep their places: the corpus names them by number. New ones go to the end.
#define FUZZ_ROW(routine, promises)                                       \
  {                                                                       \
#routine, [](::fuzz::play * p) { return p->call(routine); }, promises \
  }

extern const target core, elementwise, fft, stats, window, spectrum, filter, resample, interp, trace, rf, poly;

// Ends the process when a promise is broken. `tells`: on standard error, what it calls.
void run(const target &t, const uint8_t *bytes, std::size_t size, bool tells = false);

}  // namespace fuzz
