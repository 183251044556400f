// The value of a polynomial.
#include "dsp/dsp.h"
#include "dsp/stats/input.h"
#include "dsp/stats/result.h"

using namespace dsp;
using namespace dsp::stats;

int32_t dsps_peval(const dsp_vec *c, dsp_vec *out, double x) {
  if (c->is_complex != 0) return -1;
  const stats_input coefficients(*c);
  double value = 0.0;
  if (coefficients.n > 0) {
    int64_t i = coefficients.n - 1;
    value = coefficients.data[i];
    while (i-- > 0) value = coefficients.data[i] + x * value;
  }
  return put_number(out, value);
}
