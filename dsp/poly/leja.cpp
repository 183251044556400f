#include "dsp/poly/leja.h"

#include <algorithm>
#include <cmath>

#include "dsp/poly/heap_array.h"

namespace dsp::poly {
namespace {

// A product of distances, out of reach of overflow.
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

double quarter_modulus(dsp_complex z) { return std::hypot(0.25 * z.re, 0.25 * z.im); }

// Between equal points some distance, else one product of 0 would be as good as another.
double quarter_apart(dsp_complex a, dsp_complex b) {
  const double d = std::hypot(0.25 * a.re - 0.25 * b.re, 0.25 * a.im - 0.25 * b.im);
  return std::max({d, 0x1p-52 * quarter_modulus(a), 0x1p-1022});
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
    for (candidate *c = at + 1; c != end; ++c) c->multiply(quarter_apart(c->z, at->z));
    chosen = std::max_element(at + 1, end);
  }
  return 0;
}

}  // namespace dsp::poly
