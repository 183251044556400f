#include "dsp/filter/fir_transform.h"

#include <algorithm>
#include <cstdint>

#include "dsp/core/caches.h"
#include "dsp/core/sizing.h"
#include "dsp/core/work_signal.h"
#include "dsp/filter/fir_direct.h"

namespace dsp::filter {
namespace {

work_signal part_spectrum;  // of the samples that the second and later parts are convolved with

// The estimated cost of each way, in products of a tap and a sample.
struct price {
  double doubling;  // of a sample in a transform

  explicit price(int32_t width) : doubling(fir_kernels().products_per_doubling * (width == 2 ? 0.75 : 1.0)) {}

  // Laying out, the product of spectra and the calls come to about one more doubling; lengths that are no power of two
  // to a quarter more.
  double transform(int64_t size) const {
    double doublings = 1;
    for (int64_t n = size; n > 1; n /= 2) ++doublings;
    const double mixed = (size & (size - 1)) != 0 ? 1.25 : 1.0;
    return mixed * doubling * static_cast<double>(size + 64) * doublings;
  }

  // One transform of the whole block, with outputs repaired where the past had no room.
  double one(int64_t block, int64_t taps, int64_t size) const {
    const auto displaced = static_cast<double>(std::max<int64_t>(taps - 1 - (size - block), 0));
    return 2 * transform(size) + displaced * displaced;
  }

  double several(int64_t parts, int64_t size) const { return static_cast<double>(parts + 1) * transform(size); }
};

// The samples that the part of the filter from tap `delay` on is convolved with: the block shifted back by the delay,
// then zeros, then as many of the samples before it as fit. A circular convolution looks for them at the end.
void lay_out(const past_and_block &x, int64_t delay, int64_t size, double *to) {
  const int64_t first = x.past_length - delay;
  const int64_t room = size - x.block_length;
  const int64_t past = std::min(room, first);
  x.copy(first, x.block_length, to);
  to = std::fill_n(to + x.block_length * x.width, (room - past) * x.width, 0.0);
  x.copy(first - past, past, to);
}

// Room for the samples or for their spectrum.
int32_t reserve(dsp_vec *v, int32_t size) {
  v->length = size;
  v->is_complex = 1;
  return dsp_alloc(v);
}

int32_t transform(const past_and_block &x, int64_t delay, int32_t size, dsp_vec *v) {
  v->length = size;
  v->is_complex = x.width == 2;
  lay_out(x, delay, size, v->data);
  return x.width == 2 ? dspi_dft(v, 0) : dspi_rdft(v);
}

partition cheapest_partition(const price &cost, int64_t block, int32_t taps) {
  partition best = {0, 0, 0};
  double least = static_cast<double>(block) * taps;
  const auto take_if_cheaper = [&](double products, int64_t size, int64_t part, int64_t parts) {
    if (!(products < least)) return;
    least = products;
    best = {static_cast<int32_t>(size), static_cast<int32_t>(part), static_cast<int32_t>(parts)};
  };
  const auto consider = [&](int64_t size) {
    if (size >= taps) take_if_cheaper(cost.one(block, taps, size), size, taps, 1);
    const int64_t part = size - block + 1;
    const int64_t parts = (taps + part - 1) / part;
    if (parts > 1 && countable(2 * parts * size))  // GCOVR_EXCL_BR_LINE: the latter takes gigabytes
      take_if_cheaper(cost.several(parts, size), size, part, parts);
  };
  // Powers of two, and these times 5/4 and 3/2.
  const int64_t largest = std::min<int64_t>(power_of_two_from(block + taps - 1), INT32_MAX / 4 + 1);
  for (int64_t quarter = std::max<int64_t>(power_of_two_from(block) / 8, 1); 4 * quarter <= largest; quarter *= 2)
    for (int64_t size = 4 * quarter; size <= 6 * quarter; size += quarter)
      if (size >= block) consider(size);
  return best;
}

// The last partition: the search takes a tenth of the time of a short block.
struct {
  double doubling;
  int64_t block;
  int32_t taps;
  partition found;
} last;

bool all_tame(const past_and_block &x) {
  return is_tame(x.past, x.past_length * x.width) && is_tame(x.block, x.block_length * x.width);
}

// Whether all samples of a transform are tame for certain, by the energy of their spectrum. The forward transform
// divides by its size: the sum of squares of the samples is `size` times that of the bins, of which a real block has
// half. A NaN is not small.
bool is_small(double squares_of_bins, int64_t size) {
  return 2 * static_cast<double>(size) * squares_of_bins < 0.9 * wild * wild;
}

int32_t filter_by_sum(const past_and_block &x, const dsp_vec &h, double dx, dsp_vec *out) {
  out->length = static_cast<int32_t>(x.block_length);
  out->is_complex = x.width == 2;
  out->dx = dx;
  filter_direct(x, h, out->data);
  return 0;
}

}  // namespace

partition find_partition(const past_and_block &x, int32_t taps) {
  const price cost(x.width);
  if (last.doubling != cost.doubling || last.block != x.block_length || last.taps != taps)
    last = {cost.doubling, x.block_length, taps, cheapest_partition(cost, x.block_length, taps)};
  return last.found;
}

int32_t filter_by_transforms(const past_and_block &x, const dsp_vec &h, const partition &p, dsp_vec *out) {
  const bool complex_block = x.width == 2;
  const double dx = out->dx;
  const double *spectra = nullptr;
  if (fir_spectra(h, p, complex_block, &spectra) != 0) return -1;
  if (spectra == nullptr) return filter_by_sum(x, h, dx, out);
  if (reserve(out, p.size) != 0) return -1;
  dsp_vec *const later = part_spectrum.obtain();
  if (p.parts > 1 && reserve(later, p.size) != 0) return -1;
  const int64_t bins = p.bins(complex_block);
  for (int64_t i = 0; i < p.parts; ++i) {
    dsp_vec *v = i == 0 ? out : later;
    if (transform(x, i * p.taps, p.size, v) != 0) return -1;  // GCOVR_EXCL_BR_LINE: tables are there
    const double squares = fir_kernels().multiply(out->data, v->data, spectra + 2 * i * bins, bins, i > 0);
    if (!is_small(squares, p.size) && !all_tame(x)) return filter_by_sum(x, h, dx, out);
  }
  if ((complex_block ? dspi_dft(out, 1) : dspi_irdft(out, 0)) != 0) return -1;  // GCOVR_EXCL_BR_LINE: tables are there
  out->length = static_cast<int32_t>(x.block_length);
  out->dx = dx;
  if (p.parts == 1) unwrap_past(x, p.size, h, out->data);
  return 0;
}

int32_t free_fir_work() {
  free_fir_spectra();
  return part_spectrum.release();
}

}  // namespace dsp::filter
