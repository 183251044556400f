#pragma once

#include <cstdio>
#include <string>

namespace examples {

/** A file that appears complete or not at all: it is written under a temporary name beside its place and renamed by
 * commit(). Without commit, and on an interrupt from the keyboard, it is removed. A path that cannot be written is a
 * failure at once, before any work is done. */
class output_file {
 public:
  explicit output_file(const std::string &path);
  ~output_file();
  output_file(const output_file &) = delete;
  output_file &operator=(const output_file &) = delete;

  const std::string &path() const { return path_; }
  /** To write through; or leave it alone and let another program write to temporary(). */
  std::FILE *stream() const { return stream_; }
  const std::string &temporary() const { return temporary_; }
  void commit();

 private:
  std::string path_;
  std::string temporary_;
  std::FILE *stream_ = nullptr;
  int slot_ = -1;  // among the files that an interrupt removes
};

}  // namespace examples
