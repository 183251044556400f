// Runs inputs again: what the fuzzers found worth keeping, or what broke a promise.
// usage: fuzz_replay [--trace] FILE|DIRECTORY...      either <target>.txt, an input a line, or <target>/<any name>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "fuzz/target.h"

namespace {

namespace fs = std::filesystem;

const fuzz::target *const targets[] = {&fuzz::core,     &fuzz::elementwise, &fuzz::fft,    &fuzz::stats,
                                       &fuzz::window,   &fuzz::spectrum,    &fuzz::filter, &fuzz::interp,
                                       &fuzz::resample, &fuzz::trace,       &fuzz::rf,     &fuzz::poly};

void replay(const fuzz::target &t, const std::string &name, const std::string &bytes, bool trace) {
  std::fprintf(trace ? stderr : stdout, "%s\n", name.c_str());
  fuzz::run(t, reinterpret_cast<const uint8_t *>(bytes.data()), bytes.size(), trace);
}

std::string from_hex(const std::string &digits) {
  std::string bytes;
  for (std::size_t i = 0; i + 1 < digits.size(); i += 2)
    bytes += static_cast<char>(std::stoi(digits.substr(i, 2), nullptr, 16));
  return bytes;
}

// Each line an input in hexadecimal digits and, after a space, what it is about. Returns their count.
int replay_lines(const fuzz::target &t, const fs::path &path, bool trace) {
  std::ifstream file(path);
  int count = 0;
  for (std::string line; std::getline(file, line);) {
    const std::string name = path.filename().string() + ":" + std::to_string(++count);
    replay(t, name, from_hex(line.substr(0, line.find(' '))), trace);
  }
  return count;
}

int replay_file(const fuzz::target &t, const fs::path &path, bool trace) {
  std::ifstream file(path, std::ios::binary);
  if (!file) return 0;
  replay(t, path.string(), {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()}, trace);
  return 1;
}

// The count of inputs run; 0: the path belongs to no target or cannot be read.
int replay(const fs::path &path, bool trace) {
  int count = 0;
  if (fs::is_directory(path))
    for (const auto &entry : fs::directory_iterator(path)) count += replay(entry.path(), trace);
  else
    for (const fuzz::target *t : targets) {
      if (path.filename() == std::string(t->name) + ".txt") return replay_lines(*t, path, trace);
      if (path.parent_path().filename() == t->name) return replay_file(*t, path, trace);
    }
  return count;
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
