// The signal record: its life, its sizing and the hooks that replace the heap.
#include <cstddef>
#include <cstdint>

#include "dsp/core/heap.h"
#include "dsp/core/move_doubles.h"
#include "dsp/core/sizing.h"
#include "dsp/dsp.h"

namespace dsp {
namespace {

dsp_alloc_fn alloc_hook = nullptr;
dsp_realloc_fn realloc_hook = nullptr;
dsp_free_fn free_hook = nullptr;

template <class Hook>
int32_t install(Hook &slot, Hook hook, Hook *previous) {
  if (previous != nullptr) *previous = slot;
  slot = hook;
  return 0;
}

std::size_t bytes(int64_t n) { return static_cast<std::size_t>(n) * sizeof(double); }

void release(dsp_vec *v) {
  if (v->capacity <= 0) return;
  if (free_hook != nullptr)
    free_hook(v);
  else
    heap_release(v->data);
}

// Sets the capacity after a hook or the heap has allocated.
int32_t sized(dsp_vec *v, int64_t need) {
  v->capacity = v->data != nullptr ? static_cast<int32_t>(need) : 0;
  return v->data != nullptr ? 0 : -1;
}

int32_t refuse(dsp_vec *v) {
  const dsp_vec asked = *v;
  release(v);
  *v = asked;
  v->data = nullptr;
  v->capacity = 0;
  return -1;
}

// A record too small for its length and representation.
[[gnu::noinline]] int32_t grow(dsp_vec *v, int32_t old_length, uint32_t old_is_complex) {
  const int64_t need = doubles(*v);
  const int64_t owned = not_negative(v->capacity);
  if (!countable(need)) return refuse(v);
  const double *borrowed = owned > 0 ? nullptr : v->data;
  if (owned == 0) v->data = nullptr;
  if (realloc_hook != nullptr)
    realloc_hook(v, old_length, old_is_complex);
  else  // when this fails, dsp.h says that the old block is abandoned
    v->data = static_cast<double *>(heap_resize(v->data, bytes(owned), bytes(need)));
  if (sized(v, need) != 0) return -1;
  if (borrowed != nullptr) {
    const int64_t old = doubles_of(old_length, old_is_complex != 0);
    dsp_move_doubles(v->data, borrowed, bytes(old < need ? old : need));
  }
  return 0;
}

}  // namespace
}  // namespace dsp

using namespace dsp;

int32_t dsp_lib_init(void) { return 0; }

int32_t dsp_version(void) { return DSP_VERSION_MAJOR * 100 + DSP_VERSION_MINOR; }

int32_t dsp_init(dsp_vec *v) {
  *v = dsp_vec{1.0, nullptr, 0, 0, 0, 0};
  return 0;
}

int32_t dsp_destroy(dsp_vec *v) {
  release(v);
  return dsp_init(v);
}

int32_t dsp_alloc(dsp_vec *v) {
  const int64_t need = doubles(*v);
  if (need <= not_negative(v->capacity)) return 0;
  if (!countable(need)) return refuse(v);
  if (alloc_hook != nullptr) {
    alloc_hook(v);
  } else {
    if (v->capacity > 0) heap_release(v->data);
    v->data = static_cast<double *>(heap_allocate(bytes(need)));
  }
  return sized(v, need);
}

int32_t dsp_realloc(dsp_vec *v, int32_t old_length, uint32_t old_is_complex) {
  return doubles(*v) <= not_negative(v->capacity) ? 0 : grow(v, old_length, old_is_complex);
}

int32_t dsp_lib_alloc(dsp_alloc_fn hook, dsp_alloc_fn *previous) { return install(alloc_hook, hook, previous); }

int32_t dsp_lib_realloc(dsp_realloc_fn hook, dsp_realloc_fn *previous) { return install(realloc_hook, hook, previous); }

int32_t dsp_lib_free(dsp_free_fn hook, dsp_free_fn *previous) { return install(free_hook, hook, previous); }
