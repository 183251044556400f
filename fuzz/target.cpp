#include "fuzz/target.h"

#include <cstdio>

#include "dsp/core/heap.h"
#include "dsp/simd/isa.h"
#include "fuzz/check.h"
#include "tests/support/heap.h"

namespace fuzz {
namespace {

constexpr int most_calls = 24;
constexpr std::size_t most_bytes = 1u << 19;  // of one block; more is out of memory

std::size_t bytes_of(const dsp_vec *v) {
  return static_cast<std::size_t>(v->length) * (v->is_complex != 0 ? 2 : 1) * sizeof(double);
}

// Hooks that do what the library does without them.
void allocate(dsp_vec *v) {
  if (v->capacity > 0) dsp::heap_release(v->data);
  v->data = static_cast<double *>(dsp::heap_allocate(bytes_of(v)));
}

void reallocate(dsp_vec *v, int32_t, uint32_t) {
  const std::size_t old = v->data != nullptr ? static_cast<std::size_t>(v->capacity) * sizeof(double) : 0;
  v->data = static_cast<double *>(dsp::heap_resize(v->data, old, bytes_of(v)));
}

void release(dsp_vec *v) { dsp::heap_release(v->data); }

void use_hooks(bool use) {
  dsp_lib_alloc(use ? allocate : nullptr, nullptr);
  dsp_lib_realloc(use ? reallocate : nullptr, nullptr);
  dsp_lib_free(use ? release : nullptr, nullptr);
}

// The first byte says which request for memory fails, if any, and whether through hooks.
void fail_memory(uint8_t how) {
  if (how >= 128) support::heap_fail(how % 32 + 1, how >= 192);
}

// What the signals have been through, up to the first call that rounds: the same for the same bytes.
uint64_t play_out(const target &t, input in, bool tells) {
  uint64_t digest = 0;
  bool is_exact = true;
  const uint8_t memory = in.byte();
  use_hooks((memory & 32) != 0);
  {
    signals all(&in);
    fail_memory(memory);
    for (int calls = 0; calls < most_calls && !in.is_empty(); ++calls) {
      const int what = in.byte();
      const row &r = t.rows[static_cast<std::size_t>(what) % t.count];
      uint64_t result = 0;
      if (what >= 224)
        all.make(what % signals::count, &in);
      else
        result = run(r, &in, &all, tells);
      is_exact = is_exact && (what >= 224 || (r.promises & rounds) == 0);
      if (is_exact) digest = (digest + result) * 31 + all.digest();
    }
    support::heap_fail(0);
  }
  check(dsp_free_internal() == 0, "dsp_free_internal", "fails");
  use_hooks(false);
  return digest;
}

}  // namespace

void run(const target &t, const uint8_t *bytes, std::size_t size, bool tells) {
  static const dsp::isa best = dsp::active_isa();
  support::heap_limit(most_bytes);
  const long live = support::heap_live();
  const auto on = [&](dsp::isa set) {
    dsp::force_isa(set);
    const uint64_t digest = play_out(t, input(bytes, size), tells);
    check(support::heap_live() == live, t.name, "leaks");
    return digest;
  };
  const uint64_t digest = on(best);
  if (best == dsp::isa::baseline) return;
  const bool take_avx2 = best == dsp::isa::avx512 && size > 0 && (bytes[0] & 16) != 0;
  check(on(take_avx2 ? dsp::isa::avx2 : dsp::isa::baseline) == digest, t.name, "depends on the instruction set");
}

}  // namespace fuzz
