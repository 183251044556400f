// Window types by name.
#include "dsp/dsp.h"

namespace dsp::window {
namespace {

struct named_type {
  const char *name;
  dsp_window_type type;
};

// In lower case. Each may also carry the prefix DSP_WINDOW_.
constexpr named_type names[] = {
    {"uniform", 0},    {"rectangular", 0},
    {"none", 0},       {"p000", 0},
    {"bartlett", 1},   {"triangular", 1},
    {"hann", 2},       {"p110", 2},
    {"hamming", 3},    {"p100", 3},
    {"blackman", 4},   {"blackman_harris3", 5},
    {"p200", 5},       {"blackman_harris4", 6},
    {"p310", 6},       {"lowleak", 6},
    {"gausstop", 7},   {"p400", 7},
    {"flat4", 8},      {"p301", 8},
    {"flattop", 9},    {"flat5", 9},
    {"p401", 9},       {"flat6", 10},
    {"p511", 10},      {"flat7", 11},
    {"p611", 11},      {"p501", 12},
    {"p601", 13},      {"kaiser70", 14},
    {"kaiser80", 15},  {"kaiser90", 16},
    {"kaiser100", 17}, {"kaiser110", 18},
    {"kaiser120", 19}, {"gauss60", 20},
    {"gauss70", 21},   {"gauss80", 22},
    {"riemann", 23},   {"sinc_lobe", 23},
};

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

// The text after `prefix`, without regard to case; null if `text` does not begin with it.
const char *after(const char *text, const char *prefix) {
  for (; *prefix != 0; ++text, ++prefix)
    if (lower(*text) != *prefix) return nullptr;
  return text;
}

}  // namespace
}  // namespace dsp::window

using namespace dsp;
using namespace dsp::window;

int32_t dsp_window_from_str(const char *name, dsp_window_type *type) {
  if (name == nullptr || type == nullptr) return -1;
  const char *long_form = after(name, "dsp_window_");
  const char *text = long_form != nullptr ? long_form : name;
  *type = 0;
  for (const named_type &known : names) {
    const char *rest = after(text, known.name);
    if (rest == nullptr || *rest != 0) continue;
    *type = known.type;
    return 0;
  }
  return -1;
}

// Part of the interface, but knows no name: dsp.h promises -1 for every type.
int32_t dsp_window_to_str(dsp_window_type, char *buffer, int32_t size) {
  if (buffer != nullptr && size > 0) buffer[0] = 0;
  return -1;
}
