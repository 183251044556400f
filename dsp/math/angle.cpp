#include "dsp/math/angle.h"

#include "dsp/math/double_double.h"

namespace dsp {
namespace {

constexpr int64_t steps_per_seed = 256;

struct exact_rotation {
  double_double cos;
  double_double sin;
};

exact_rotation operator*(const exact_rotation &a, const exact_rotation &b) {
  return {a.cos * b.cos - a.sin * b.sin, a.sin * b.cos + a.cos * b.sin};
}

// By the power series of both, two steps at a time; |angle| <= pi/4, where the 28th term is below 2^-106.
exact_rotation rotation_by(double_double angle) {
  exact_rotation sum = {{1.0, 0.0}, angle};
  exact_rotation term = sum;
  const double_double square = -(angle * angle);
  for (int power = 2; power < 28 && term.cos.hi * term.cos.hi > 0x1p-220; power += 2) {
    term.cos = term.cos * (square / (power * (power - 1)));  // the quotients wait for no other term
    term.sin = term.sin * (square / (power * (power + 1)));
    sum = {sum.cos + term.cos, sum.sin + term.sin};
  }
  return sum;
}

exact_rotation rotation_by(int64_t k, int64_t n) {
  return rotation_by(double_double{static_cast<double>(k), 0.0} * exact_two_pi / static_cast<double>(n));
}

}  // namespace

void fill_roots(double *cosines, double *sines, std::ptrdiff_t spacing, int64_t first, int64_t last, int64_t n) {
  const exact_rotation step = rotation_by(1, n);
  exact_rotation at{};
  for (int64_t k = first; k <= last; ++k, cosines += spacing, sines += spacing) {
    at = k == first || k % steps_per_seed == 0 ? rotation_by(k, n) : at * step;
    *cosines = at.cos.hi;
    *sines = at.sin.hi;
  }
}

void fill_octant(double *cosines, double *sines, int64_t n) {
  fill_roots(cosines, sines, 1, 0, n / 8, n);
  cosines[n / 8] = sines[n / 8] = half_sqrt2;
}

root root_from_octant(const double *cosines, const double *sines, int64_t n, int64_t k) {
  const int64_t quarter = n / 4;
  const int64_t in_quarter = k % quarter;
  const bool upper = in_quarter > n / 8;
  const int64_t i = upper ? quarter - in_quarter : in_quarter;
  const root r = upper ? root{sines[i], cosines[i]} : root{cosines[i], sines[i]};
  switch (k / quarter) {
    case 0:
      return r;
    case 1:
      return {-r.sin, r.cos};
    case 2:
      return {-r.cos, -r.sin};
    default:
      return {r.sin, -r.cos};
  }
}

}  // namespace dsp
