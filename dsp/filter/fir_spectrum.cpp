#include "dsp/filter/fir_spectrum.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "dsp/core/sizing.h"
#include "dsp/core/temporary.h"
#include "dsp/core/work_signal.h"

namespace dsp::filter {
namespace {

struct route_spectra {
  work_signal work;
  bool current;  // made from `filter_copy`
  partition parts;
};

// One filter copy serves the spectra of both kinds of blocks.
work_signal filter_copy;
bool filter_held = false;
route_spectra spectra[2];

bool same_bits(const dsp_vec &a, const dsp_vec &b) {
  return a.length == b.length && a.dx == b.dx &&
         std::memcmp(a.data, b.data, static_cast<std::size_t>(doubles(a)) * sizeof(double)) == 0;
}

// Whether h is the filter held, up to a few units in the last place of its first tap. All filters held are tame.
bool held(const dsp_vec &h) {
  if (!filter_held) return false;
  if (same_bits(h, filter_copy.signal)) return true;
  if (!is_tame(h.data, h.length)) return false;  // a difference that is NaN counts as agreement
  const double tolerance = std::fabs(h.data[0]) * 1.1102230246251565e-15;
  int32_t order = 0;
  return dsp_cmp(&h, &filter_copy.signal, tolerance, &order) == 0 && order == 0;
}

int32_t hold(const dsp_vec &h) {
  filter_held = spectra[0].current = spectra[1].current = false;
  if (dsp_copy(filter_copy.obtain(), &h) != 0) return -1;
  filter_held = true;
  return 0;
}

// For partitions of the same filter.
bool same_parts(const partition &a, const partition &b) { return a.size == b.size && a.taps == b.taps; }

int32_t transform_part(const dsp_vec &h, int64_t first, const partition &p, bool complex_block, double *to) {
  temporary part;
  const int64_t taps = std::min<int64_t>(p.taps, h.length - first);
  part->length = p.size;
  part->is_complex = 1;  // room for the spectrum of a real block, too
  if (dsp_alloc(part.get()) != 0) return -1;
  part->is_complex = complex_block;
  const int32_t step = complex_block ? 2 : 1;
  std::fill_n(part->data, int64_t{p.size} * step, 0.0);
  for (int64_t k = 0; k < taps; ++k) part->data[k * step] = h.data[first + k];
  dspi_scale(part.get(), p.size);  // both forward transforms divide by it, one too many
  if ((complex_block ? dspi_dft(part.get(), 0) : dspi_rdft(part.get())) != 0) return -1;
  std::copy_n(part->data, 2 * p.bins(complex_block), to);
  return 0;
}

int32_t transform(const dsp_vec &h, const partition &p, bool complex_block, dsp_vec *to) {
  const int64_t bins = p.bins(complex_block);
  to->length = static_cast<int32_t>(p.parts * bins);
  to->is_complex = 1;
  if (dsp_alloc(to) != 0) return -1;
  for (int64_t i = 0; i < p.parts; ++i)
    if (transform_part(h, i * p.taps, p, complex_block, to->data + 2 * i * bins) != 0) return -1;
  return 0;
}

}  // namespace

int32_t fir_spectra(const dsp_vec &h, const partition &p, bool complex_block, const double **found) {
  *found = nullptr;
  if (!held(h)) {
    if (!is_tame(h.data, h.length)) return 0;
    if (hold(h) != 0) return -1;
  }
  route_spectra &route = spectra[complex_block ? 1 : 0];
  dsp_vec *made = route.work.obtain();
  if (!route.current || !same_parts(route.parts, p)) {
    route.current = false;
    if (transform(h, p, complex_block, made) != 0) return -1;
    route.current = true;
    route.parts = p;
  }
  *found = made->data;
  return 0;
}

void free_fir_spectra() {
  filter_held = false;
  for (route_spectra &route : spectra) {
    route.current = false;
    route.work.release();
  }
  filter_copy.release();
}

}  // namespace dsp::filter
