#include "dsp/fft/twiddle_tables.h"

#include "dsp/core/caches.h"
#include "dsp/fft/table_cache.h"
#include "dsp/fft/transform.h"
#include "dsp/math/angle.h"

namespace dsp::fft {
namespace {

table_cache<double> fft_twiddle_cache;

constexpr int64_t octant_length(int64_t n) { return n / 8 + 1; }

void fill_octant_table(double *table, int64_t n) { fill_octant(table, table + octant_length(n), n); }

// Calls visit(n, radix) for the blocks of every pass.
template <class Visit>
void visit_passes(const fft_plan &plan, const Visit &visit) {
  int bits = plan.bits;
  for (int pass = 0; pass < plan.passes; ++pass) {
    visit(int64_t{1} << bits, 1 << plan.radix_bits[pass]);
    bits -= plan.radix_bits[pass];
  }
}

void fill_passes(const fft_plan &plan, const double *octant, double *to) {
  const int64_t whole = int64_t{1} << plan.bits;
  visit_passes(plan, [&](int64_t n, int radix) {
    for (int64_t j = 0; j < n / radix; j += plan.lanes) {
      for (int power = 1; power < radix; ++power, to += root_values * plan.lanes) {
        for (int lane = 0; lane < plan.lanes; ++lane) {
          const int64_t k = power * (j + lane) * (whole / n);
          const root r = root_from_octant(octant, octant + octant_length(whole), whole, k);
          to[lane] = r.cos;
          to[plan.lanes + lane] = r.sin;
        }
      }
    }
  });
}

}  // namespace

const double *twiddle_table(const fft_plan &plan) {
  const int64_t n = int64_t{1} << plan.bits;
  int64_t roots = 0;
  visit_passes(plan, [&roots](int64_t block, int radix) { roots += block / radix * (radix - 1); });
  const int64_t key = n * 64 + plan.lanes;
  return fft_twiddle_cache.find_or_build(key, roots * root_values, [&](double *table) {
    double *octant = allocate_doubles(2 * octant_length(n));
    if (octant == nullptr) return false;
    fill_octant_table(octant, n);
    fill_passes(plan, octant, table);
    heap_release(octant);
    return true;
  });
}

const double *octant_table(int64_t n) {
  return fft_twiddle_cache.find_or_build(n * 64, 2 * octant_length(n), [n](double *table) {
    fill_octant_table(table, n);
    return true;
  });
}

int32_t free_twiddle_tables() {
  forget_setups();
  fft_twiddle_cache.release();
  return 0;
}

}  // namespace dsp::fft
