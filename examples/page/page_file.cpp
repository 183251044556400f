// The programs' input files, where the page has them: a piece at a time, through functions that the page brings.

#include <streambuf>
#include <utility>
#include <vector>

#include "examples/support/failure.h"
#include "examples/support/input_file.h"

// The page's files by their names; the size of one that there is not is -1.
extern "C" {
__attribute__((import_module("page"), import_name("size"))) double page_size(const char *name);
__attribute__((import_module("page"), import_name("read"))) int32_t page_read(const char *name, double at, char *bytes,
                                                                              int32_t count);
}

namespace examples {
namespace {

class page_file : public std::streambuf {
 public:
  explicit page_file(std::string name) : name_(std::move(name)), bytes_(1 << 20) {}

 private:
  int_type underflow() override {
    const int32_t got = page_read(name_.c_str(), at_, bytes_.data(), static_cast<int32_t>(bytes_.size()));
    at_ += got;
    setg(bytes_.data(), bytes_.data(), bytes_.data() + got);
    return got > 0 ? traits_type::to_int_type(*gptr()) : traits_type::eof();
  }

  std::string name_;
  std::vector<char> bytes_;
  double at_ = 0.0;
};

struct page_stream : page_file, std::istream {
  explicit page_stream(const std::string &name) : page_file(name), std::istream(static_cast<page_file *>(this)) {}
};

}  // namespace

int64_t readable_size(const std::string &path) {
  const double size = page_size(path.c_str());
  if (size < 0.0) throw failure("cannot read " + path);
  if (size == 0.0) throw failure(path + " is empty");
  return static_cast<int64_t>(size);
}

std::unique_ptr<std::istream> open_input(const std::string &path) { return std::make_unique<page_stream>(path); }

}  // namespace examples
