#include "examples/support/progress.h"

#include <cstdio>

#if defined(_WIN32)
#include <io.h>
#define isatty _isatty
#define fileno _fileno
#else
#include <unistd.h>
#endif

namespace examples {

progress::progress(const std::string &what)
    : what_(what), next_(clock::now() + std::chrono::seconds(1)), on_terminal_(isatty(fileno(stderr)) != 0) {}

progress::~progress() {
  if (shown_) std::fprintf(stderr, "\r\033[K");
}

void progress::show(double share) {
  if (!on_terminal_ || clock::now() < next_) return;
  next_ = clock::now() + std::chrono::milliseconds(100);
  shown_ = true;
  std::fprintf(stderr, "\r%s: %3.0f %%", what_.c_str(), 100.0 * share);
  std::fflush(stderr);
}

}  // namespace examples
