// Streaming convolution with any filter: the choice of route, and the route through the transform.
#include <algorithm>
#include <cstdint>

#include "dsp/core/sizing.h"
#include "dsp/core/stream.h"
#include "dsp/dsp.h"
#include "dsp/filter/fir_direct.h"
#include "dsp/filter/fir_spectrum.h"

namespace dsp::filter {
namespace {

bool worth_transforming(const past_and_block &x, const dsp_vec &h) {
  const std::int32_t longest_direct = x.width == 2 ? 35 : 45;
  return h.is_complex == 0 && h.length > longest_direct && x.block_length >= x.past_length;
}

// A transform spreads a NaN, an infinity or the rounding of a huge sample over its whole block; the sum keeps it to the
// outputs that weigh it.
bool is_tame(const double *x, std::int64_t count) {
  constexpr double huge = 1e50;
  return x == nullptr || fir_kernels().within(x, count, huge);
}

bool is_tame(const past_and_block &x, const dsp_vec &h) {
  return is_tame(x.past, x.past_length * x.width) && is_tame(x.block, x.block_length * x.width) &&
         is_tame(h.data, h.length);
}

// The power of two to transform. A short filter on a long block wraps round: repairing that is cheaper than doubling.
std::int64_t transform_size(std::int64_t block, std::int64_t taps) {
  std::int64_t doublings = 0;
  while ((std::int64_t{1} << doublings) < block) ++doublings;
  const bool wrapping_costs_more = taps * taps > 9 * block * doublings;
  return power_of_two_from(wrapping_costs_more ? taps + block - 1 : block);
}

// The block, silence, and at the end, where a circular convolution finds it, as much of the past as there is room for.
void lay_out(const past_and_block &x, std::int64_t size, double *to) {
  const std::int64_t room = size - x.block_length;
  const std::int64_t past = std::min(room, x.past_length);
  to = std::copy_n(x.block, x.block_length * x.width, to);
  to = std::fill_n(to, (room - past) * x.width, 0.0);
  x.copy(x.past_length - past, past, to);
}

int32_t filter_by_transform(const past_and_block &x, const dsp_vec &h, dsp_vec *out) {
  const std::int64_t size = transform_size(x.block_length, h.length);
  if (size > INT32_MAX / 2) return -1;  // GCOVR_EXCL_BR_LINE: takes gigabytes
  const bool complex_block = x.width == 2;
  const double dx = out->dx;
  const dsp_vec *spectrum = fir_spectrum(h, static_cast<std::int32_t>(size), complex_block);
  if (spectrum == nullptr) return -1;
  out->length = static_cast<std::int32_t>(size);
  out->is_complex = 1;  // also for real blocks: their transform grows to this
  if (dsp_alloc(out) != 0) return -1;
  out->is_complex = complex_block;
  lay_out(x, size, out->data);
  if ((complex_block ? dspi_fft(out, 0) : dspi_rfft(out)) != 0) return -1;  // GCOVR_EXCL_BR_LINE: tables are there
  dspb_mul(out, spectrum, out);
  if ((complex_block ? dspi_fft(out, 1) : dspi_irfft(out)) != 0) return -1;  // GCOVR_EXCL_BR_LINE: tables are there
  out->length = static_cast<std::int32_t>(x.block_length);
  out->dx = dx;
  unwrap_past(x, size, h, out->data);
  return 0;
}

}  // namespace
}  // namespace dsp::filter

using namespace dsp;
using namespace dsp::filter;

int32_t dspd_fir(const dsp_vec *in, dsp_vec *out, const dsp_vec *h, dsp_vec *state) {
  if (shares_buffer(state, out)) return -1;
  if (h->length <= 0) return dsp_copy(out, in);
  if (shares_buffer(out, h) || shares_buffer(state, h) || shares_buffer(state, in)) return -1;
  const std::int32_t past = h->length - 1;
  stream_block block(in, out, state);
  if (dsp_output_prepare(&block, h, past, DSP_OUT_ALIAS) != 0) return -1;
  const past_and_block x(block.in, state, past);
  if (!worth_transforming(x, *h) || !is_tame(x, *h))
    filter_direct(x, *h, block.out->data);
  else if (filter_by_transform(x, *h, block.out.get()) != 0)
    return -1;
  x.remember(state);
  return dsp_output_commit(block);
}
