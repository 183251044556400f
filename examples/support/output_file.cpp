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

// What an interrupt removes: in static storage, since a signal handler may touch nothing else.
constexpr int slots = 8;
char to_remove[slots][4096];

extern "C" void remove_and_end(int signal) {
  for (const auto &path : to_remove)
    if (path[0]) std::remove(path);
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

/** The place in the list that the path was given; -1: none is free, or it is too long. */
int guard(const std::string &path) {
  for (int slot = 0; slot < slots && path.size() < sizeof to_remove[0]; ++slot)
    if (!to_remove[slot][0]) {
      std::strcpy(to_remove[slot], path.c_str());
      for (int signal : {SIGINT, SIGTERM}) std::signal(signal, remove_and_end);
      return slot;
    }
  return -1;
}

[[noreturn]] void cannot_write(const std::string &path) {
  throw failure("cannot write " + path + ": " + std::strerror(errno));
}

}  // namespace

output_file::output_file(const std::string &path) : path_(path) {
  std::error_code error;
  if (std::filesystem::exists(path, error) && !std::filesystem::is_regular_file(path, error))
    throw failure("cannot write " + path + ": it is not a plain file");
  for (int attempt = 0; !stream_; ++attempt) {
    temporary_ = path + ".part" + (attempt ? std::to_string(attempt) : "");
    stream_ = std::fopen(temporary_.c_str(), "wbx");
    if (!stream_ && (errno != EEXIST || attempt == 99)) cannot_write(path);
  }
  slot_ = guard(temporary_);
}

output_file::~output_file() {
  if (stream_) std::fclose(stream_);
  if (!temporary_.empty()) std::remove(temporary_.c_str());
  if (slot_ >= 0) to_remove[slot_][0] = '\0';
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
