#include "fuzz/signals.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "fuzz/check.h"
#include "fuzz/digest.h"
#include "tests/support/heap.h"

namespace fuzz {
namespace {

constexpr int32_t longest = 2500;  // quadratic routines are to end soon

int64_t doubles(const dsp_vec &v) { return static_cast<int64_t>(std::max(v.length, 0)) * (v.is_complex != 0 ? 2 : 1); }

uint64_t digest_of(const dsp_vec &v) { return mix(0, v.data, static_cast<std::size_t>(doubles(v))); }

bool same_record(const dsp_vec &a, const dsp_vec &b) {
  return std::memcmp(&a.dx, &b.dx, sizeof a.dx) == 0 && a.data == b.data && a.capacity == b.capacity &&
         a.length == b.length && a.is_complex == b.is_complex;
}

}  // namespace

signals::signals(input *in) : usual_(in->length()) {
  std::fill(owner_, owner_ + count, -1);
  for (dsp_vec &v : records_) dsp_init(&v);
  for (int k = 0; k < count; ++k) make(k, in);
}

signals::~signals() {
  for (dsp_vec &v : records_) dsp_destroy(&v);
}

void signals::make(int k, input *in) {
  enum { empty, owned, borrowed, view };
  static constexpr int kinds[] = {owned, owned, owned, owned, borrowed, borrowed, view, empty};
  dsp_vec &v = records_[k];
  dsp_destroy(&v);
  owner_[k] = -1;
  empty_stale_views();
  const int how = in->byte();
  const int kind = kinds[how % 8];
  v.is_complex = static_cast<uint32_t>(how / 8 % 8 == 7 ? -1 : how / 8 % 2);
  if (how & 64) v.dx = in->number();
  if (kind == empty) return;
  v.length = how & 128 ? in->length() : usual_;
  const auto need = static_cast<std::size_t>(doubles(v));
  if (kind == view) {
    const int other = in->pick(count);
    owner_[k] = other == k || owner_[other] >= 0 ? -1 : other;
    v.data = owner_[k] >= 0 ? records_[other].data : nullptr;
    if (owner_[k] < 0 || doubles(v) > room(other)) v.length = 0;
    return;
  }
  if (kind == borrowed) {
    lent_[k] = block<double>(need);
    v.data = lent_[k].data();
  } else if (dsp_alloc(&v) != 0) {
    v.length = 0;
    return;
  }
  in->fill(v.data, static_cast<int32_t>(need));
}

int64_t signals::room(int k) const {
  const dsp_vec &v = records_[k];
  if (v.capacity > 0) return v.capacity;
  if (v.data == nullptr) return 0;
  return owner_[k] >= 0 ? room(owner_[k]) : static_cast<int64_t>(lent_[k].size());
}

bool signals::share(int a, int b) const {
  return a == b || (records_[a].data != nullptr && records_[a].data == records_[b].data);
}

void signals::remember() {
  for (int k = 0; k < count; ++k) {
    remembered_[k] = {records_[k], digest_of(records_[k]), 0};
    for (int other = 0; other < count; ++other) remembered_[k].sharing |= share(k, other) ? 1u << other : 0;
  }
}

void signals::check_untouched(unsigned changed, const char *routine) const {
  for (int k = 0; k < count; ++k) {
    if ((changed >> k & 1) != 0) continue;
    check(same_record(records_[k], remembered_[k].record), routine, "changes a record that is only read");
    if ((changed & remembered_[k].sharing) == 0)
      check(digest_of(records_[k]) == remembered_[k].samples, routine, "changes samples that are only read");
  }
}

void signals::settle(unsigned changed, int32_t status, const char *routine) {
  for (int k = 0; k < count; ++k) {
    check(lent_[k].is_intact(), routine, "writes beside a borrowed buffer");
    if ((changed >> k & 1) == 0) continue;
    dsp_vec &v = records_[k];
    if (v.capacity > 0 || v.data == nullptr) owner_[k] = -1;
    if (v.capacity > 0)
      check(support::heap_size(v.data) >= static_cast<std::size_t>(v.capacity) * sizeof(double), routine,
            "leaves a capacity without the buffer");
    else
      check(v.data == nullptr || v.data == remembered_[k].record.data, routine, "leaves a buffer that nobody owns");
  }
  empty_stale_views();
  for (int k = 0; k < count; ++k) {
    if ((changed >> k & 1) == 0) continue;
    dsp_vec &v = records_[k];
    check(status != 0 || doubles(v) <= room(k), routine, "leaves a length beyond the buffer");
    if (doubles(v) > room(k)) v.length = 0;
    v.length = std::min(v.length, longest);
  }
}

void signals::empty_stale_views() {
  for (int k = 0; k < count; ++k)
    if (owner_[k] >= 0 && (records_[k].data != records_[owner_[k]].data || doubles(records_[k]) > room(owner_[k]))) {
      dsp_init(&records_[k]);
      owner_[k] = -1;
    }
}

bool signals::is_sane(int k) const {
  const dsp_vec &v = records_[k];
  const auto sane = [](double x) { return std::abs(x) <= 1e100; };
  return sane(v.dx) && std::all_of(v.data, v.data + doubles(v), sane);
}

bool signals::has_nan(int k) const {
  const dsp_vec &v = records_[k];
  return std::any_of(v.data, v.data + doubles(v), [](double x) { return std::isnan(x); });
}

uint64_t signals::digest() const {
  uint64_t hash = 0;
  for (const dsp_vec &v : records_) {
    hash = mix(hash, v.dx);
    hash = mix(hash, static_cast<double>(doubles(v)));
    hash = mix(hash, v.data, static_cast<std::size_t>(doubles(v)));
  }
  return hash;
}

}  // namespace fuzz
