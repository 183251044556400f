#include "examples/support/failure.h"

#include <cstdio>
#include <new>

namespace examples {
namespace {

void tell(const char *program, std::string message) {
  for (char &c : message)
    if (static_cast<unsigned char>(c) < ' ' || c == '\x7f') c = '?';
  std::fprintf(stderr, "%s: %s\n", program, message.c_str());
}

}  // namespace

int run(const char *program, const std::function<int()> &body) {
  try {
    const int status = body();
    if (std::fflush(stdout) != 0 || std::ferror(stdout)) throw failure("cannot write to standard output");
    return status;
  } catch (const not_readable &e) {
    tell(program, e.what());
    return 1;
  } catch (const std::bad_alloc &) {
    tell(program, "out of memory");
  } catch (const std::exception &e) {
    tell(program, e.what());
  }
  return 2;
}

void require(int status, const char *what) {
  if (status != 0) throw failure(std::string("cannot ") + what);
}

}  // namespace examples
