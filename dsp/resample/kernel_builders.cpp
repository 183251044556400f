// Builds tables of interpolation kernels: sample 0 is the number of taps, the rest is symmetric about L/2.
#include <cmath>
#include <cstdint>

#include "dsp/core/sizing.h"
#include "dsp/core/stream.h"
#include "dsp/core/temporary.h"
#include "dsp/dsp.h"
#include "dsp/resample/kernel_lists.h"

namespace dsp::resample {
namespace {

// Angle j of the `period` that a turn is divided into.
double cosine(int64_t j, int64_t period) {
  return period > 0 ? std::cos(static_cast<double>(j) * (6.283185307179586 / static_cast<double>(period))) : 1.0;
}

// Nothing to sum, or nothing to sum it into: silence, with the number of taps where there is room for it.
int32_t build_empty(dsp_vec *v, const dsp_vec &c) {
  const int32_t status = dspi_zero(v);
  if (v->length > 0 && c.length > 0) v->data[0] = c.data[0];
  return status;
}

// value(j) is the kernel at j points from its centre.
template <class Value>
void fill_mirrored(dsp_vec *v, double taps, Value value) {
  const int32_t centre = v->length / 2;
  v->data[0] = taps;
  for (int32_t j = 0; j < centre; ++j) v->data[centre + j] = v->data[centre - j] = value(j);
}

template <class Fill>
int32_t build(dsp_vec *v, const dsp_vec &c, Fill fill) {
  if (shares_buffer(v, &c) || dsp_alloc(v) != 0) return -1;
  if (v->length <= 1 || c.length <= 1) return build_empty(v, c);
  if (v->length % 2 != 0 || c.is_complex != 0) return -1;
  const bool was_complex = v->is_complex != 0;
  v->is_complex = 0;
  if (fill() != 0) return -1;
  return was_complex ? dspi_rtoc(v) : 0;
}

}  // namespace
}  // namespace dsp::resample

using namespace dsp;
using namespace dsp::resample;

int32_t dspc_rsmp(dsp_vec *v, int32_t kind) {
  const kernel_list *list = find_kernel_list(kind);
  if (list == nullptr) return -1;
  const dsp_vec c = {1.0, const_cast<double *>(list->coefficients), 0, list->count, 0, 0};
  return list->build(v, &c);
}

int32_t dspc_rsmp_cos(dsp_vec *v, const dsp_vec *c) {
  return build(v, *c, [=] {
    // All multiples of the step are multiples of it modulo a turn: one cosine for each suffices.
    const int64_t period = v->length - 2;
    temporary cosines;
    cosines->length = v->length / 2;
    if (dsp_alloc(cosines.get()) != 0) return -1;
    for (int32_t j = 0; j < cosines->length; ++j) cosines->data[j] = cosine(j, period);
    fill_mirrored(v, c->data[0], [&](int64_t j) {
      double sum = c->data[1];
      int64_t at = 0;
      for (int32_t k = 2; k < c->length; ++k) {
        at += j;
        if (at >= period) at -= period;
        sum += c->data[k] * cosines->data[at <= period / 2 ? at : period - at];
      }
      return sum;
    });
    return 0;
  });
}

int32_t dspc_rsmp_pcos(dsp_vec *v, const dsp_vec *c) {
  return build(v, *c, [=] {
    fill_mirrored(v, c->data[0], [=](int64_t j) {
      const double x = cosine(j, v->length - 2);
      double sum = 0.0;
      for (int32_t k = c->length - 1; k >= 1; --k) sum = sum * x + c->data[k];
      return sum;
    });
    return 0;
  });
}
