// Transforms of signals and of bare arrays.
#include <algorithm>
#include <iterator>

#include "fuzz/block.h"
#include "fuzz/target.h"

namespace fuzz {
namespace {

// A length that is no power of two is refused, however little there is behind it.
int32_t bare_array(play *p) {
  const int32_t there = p->in->length();
  const bool is_complex = p->in->byte() % 2 != 0;
  block<double> data(static_cast<std::size_t>(there) * (is_complex ? 2 : 1));
  p->in->fill(data.data(), static_cast<int32_t>(data.size()));
  const int32_t wanted = p->integer();
  const bool is_hostile = wanted <= 0 || (wanted & (wanted - 1)) != 0;
  const int32_t status = cf_dspi_fft(data.data(), is_hostile ? wanted : there, is_complex, p->in->byte() % 2);
  p->check(data.is_intact(), "writes beside its array");
  return status;
}

constexpr row rows[] = {
    FUZZ_ROW(dspi_fft, same_length | rounds),
    FUZZ_ROW(dspi_bitrev, same_length),
    FUZZ_ROW(dspi_bitrev_scale, same_length),
    {"cf_dspi_fft", bare_array, rounds},
    FUZZ_ROW(dspi_rfft, no_nan | rounds),
    FUZZ_ROW(dspi_irfft, no_nan | rounds),
    FUZZ_ROW(dspi_dft, same_length | rounds),
    FUZZ_ROW(dspi_rdft, no_nan | rounds),
    FUZZ_ROW(dspi_irdft, no_nan | rounds),
    FUZZ_ROW(dspi_dct, same_length | rounds),
    FUZZ_ROW(dspi_hilbert, same_length | rounds),
    FUZZ_ROW(dspi_analytic, same_length | rounds),
    FUZZ_ROW(dspi_zpad, 0),
};

}  // namespace

const target fft = {"fft", rows, std::size(rows)};

}  // namespace fuzz
