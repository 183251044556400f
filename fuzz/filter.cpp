// Filter design and streaming filters.
#include <iterator>

#include "fuzz/target.h"

namespace fuzz {
namespace {

// dspd_fir, dspd_sfir: in, out, filter, state.
enum : unsigned { third_null = 4, fourth_null = 8 };

int32_t half_band(play *p) {
  const dsp_vec *in = p->input_signal();
  dsp_vec *out = p->output(false);
  return dspd_hwfilt(in, out, p->in->byte() < 8 ? in : nullptr, p->output(true));
}

constexpr row rows[] = {
    FUZZ_ROW(dspc_fir, creates | rounds),
    FUZZ_ROW(dspc_fir2, creates | rounds),
    FUZZ_ROW(dspd_fir, fourth_null | rounds),
    FUZZ_ROW(dspd_sfir, fourth_null | rounds),
    FUZZ_ROW(dspd_deci, third_null),
    {"dspd_hwfilt", half_band, third_null},
    {"dspi_hwfilt", [](play *p) { return dspi_hwfilt(p->output(true), nullptr); }, same_length},
    FUZZ_ROW(dspi_scale, same_length),
};

}  // namespace

const target filter = {"filter", rows, std::size(rows)};

}  // namespace fuzz
