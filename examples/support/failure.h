#pragma once

#include <functional>
#include <stdexcept>
#include <string>

namespace examples {

/** What the user is told, in one line, before the program ends with status 2: an option or a file is refused. */
struct failure : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/** The same with status 1: the recording is in order, but what was asked for cannot be read from it. */
struct not_readable : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/** Runs a program. Whatever it throws becomes one line on stderr and status 1 or 2; otherwise the status is what `body`
 * returns. */
int run(const char *program, const std::function<int()> &body);

/** Throws when a routine of the library reports -1. `what` completes "cannot ...". */
void require(int status, const char *what);

}  // namespace examples
