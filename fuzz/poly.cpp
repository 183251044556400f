// Zeros of polynomials, their coefficients, and solutions.
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
    {"dspi_proots", with_short_signals<dspi_proots>, no_nan},
    {"dspi_pztoc", with_short_signals<dspi_pztoc>, no_nan},
    {"dsps_psolve", with_short_signals<dsps_psolve>, no_nan},
    {"dsps_pcsolve", with_short_signals<dsps_pcsolve>, no_nan},
    FUZZ_ROW(dsps_peval, 0),
    FUZZ_ROW(dspi_pdiffer, no_nan),
    FUZZ_ROW(dspb_pmul, no_nan),
};

}  // namespace

const target poly = {"poly", rows, std::size(rows)};

}  // namespace fuzz
