// The zeros of a polynomial, in place of its coefficients.
#include "dsp/core/temporary.h"
#include "dsp/dsp.h"
#include "dsp/poly/polynomial.h"
#include "dsp/poly/result.h"
#include "dsp/poly/zeros.h"

using namespace dsp;
using namespace dsp::poly;

int32_t dspi_proots(dsp_vec *v) {
  const polynomial p(*v, {0.0, 0.0});
  if (!p.is_finite() || (p.is_zero() && v->length > 0)) return -1;
  temporary zeros;
  if (size_as(zeros.get(), p.zeros(), true) != 0 || find_zeros(p, complex_samples(*zeros)) != 0) return -1;
  replace(v, zeros.get());
  return 0;
}
