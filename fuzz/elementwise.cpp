// Arithmetic, representations, functions, order, length, calculus and generators.
#include <iterator>

#include "fuzz/target.h"

namespace fuzz {
namespace {

constexpr unsigned pointwise = same_length | no_nan;

constexpr row rows[] = {
    FUZZ_ROW(dspi_db, pointwise | rounds),
    FUZZ_ROW(dspi_real, pointwise),
    FUZZ_ROW(dspi_imag, pointwise),
    FUZZ_ROW(dspi_rtoc, pointwise),
    FUZZ_ROW(dspi_conj, pointwise),
    FUZZ_ROW(dspi_neg, pointwise),
    FUZZ_ROW(dspi_offset, pointwise),
    FUZZ_ROW(dspi_scale, pointwise),
    FUZZ_ROW(dspi_cscale, pointwise),
    FUZZ_ROW(dspi_recip, same_length),
    FUZZ_ROW(dspi_sqrt, pointwise),
    FUZZ_ROW(dspi_square, pointwise),
    FUZZ_ROW(dspi_timesi, pointwise),
    FUZZ_ROW(dspi_limit, pointwise),
    FUZZ_ROW(dspi_zero, creates | no_nan),
    FUZZ_ROW(dspi_mag, pointwise),
    FUZZ_ROW(dspi_magsq, pointwise),
    FUZZ_ROW(dspi_phase, pointwise),
    FUZZ_ROW(dspi_rtop, pointwise),
    FUZZ_ROW(dspi_ptor, pointwise),
    FUZZ_ROW(dspu_mag, no_nan),
    FUZZ_ROW(dspu_magsq, no_nan),
    FUZZ_ROW(dspu_sqrt, no_nan),
    FUZZ_ROW(dspb_add, no_nan),
    FUZZ_ROW(dspb_sub, no_nan),
    FUZZ_ROW(dspb_mul, no_nan),
    FUZZ_ROW(dspb_conj_mul, no_nan),
    FUZZ_ROW(dspb_div, no_nan),
    FUZZ_ROW(dspb_avg_add, no_nan),
    FUZZ_ROW(dspb_max, no_nan),
    FUZZ_ROW(dspb_min, no_nan),
    FUZZ_ROW(dspb_pmul, no_nan),
    FUZZ_ROW(dspb_ritoc, no_nan),
    FUZZ_ROW(dspbs_dot, no_nan),
    FUZZ_ROW(dspi_asin, pointwise),
    FUZZ_ROW(dspi_acos, pointwise),
    FUZZ_ROW(dspi_sinh, pointwise),
    FUZZ_ROW(dspi_cosh, pointwise),
    FUZZ_ROW(dspi_besy0, pointwise),
    FUZZ_ROW(dspi_besy1, pointwise),
    FUZZ_ROW(dspi_exp, pointwise | rounds),
    FUZZ_ROW(dspi_exp10, pointwise | rounds),
    FUZZ_ROW(dspi_log, pointwise | rounds),
    FUZZ_ROW(dspi_log10, pointwise | rounds),
    FUZZ_ROW(dspi_addcos, pointwise),
    FUZZ_ROW(dspi_rev, pointwise),
    FUZZ_ROW(dspi_shift, no_nan),
    FUZZ_ROW(dspi_sort, pointwise),
    FUZZ_ROW(dspi_swap_halves, pointwise),
    FUZZ_ROW(dspi_swap_halves2, pointwise),
    FUZZ_ROW(dspi_zpad, no_nan),
    FUZZ_ROW(dspi_zpad2, no_nan),
    FUZZ_ROW(dspi_unzpad, no_nan),
    FUZZ_ROW(dspi_recon, no_nan),
    FUZZ_ROW(dspi_orecon, no_nan),
    FUZZ_ROW(dspi_differ, pointwise),
    FUZZ_ROW(dspi_integ, pointwise),
    FUZZ_ROW(dspi_pdiffer, no_nan),
    FUZZ_ROW(dspi_unwrap, pointwise),
    FUZZ_ROW(dspi_unwrap_wnd, pointwise),
    FUZZ_ROW(dspi_edge, no_nan),
    FUZZ_ROW(dspc_line, creates | no_nan),
    FUZZ_ROW(dspc_cos, creates | no_nan),
    FUZZ_ROW(dspc_cexp, creates | no_nan),
};

}  // namespace

const target elementwise = {"elementwise", rows, std::size(rows)};

}  // namespace fuzz
