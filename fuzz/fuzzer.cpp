// libFuzzer's way in; FUZZ_TARGET is named when this file is compiled.
#include "fuzz/target.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *bytes, std::size_t size) {
  fuzz::run(fuzz::FUZZ_TARGET, bytes, size);
  return 0;
}
