// Statistics, histograms, peaks, fits and polynomials.
#include <iterator>

#include "fuzz/target.h"

namespace fuzz {
namespace {

// The search for zeros takes a time that rises with the square of the degree.
template <auto Routine>
int32_t with_short_signals(play *p) {
  for (int k = 0; k < signals::count; ++k)
    if ((*p->all)[k]->length > 100) return 0;
  return p->call(Routine);
}

constexpr row rows[] = {
    FUZZ_ROW(dsps_sum, no_nan),
    FUZZ_ROW(dsps_mean, no_nan),
    FUZZ_ROW(dsps_gmean, 0),
    FUZZ_ROW(dsps_hmean, 0),
    FUZZ_ROW(dsps_median, no_nan),
    FUZZ_ROW(dsps_max, no_nan),
    FUZZ_ROW(dsps_min, no_nan),
    FUZZ_ROW(dsps_magsq_sum, no_nan),
    FUZZ_ROW(dsps_rms, no_nan),
    FUZZ_ROW(dsps_pop_var, no_nan),
    FUZZ_ROW(dsps_samp_var, no_nan),
    FUZZ_ROW(dsps_pop_stddev, 0),
    FUZZ_ROW(dsps_samp_stddev, 0),
    FUZZ_ROW(dsps_skew, 0),
    FUZZ_ROW(dsps_excess, 0),
    FUZZ_ROW(dsps_hist, no_nan),
    FUZZ_ROW(dsps_peak, 0),
    FUZZ_ROW(dsps_peval, 0),
    FUZZ_ROW(dsps_lin_regres, 0),
    FUZZ_ROW(dsps_lin_regres2, 0),
    {"dspi_proots", with_short_signals<dspi_proots>, no_nan},
    {"dspi_pztoc", with_short_signals<dspi_pztoc>, no_nan},
    {"dsps_psolve", with_short_signals<dsps_psolve>, no_nan},
    {"dsps_pcsolve", with_short_signals<dsps_pcsolve>, no_nan},
};

}  // namespace

const target stats = {"stats", rows, std::size(rows)};

}  // namespace fuzz
