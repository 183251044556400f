#include "dsp/fft/transform.h"

#include "dsp/fft/bitrev_tables.h"
#include "dsp/fft/kernels.h"
#include "dsp/fft/twiddle_tables.h"

namespace dsp {
namespace {

constexpr int smallest_planned = 4;  // bits

// As many passes of radix 8 as the registers of the widest kernels allow; else one where radix 4 leaves a level over.
fft_plan make_plan(int bits, int lanes) {
  fft_plan plan = {};
  plan.bits = bits;
  plan.lanes = lanes == 8 && bits < 6 ? 4 : lanes;
  plan.tile_bits = plan.lanes == 8 ? 3 : 2;
  int left = bits - plan.tile_bits;
  int eights = plan.lanes == 8 ? left / 3 : left % 2;
  while ((left - 3 * eights) % 2 != 0) --eights;
  for (; left > 0; left -= plan.radix_bits[plan.passes++]) plan.radix_bits[plan.passes] = eights-- > 0 ? 3 : 2;
  return plan;
}

}  // namespace

int log2_of(std::int64_t n) {
  int bits = 0;
  while (n > 1) n /= 2, ++bits;
  return bits;
}

std::int32_t transform(double *x, int bits, bool inverse, double scale) {
  const fft_kernels &kernels = active_fft_kernels();
  if (bits < smallest_planned) {
    kernels.small(bits, x, scale, inverse);
    return 0;
  }
  const fft_plan plan = make_plan(bits, kernels.lanes);
  fft_tables tables = {};
  tables.roots = twiddle_table(plan, kernels.root_values);
  if (tables.roots == nullptr) return -1;
  tables.pairs = bitrev_pairs(bits - 2 * plan.tile_bits);
  tables.fixed = bitrev_fixed(bits - 2 * plan.tile_bits);
  if (tables.pairs == nullptr || tables.fixed == nullptr) return -1;
  kernels.transform(plan, tables, x, scale, inverse);
  return 0;
}

}  // namespace dsp
