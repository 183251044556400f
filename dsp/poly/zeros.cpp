#include "dsp/poly/zeros.h"

#include <algorithm>
#include <cmath>

#include "dsp/math/complex.h"
#include "dsp/math/constants.h"
#include "dsp/math/sort.h"
#include "dsp/poly/heap_array.h"
#include "dsp/poly/zero_search.h"

namespace dsp::poly {
namespace {

// A zero, or a conjugate pair named by its upper one.
struct entry {
  dsp_complex z;
  int32_t index;  // in the search
  bool is_pair;
  double modulus;
  double phase;  // from 0 to 2 pi
};

// The largest ratio of moduli that differ by rounding only.
constexpr double equal_moduli = 1.0 + 4.0 * epsilon;

double phase_of(dsp_complex z) {
  const double phase = std::atan2(z.im, z.re);
  return phase < 0.0 ? phase + two_pi : phase;
}

void sort_by_phase(entry *e, int32_t n) {
  if (n < 2) return;
  for (int32_t i = 0; i < n; ++i) e[i].phase = phase_of(e[i].z);
  sort(e, n, [](const entry &a, const entry &b) { return a.phase < b.phase; });
}

void put_in_order(entry *e, int32_t n) {
  for (int32_t i = 0; i < n; ++i) {
    e[i].z = {e[i].z.re + 0.0, e[i].z.im + 0.0};  // no negative zeros
    e[i].modulus = modulus(e[i].z);
  }
  sort(e, n, [](const entry &a, const entry &b) { return a.modulus < b.modulus; });
  for (int32_t first = 0, end = 0; first < n; first = end) {
    while (end < n && e[end].modulus <= e[first].modulus * equal_moduli) ++end;
    sort_by_phase(e + first, end - first);
  }
}

// A quarter of the sum of the parts' distances, which cannot overflow.
double quarter_distance(dsp_complex a, dsp_complex b) {
  return std::fabs(0.25 * a.re - 0.25 * b.re) + std::fabs(0.25 * a.im - 0.25 * b.im);
}

// The zero among e[0..n) that is nearest to the conjugate of the first: the first itself if that is real.
int32_t partner_of_first(const entry *e, int32_t n) {
  const dsp_complex conjugate = {e->z.re, -e->z.im};
  int32_t nearest = 0;
  for (int32_t i = 1; i < n; ++i)
    if (quarter_distance(e[i].z, conjugate) < quarter_distance(e[nearest].z, conjugate)) nearest = i;
  return nearest;
}

// Merges each conjugate pair into one entry and returns the number of entries. Starts with the zeros far from the axis,
// whose partners are certain.
int32_t pair_up(entry *e, int32_t n) {
  sort(e, n, [](const entry &a, const entry &b) { return std::fabs(a.z.im) > std::fabs(b.z.im); });
  int32_t count = 0;
  for (int32_t i = 0; i < n; ++i) {
    const int32_t partner = i + partner_of_first(e + i, n - i);
    e[count] = e[i];
    e[count].is_pair = partner != i;
    e[count].z.im = std::fabs(e[count].z.im);
    ++count;
    if (partner == i) continue;
    std::rotate(e + i + 1, e + partner, e + partner + 1);
    ++i;
  }
  return count;
}

// Gives real zeros an imaginary part of exactly 0. If it was more than rounding, the zero is refined on the axis.
void make_real(zero_search *search, entry *e, int32_t n) {
  constexpr int32_t settled = -1;
  int32_t moved = 0;
  for (entry *each = e; each != e + n; ++each) {
    if (each->is_pair) continue;
    if (std::fabs(each->z.im) <= epsilon * std::fabs(each->z.re)) {
      each->z.im = 0.0;
      each->index = settled;
    } else {
      search->move_to_axis(each->index);
      ++moved;
    }
  }
  search->refine_moved(moved);
  for (entry *each = e; each != e + n; ++each)
    if (!each->is_pair && each->index != settled) each->z = search->zero(each->index);
}

}  // namespace

int32_t find_zeros(const polynomial &p, dsp_complex *z) {
  z = std::fill_n(z, p.at_origin(), dsp_complex{0.0, 0.0});
  if (p.degree() <= 0) return 0;
  zero_search search(p);
  const heap_array<entry> e(p.degree());
  if (!search.is_valid() || !e) return -1;
  search.run();
  int32_t count = p.degree();
  for (int32_t i = 0; i < count; ++i) e[i] = {search.zero(i), i, false, 0.0, 0.0};
  if (p.is_real()) {
    count = pair_up(e.get(), count);
    make_real(&search, e.get(), count);
  }
  if (!std::all_of(e.get(), e.get() + count, [](const entry &each) { return is_finite(each.z); })) return -1;
  put_in_order(e.get(), count);
  for (int32_t i = 0; i < count; ++i) {
    *z++ = e[i].z;
    if (e[i].is_pair) *z++ = {e[i].z.re, -e[i].z.im};
  }
  return 0;
}

}  // namespace dsp::poly
