#include "dsp/window/cache.h"

#include "dsp/core/caches.h"
#include "dsp/core/heap.h"
#include "dsp/window/generator.h"

namespace dsp::window {
namespace {

struct slot {
  dsp_vec window;
  dsp_window_type type;  // no_type: empty
  int32_t flags;
  double active;
};

constexpr dsp_window_type no_type = -1;
constexpr int32_t capacity = 16;
constexpr int32_t flags_in_key = DSP_WND_SCALE_MASK | DSP_WND_SYMMETRIC | DSP_WND_ACTIVE;

slot *slots = nullptr;
int32_t used = 0;
int32_t oldest = 0;  // the next entry to replace, once all are used

slot *find(int32_t n, dsp_window_type type, int32_t flags, double active) {
  for (slot *s = slots; s != slots + used; ++s)
    if (s->window.length == n && s->type == type && s->flags == flags &&
        ((flags & DSP_WND_ACTIVE) == 0 || s->active == active))
      return s;
  return nullptr;
}

slot *next_slot() {
  if (slots == nullptr) slots = static_cast<slot *>(heap_allocate(capacity * sizeof(slot)));
  if (slots == nullptr) return nullptr;
  if (used == capacity) return slots + oldest;
  slots[used].type = no_type;
  dsp_init(&slots[used].window);
  return slots + used;
}

void count_in(const slot *s) {
  if (s == slots + used)
    ++used;
  else
    oldest = (oldest + 1) % capacity;
}

}  // namespace

const dsp_vec *cached_window(int32_t n, dsp_window_type type, int32_t flags, double active) {
  flags &= flags_in_key;
  if (const slot *s = find(n, type, flags, active)) return &s->window;
  slot *s = next_slot();
  if (s == nullptr) return nullptr;
  s->type = no_type;
  s->window.length = n;
  if (dsp_alloc(&s->window) != 0) return nullptr;
  generate(s->window.data, n, type, flags, active);
  s->type = type;
  s->flags = flags;
  s->active = active;
  count_in(s);
  return &s->window;
}

int32_t free_window_cache() {
  for (slot *s = slots; s != slots + used; ++s) dsp_destroy(&s->window);
  heap_release(slots);
  slots = nullptr;
  used = 0;
  oldest = 0;
  return 0;
}

}  // namespace dsp::window
