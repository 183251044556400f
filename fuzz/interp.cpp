// Interpolation, splines and interleaving.
#include <iterator>

#include "fuzz/target.h"

namespace fuzz {
namespace {

enum : unsigned { second_derivatives_null = 4 };

constexpr row rows[] = {
    FUZZ_ROW(dsp_interp, second_derivatives_null),
    FUZZ_ROW(dsp_cspline, second_derivatives_null),
    FUZZ_ROW(dspb_cspline_2d, 0),
    FUZZ_ROW(dspb_inter, no_nan),
    FUZZ_ROW(dspi_zinter, no_nan),
    FUZZ_ROW(dspc_line, creates),  // nodes that rise
    FUZZ_ROW(dspi_sort, same_length),
};

}  // namespace

const target interp = {"interp", rows, std::size(rows)};

}  // namespace fuzz
