#include "examples/support/spool.h"

#include "examples/support/failure.h"

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#define fileno _fileno
#endif

namespace examples {
namespace {

void copy(std::FILE *from, std::FILE *to) {
#if defined(_WIN32)
  _setmode(fileno(from), _O_BINARY);
  _setmode(fileno(to), _O_BINARY);
#endif
  char buffer[65536];
  std::size_t got = 0;
  while ((got = std::fread(buffer, 1, sizeof buffer, from)) > 0)
    if (std::fwrite(buffer, 1, got, to) != got) throw failure("cannot write a temporary file or standard output");
  if (std::ferror(from) != 0 || std::fflush(to) != 0) throw failure("cannot copy standard input or output");
}

}  // namespace

std::FILE *new_spool() {
  std::FILE *spool = std::tmpfile();
  if (!spool) throw failure("cannot make a temporary file");
  return spool;
}

int descriptor_of(std::FILE *file) { return fileno(file); }

void fill_spool(std::FILE *from, std::FILE *spool) {
  copy(from, spool);
  std::rewind(spool);
}

void copy_spool(std::FILE *spool, std::FILE *to) {
  std::rewind(spool);
  copy(spool, to);
}

}  // namespace examples
