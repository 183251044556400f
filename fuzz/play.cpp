#include "fuzz/play.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace fuzz {

int play::draw_signal() {
  const bool may_be_null = (routine.promises >> drawn_++ & 1) != 0;
  const int choice = in->byte();
  if (may_be_null && choice >= 192) {
    if (tells) std::fputs(" null", stderr);
    return -1;
  }
  const int k = choice % signals::count;
  const dsp_vec &v = *(*all)[k];
  if (tells)
    std::fprintf(stderr, " #%d{%p dx %g, %d of %d%s}", k, static_cast<void *>(v.data), v.dx, v.length, v.capacity,
                 v.is_complex != 0 ? ", complex" : "");
  ++used_[k];
  return k;
}

const dsp_vec *play::input_signal() {
  reads_ = true;
  const int k = draw_signal();
  if (k < 0) return nullptr;
  is_sane = is_sane && all->is_sane(k);
  return (*all)[k];
}

dsp_vec *play::output(bool is_input) {
  const int k = draw_signal();
  if (k < 0) return nullptr;
  if (first < 0) {
    first = k;
    first_length = std::max((*all)[k]->length, 0);
  }
  if (!is_input || (routine.promises & creates) != 0) sized_ = k;
  if (is_input) is_sane = is_sane && all->is_sane(k);
  changed |= 1u << k;
  return (*all)[k];
}

double play::number() {
  const double x = in->number();
  if (tells) std::fprintf(stderr, " %.17g", x);
  is_sane = is_sane && std::abs(x) <= 1e100;
  return x;
}

int32_t play::integer() {
  const int32_t i = in->integer();
  if (tells) std::fprintf(stderr, " %d", i);
  return i;
}

void play::disturb() {
  if (sized_ < 0 || used_[sized_] != 1 || in->byte() < 192) return;
  if (tells) std::fprintf(stderr, ", length of #%d:", sized_);
  (*all)[sized_]->length = integer();
}

// What a failed call leaves in its output may be anything, also something else on another instruction set.
void play::forget_output() {
  if (sized_ < 0) return;
  const dsp_vec &v = *(*all)[sized_];
  std::fill_n(v.data, std::max(v.length, 0) * (v.is_complex != 0 ? 2 : 1), 0.5);
}

uint64_t run(const row &r, input *in, signals *all, bool tells) {
  play p(r, in, all, tells);
  if (tells) std::fputs(r.name, stderr);
  all->remember();
  const int32_t status = r.call(&p);
  if (tells) std::fprintf(stderr, " -> %d\n", status);
  p.check(status == 0 || status == -1, "returns neither 0 nor -1");
  all->check_untouched(p.changed, r.name);
  all->settle(p.changed, status, r.name);
  if (status != 0) p.forget_output();
  if (status != 0 || p.first < 0) return p.digest;
  p.check((r.promises & same_length) == 0 || std::max((*all)[p.first]->length, 0) == p.first_length,
          "changes the length");
  if ((r.promises & no_nan) == 0 || !p.is_sane) return p.digest;
  for (int k = 0; k < signals::count; ++k)
    p.check((p.changed >> k & 1) == 0 || !all->has_nan(k), "makes NaN of numbers");
  return p.digest;
}

}  // namespace fuzz
