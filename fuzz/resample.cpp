// Kernel tables, the fractional stage and the cascade.
#include <iterator>

#include "fuzz/target.h"

namespace fuzz {
namespace {

enum : unsigned { third_null = 4, fourth_null = 8 };

// A stream from its records to their end, in a few blocks.
int32_t stream(play *p) {
  dsph_rsmp_coef coef;
  dsph_rsmp_state state;
  dsph_rsmp_coef_init(&coef);
  dsph_rsmp_state_init(&state);
  int32_t status = dsph_rsmp_coef_alloc(&coef, p->in->byte() < 8);
  if (status == 0) status = dsph_rsmp_coef_setup(&coef, p->integer(), p->number(), p->integer(), p->in->byte() < 8);
  const bool has_state = p->in->byte() % 8 != 0;
  if (status == 0 && has_state) status = dsph_rsmp_state_alloc(&coef, &state, p->in->byte() % 2);
  if (status == 0 && has_state && p->in->byte() % 4 != 0) status = dsph_rsmp_state_reset(&coef, &state);
  const dsp_vec *in = p->input_signal();
  dsp_vec *out = p->output(false);
  dsp_vec *scratch = p->output(true);
  if (status == 0) status = dsph_rsmp(in, out, scratch, &coef, has_state ? &state : nullptr);
  for (int again = p->in->pick(3); again > 0 && status == 0; --again)
    status = dsph_rsmp(out, out, scratch, &coef, has_state ? &state : nullptr);
  dsph_rsmp_state_destroy(&state);
  dsph_rsmp_coef_destroy(&coef);
  return status;
}

constexpr row rows[] = {
    FUZZ_ROW(dspc_rsmp, creates),
    FUZZ_ROW(dspc_rsmp_cos, creates),
    FUZZ_ROW(dspc_rsmp_pcos, creates),
    FUZZ_ROW(dspd_rsmp, fourth_null | rounds),
    FUZZ_ROW(dspd_rsmp2, third_null | rounds),
    {"dsph_rsmp", stream, third_null | rounds},
};

}  // namespace

const target resample = {"resample", rows, std::size(rows)};

}  // namespace fuzz
