#include "dsp/poly/leja.h"

#include <algorithm>
#include <cmath>

#include "dsp/math/complex.h"
#include "dsp/math/constants.h"
#include "dsp/poly/heap_array.h"

namespace dsp::poly {
namespace {

// A point and the product of its distances from those chosen before, fraction 2^exponent, which cannot overflow.
struct candidate {
  dsp_complex z;
  double fraction;  // from 0.5 to 1
  int64_t exponent;

  void multiply(double x) {
    int e;
    fraction = std::frexp(fraction * x, &e);
    exponent += e;
  }
  bool operator<(const candidate &other) const {
    return exponent < other.exponent || (exponent == other.exponent && fraction < other.fraction);
  }
};

// A quarter of the modulus, so that neither it nor a difference overflows.
double quarter_modulus(dsp_complex z) { return modulus(0.25 * z); }

// Equal points count as an ulp apart: products of 0 could not be compared.
double quarter_distance(dsp_complex a, dsp_complex b) {
  const double d = modulus(0.25 * a - 0.25 * b);
  return std::max({d, epsilon * quarter_modulus(a), 0x1p-1022});
}

}  // namespace

int32_t sort_leja(dsp_complex *z, int32_t n) {
  const heap_array<candidate> rest(n);
  if (!rest) return -1;
  for (int32_t i = 0; i < n; ++i) rest[i] = {z[i], 0.5, 0};
  const auto smaller = [](const candidate &a, const candidate &b) {
    return quarter_modulus(a.z) < quarter_modulus(b.z);
  };
  candidate *const end = rest.get() + n;
  candidate *chosen = std::max_element(rest.get(), end, smaller);
  for (candidate *at = rest.get(); at != end; ++at, ++z) {
    std::swap(*at, *chosen);
    *z = at->z;
    for (candidate *c = at + 1; c != end; ++c) c->multiply(quarter_distance(c->z, at->z));
    chosen = std::max_element(at + 1, end);
  }
  return 0;
}

}  // namespace dsp::poly
