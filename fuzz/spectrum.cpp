// Spectra, averages and correlation.
#include <algorithm>
#include <iterator>

#include "fuzz/block.h"
#include "fuzz/target.h"

namespace fuzz {
namespace {

enum : unsigned { first_null = 1, second_null = 2, third_null = 4, fourth_null = 8 };

int64_t power_of_two_from(int64_t n) {
  int64_t p = 1;
  while (p < n) p *= 2;
  return p;
}

// Room for what dsp.h says the result takes.
int32_t bare_arrays(play *p) {
  const int32_t length = p->in->length();
  const bool is_complex = p->in->byte() % 2 != 0;
  const double fraction = p->number();
  const dsp_window_type type = p->integer();
  const int32_t flags = p->integer();
  const bool inverse = (flags & DSP_SPECTRUM_INVERSE) != 0;
  const bool one_sided = (flags & (DSP_SPECTRUM_TWO_SIDED | DSP_SPECTRUM_RAW)) == 0 && !is_complex;
  const int64_t size = power_of_two_from(length);
  const int64_t half = power_of_two_from(2 * std::max<int64_t>(length - 1, 0));
  const int64_t result = inverse ? std::max(half, 2 * size) : one_sided ? size + 2 : 2 * size;
  block<double> from(static_cast<std::size_t>(length) * (is_complex ? 2 : 1));
  block<double> to(static_cast<std::size_t>(result));
  p->in->fill(from.data(), static_cast<int32_t>(from.size()));
  const int32_t status = cf_dsph_fft(from.data(), to.data(), length, is_complex, fraction, type, flags);
  p->check(from.is_intact() && to.is_intact(), "writes beside its arrays");
  return status;
}

constexpr row rows[] = {
    FUZZ_ROW(dsph_fft, first_null | second_null | rounds),
    FUZZ_ROW(dsph_dft, first_null | second_null | rounds),
    FUZZ_ROW(dsph_avg, folds | first_null | second_null | third_null | rounds),
    FUZZ_ROW(dsph_corr, first_null | second_null | third_null | fourth_null | rounds),
    FUZZ_ROW(dspb_corr, first_null | second_null | third_null | rounds),
    {"cf_dsph_fft", bare_arrays, rounds},
};

}  // namespace

const target spectrum = {"spectrum", rows, std::size(rows)};

}  // namespace fuzz
