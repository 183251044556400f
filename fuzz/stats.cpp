// Statistics, histograms, peaks and fits.
#include <iterator>

#include "fuzz/target.h"

namespace fuzz {
namespace {

constexpr row rows[] = {
    FUZZ_ROW(dsps_sum, no_nan),     FUZZ_ROW(dsps_mean, no_nan),      FUZZ_ROW(dsps_gmean, 0),
    FUZZ_ROW(dsps_hmean, 0),        FUZZ_ROW(dsps_median, no_nan),    FUZZ_ROW(dsps_max, no_nan),
    FUZZ_ROW(dsps_min, no_nan),     FUZZ_ROW(dsps_magsq_sum, no_nan), FUZZ_ROW(dsps_rms, no_nan),
    FUZZ_ROW(dsps_pop_var, no_nan), FUZZ_ROW(dsps_samp_var, no_nan),  FUZZ_ROW(dsps_pop_stddev, 0),
    FUZZ_ROW(dsps_samp_stddev, 0),  FUZZ_ROW(dsps_skew, 0),           FUZZ_ROW(dsps_excess, 0),
    FUZZ_ROW(dsps_hist, no_nan),    FUZZ_ROW(dsps_peak, 0),           FUZZ_ROW(dsps_peval, 0),
    FUZZ_ROW(dsps_lin_regres, 0),   FUZZ_ROW(dsps_lin_regres2, 0),
};

}  // namespace

const target stats = {"stats", rows, std::size(rows)};

}  // namespace fuzz
