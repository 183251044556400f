// Ordering two signals within a tolerance.
#include <algorithm>
#include <cstdint>

#include "dsp/core/sizing.h"
#include "dsp/dsp.h"

namespace dsp {
namespace {

int32_t sign_beyond(double d, double tolerance) { return d > tolerance ? 1 : d < -tolerance ? -1 : 0; }

// Compares whole blocks without an early exit, which vectorises, and searches only a block that holds a difference.
int32_t order_equal_widths(const double *a, const double *b, int64_t n, double tolerance) {
  constexpr int64_t block = 64;
  for (int64_t begin = 0; begin < n; begin += block) {
    const int64_t end = std::min(n, begin + block);
    int beyond = 0;
    for (int64_t i = begin; i < end; ++i) {
      const double d = a[i] - b[i];
      beyond |= (d > tolerance) | (d < -tolerance);
    }
    for (int64_t i = begin; beyond != 0 && i < end; ++i)  // GCOVR_EXCL_BR_LINE: a difference is found
      if (const int32_t sign = sign_beyond(a[i] - b[i], tolerance); sign != 0) return sign;
  }
  return 0;
}

// `side` is 1 for complex minus real, -1 for real minus complex.
int32_t order_mixed(const double *complex, const double *real, int32_t n, double tolerance, double side) {
  for (int32_t i = 0; i < n; ++i, complex += 2)
    for (const double d : {complex[0] - real[i], complex[1]})
      if (const int32_t sign = sign_beyond(side * d, tolerance); sign != 0) return sign;
  return 0;
}

}  // namespace
}  // namespace dsp

using namespace dsp;

int32_t dsp_cmp(const dsp_vec *a, const dsp_vec *b, double tolerance, int32_t *result) {
  if (samples(*a) != samples(*b)) return -1;
  *result = sign_beyond(a->dx - b->dx, tolerance);
  if (*result != 0) return 0;
  if ((a->is_complex != 0) == (b->is_complex != 0))
    *result = order_equal_widths(a->data, b->data, doubles(*a), tolerance);
  else if (a->is_complex != 0)
    *result = order_mixed(a->data, b->data, samples(*a), tolerance, 1.0);
  else
    *result = order_mixed(b->data, a->data, samples(*a), tolerance, -1.0);
  return 0;
}
