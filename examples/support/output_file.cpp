#include "examples/support/output_file.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <utility>

#include "examples/support/failure.h"

namespace examples {
namespace {

char to_remove[4096];

extern "C" void remove_and_end(int signal) {
  std::remove(to_remove);
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

void guard(const std::string &temporary) {
  std::strcpy(to_remove, temporary.c_str());
  for (int signal : {SIGINT, SIGTERM}) std::signal(signal, remove_and_end);
}

void unguard() {
  for (int signal : {SIGINT, SIGTERM}) std::signal(signal, SIG_DFL);
}

[[noreturn]] void cannot_write(const std::string &path) {
  throw failure("cannot write " + path + ": " + std::strerror(errno));
}

}  // namespace

output_file::output_file(const std::string &path) : path_(path) {
  std::error_code error;
  if (std::filesystem::exists(path, error) && !std::filesystem::is_regular_file(path, error))
    throw failure("cannot write " + path + ": it is not a plain file");
  if (path.size() + 16 > sizeof to_remove) throw failure("cannot write " + path + ": its path is too long");
  for (int attempt = 0; !stream_; ++attempt) {
    temporary_ = path + ".part" + (attempt ? std::to_string(attempt) : "");
    stream_ = std::fopen(temporary_.c_str(), "wbx");
    if (!stream_ && (errno != EEXIST || attempt == 99)) cannot_write(path);
  }
  guard(temporary_);
}

output_file::~output_file() {
  if (stream_) std::fclose(stream_);
  if (!temporary_.empty()) std::remove(temporary_.c_str());
  unguard();
}

void output_file::commit() {
  const bool failed = std::ferror(stream_) != 0;
  if (std::fclose(std::exchange(stream_, nullptr)) != 0 || failed) cannot_write(path_);
  std::error_code error;
  std::filesystem::rename(temporary_, path_, error);
  if (error) throw failure("cannot write " + path_ + ": " + error.message());
  temporary_.clear();
}

}  // namespace examples
