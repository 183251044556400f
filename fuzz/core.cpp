// Signals: sizing, copying, cutting, comparing.
#include <algorithm>
#include <iterator>

#include "fuzz/target.h"

namespace fuzz {
namespace {

// Keeps at most the samples that are there.
int32_t resize(play *p) {
  dsp_vec *v = p->output(true);
  const int32_t length = v->length;
  const uint32_t is_complex = v->is_complex;
  v->length = p->integer();
  v->is_complex = p->in->byte() % 2;
  return dsp_realloc(v, std::min(length, p->integer()), is_complex);
}

constexpr row rows[] = {
    FUZZ_ROW(dsp_alloc, creates),   {"dsp_realloc", resize, 0},
    FUZZ_ROW(dsp_destroy, creates), FUZZ_ROW(dsp_copy, 0),
    FUZZ_ROW(dsp_copy_at_most, 0),  FUZZ_ROW(dspu_subvec, 0),
    FUZZ_ROW(dsp_append, 0),        FUZZ_ROW(dsp_cmp, 0),
    FUZZ_ROW(dspi_rtoc, 0),         {"dsp_free_internal", [](play *) { return dsp_free_internal(); }, 0},
};

}  // namespace

const target core = {"core", rows, std::size(rows)};

}  // namespace fuzz
