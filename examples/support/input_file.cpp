#include "examples/support/input_file.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "examples/support/failure.h"

namespace examples {

int64_t readable_size(const std::string &path) {
  std::error_code error;
  if (std::filesystem::is_directory(path, error)) throw failure(path + " is a directory");
  if (std::filesystem::exists(path, error) && !std::filesystem::is_regular_file(path, error))
    throw failure(path + " is not a plain file; only a sound file is read from a pipe, as - from standard input");
  errno = 0;
  std::ifstream file(path, std::ios::binary | std::ios::ate);
  if (!file) throw failure("cannot read " + path + ": " + std::strerror(errno));
  const int64_t size = static_cast<int64_t>(file.tellg());
  if (size == 0) throw failure(path + " is empty");
  return size;
}

std::unique_ptr<std::istream> open_input(const std::string &path) {
  return std::make_unique<std::ifstream>(path, std::ios::binary);
}

}  // namespace examples
