// What must hold. A broken promise ends the process, which is how fuzzers and tests notice.
#pragma once

#include <cstdio>
#include <cstdlib>

namespace fuzz {

inline void check(bool holds, const char *routine, const char *promise) {
  if (holds) return;
  std::fprintf(stderr, "%s: %s\n", routine, promise);
  std::abort();
}

}  // namespace fuzz
