#include "dsp/filter/fir_spectrum.h"

#include <cmath>
#include <cstring>

#include "dsp/core/caches.h"
#include "dsp/core/sizing.h"
#include "dsp/core/work_signal.h"

namespace dsp::filter {
namespace {

struct route_spectrum {
  work_signal work;
  bool current;  // made from the present filter copy
  std::int32_t size;
};

// One filter copy serves the spectra of both kinds of blocks.
work_signal filter_copy;
bool filter_held = false;
route_spectrum spectra[2];

bool same_bits(const dsp_vec &a, const dsp_vec &b) {
  return a.length == b.length && a.dx == b.dx &&
         std::memcmp(a.data, b.data, static_cast<std::size_t>(doubles(a)) * sizeof(double)) == 0;
}

// Whether h is the filter held, up to a few units in the last place of its first tap. Filters that get here are finite.
bool held(const dsp_vec &h) {
  if (!filter_held) return false;
  if (same_bits(h, filter_copy.signal)) return true;
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

int32_t transform(const dsp_vec &h, std::int32_t size, bool complex_block, dsp_vec *spectrum) {
  if (dsp_copy(spectrum, &h) != 0 || dspi_zpad(spectrum, size) != 0) return -1;
  dspi_scale(spectrum, size);  // both forward transforms divide by it, one too many
  return complex_block ? dspi_fft(spectrum, 0) : dspi_rfft(spectrum);
}

}  // namespace

const dsp_vec *fir_spectrum(const dsp_vec &h, std::int32_t size, bool complex_block) {
  if (!held(h) && hold(h) != 0) return nullptr;
  route_spectrum &route = spectra[complex_block ? 1 : 0];
  if (route.current && route.size == size) return &route.work.signal;
  route.current = false;
  dsp_vec *spectrum = route.work.obtain();
  if (transform(h, size, complex_block, spectrum) != 0) return nullptr;
  route.current = true;
  route.size = size;
  return spectrum;
}

int32_t free_fir_work() {
  filter_held = false;
  for (route_spectrum &route : spectra) {
    route.current = false;
    route.work.release();
  }
  return filter_copy.release();
}

}  // namespace dsp::filter
