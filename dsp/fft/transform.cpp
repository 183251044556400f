#include "dsp/fft/transform.h"

#include "dsp/fft/bitrev_tables.h"
#include "dsp/fft/fft_kernels.h"
#include "dsp/fft/twiddle_tables.h"

namespace dsp::fft {
namespace {

// A pass of radix 4 does two levels, one of radix 8 three. The widest kernels have registers enough for radix 8: they
// begin with at most two passes of radix 4, so that the levels left are a multiple of three. The others take radix 4,
// and where the number of levels is odd one pass of radix 8, the last.
fft_plan make_plan(int bits, int lanes) {
  fft_plan plan = {};
  const bool wide = lanes == 8;
  plan.bits = static_cast<int8_t>(bits);
  plan.lanes = static_cast<int8_t>(lanes);
  plan.tile_bits = wide ? 3 : 2;
  int left = bits - plan.tile_bits;
  const int eights = wide ? left / 3 - (left % 3 == 1 ? 1 : 0) : 0;
  while (left > 0) {
    plan.radix_bits[plan.passes] = left <= 3 * eights || left == 3 ? 3 : 2;
    left -= plan.radix_bits[plan.passes++];
  }
  return plan;
}

// All that the transform of one size needs. The tables belong to their caches.
struct fft_setup {
  const fft_kernel_set *kernels;  // null: not set up
  fft_plan plan;
  fft_tables tables;
};

fft_setup setups[32];
const double *octants[32];

[[gnu::noinline]] bool set_up(int bits, const fft_kernel_set &kernels, fft_setup *setup) {
  fft_setup fresh = {&kernels, make_plan(bits, kernels.lanes), {}};
  fresh.tables.roots = twiddle_table(fresh.plan);
  fresh.tables.pairs = bitrev_pairs(bits - 2 * fresh.plan.tile_bits);
  fresh.tables.fixed = bitrev_fixed(bits - 2 * fresh.plan.tile_bits);
  if (fresh.tables.roots == nullptr || fresh.tables.pairs == nullptr || fresh.tables.fixed == nullptr) return false;
  *setup = fresh;
  return true;
}

[[gnu::noinline]] int32_t planned_transform(const fft_kernel_set &kernels, double *x, int bits, bool inverse,
                                            double scale) {
  fft_setup &setup = setups[bits];
  if (setup.kernels != &kernels && !set_up(bits, kernels, &setup)) return -1;
  kernels.transform(setup.plan, setup.tables, x, scale, inverse);
  return 0;
}

}  // namespace

int32_t transform(double *x, int bits, bool inverse, double scale) {
  const fft_kernel_set &kernels = fft_kernels();
  if (bits > kernels.most_small_bits) return planned_transform(kernels, x, bits, inverse, scale);
  kernels.small(bits, x, scale, inverse);
  return 0;
}

const double *octant_setup(int bits) {
  if (octants[bits] == nullptr) octants[bits] = octant_table(int64_t{1} << bits);
  return octants[bits];
}

void forget_setups() {
  for (fft_setup &setup : setups) setup.kernels = nullptr;
  for (const double *&octant : octants) octant = nullptr;
}

}  // namespace dsp::fft
