// Runs inputs again: what the fuzzers found worth keeping, or what broke a promise.
// usage: fuzz_replay [--trace] FILE|DIRECTORY...      a file's directory is named for its target
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "fuzz/target.h"

namespace {

namespace fs = std::filesystem;

const fuzz::target *const targets[] = {&fuzz::core,     &fuzz::elementwise, &fuzz::fft,    &fuzz::stats,
                                       &fuzz::window,   &fuzz::spectrum,    &fuzz::filter, &fuzz::interp,
                                       &fuzz::resample, &fuzz::trace,       &fuzz::rf};

// The count of inputs run; 0: the file belongs to no target or cannot be read.
int replay(const fs::path &path, bool trace) {
  if (fs::is_directory(path)) {
    int count = 0;
    for (const auto &entry : fs::directory_iterator(path)) count += replay(entry.path(), trace);
    return count;
  }
  std::ifstream file(path, std::ios::binary);
  const std::vector<char> bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  for (const fuzz::target *t : targets)
    if (file && path.parent_path().filename() == t->name) {
      std::fprintf(trace ? stderr : stdout, "%s\n", path.string().c_str());
      fuzz::run(*t, reinterpret_cast<const std::uint8_t *>(bytes.data()), bytes.size(), trace);
      return 1;
    }
  return 0;
}

}  // namespace

int main(int argc, char **argv) {
  std::setvbuf(stdout, nullptr, _IONBF, 0);  // the last line names the input that ends the process
  const bool trace = argc > 1 && std::strcmp(argv[1], "--trace") == 0;
  int count = 0;
  for (int i = trace ? 2 : 1; i < argc; ++i) {
    const int run = replay(fs::path(argv[i]), trace);
    if (run == 0) std::fprintf(stderr, "%s: no input of any target\n", argv[i]);
    if (run == 0) return 1;
    count += run;
  }
  std::printf("%d inputs keep all promises\n", count);
  return count == 0;
}
