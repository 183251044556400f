#include "dsp/poly/newton_polygon.h"

#include <algorithm>
#include <cmath>

#include "dsp/math/complex.h"

namespace dsp::poly {
namespace {

// The most bits by which the sum of all terms may be smaller than the largest coefficient, so that squares of points in
// that range and rounding errors of such sums are normal doubles.
constexpr double most_shrinkage = 480.0;

double log2_modulus(dsp_complex z) {
  const int exponent = exponent_of(largest_component(z));
  const double re = std::ldexp(z.re, -exponent);
  const double im = std::ldexp(z.im, -exponent);
  return exponent + 0.5 * std::log2(squared_modulus({re, im}));
}

}  // namespace

newton_polygon::newton_polygon(const polynomial &p) : vertices_(p.degree() + int64_t{1}) {
  if (!is_valid()) return;
  for (int32_t k = 0; k <= p.degree(); ++k) {
    const dsp_complex c = p[k];
    if (largest_component(c) > 0.0) add({k, log2_modulus(c)});
  }
}

void newton_polygon::add(vertex v) {
  const auto slope = [](const vertex &a, const vertex &b) { return (b.height - a.height) / (b.k - a.k); };
  while (count_ > 1 && slope(vertices_[count_ - 2], v) >= slope(vertices_[count_ - 2], vertices_[count_ - 1])) --count_;
  vertices_[count_++] = v;
}

double newton_polygon::log_radius(int32_t e) const {
  return (vertices_[e].height - vertices_[e + 1].height) / (end(e) - begin(e));
}

double newton_polygon::log_largest(const zero_group &g) const {
  double largest = vertices_[g.first_edge].height + 1.0 * begin(g.first_edge) * g.exponent;
  for (int32_t e = g.first_edge; e < g.end_edge; ++e)
    largest = std::max(largest, vertices_[e + 1].height + 1.0 * end(e) * g.exponent);
  return largest;
}

// By how many bits the sum of all terms is smaller at the radius of `edge` than at that of `seed`, where it is as large
// as its largest coefficient. For larger radii the sum is that divided by z^n.
double newton_polygon::shrinkage(int32_t seed, int32_t edge) const {
  double bits = 0.0;
  for (int32_t e = edge; e < seed; ++e) bits += (log_radius(e + 1) - log_radius(e)) * end(e);
  for (int32_t e = seed; e < edge; ++e) bits += (log_radius(e + 1) - log_radius(e)) * (end(edges() - 1) - end(e));
  return bits;
}

zero_group newton_polygon::group_from(int32_t edge) const {
  const auto zeros = [this](int32_t e) { return end(e) - begin(e); };
  int32_t seed = edge;
  int32_t next = edge + 1;
  for (; next < edges(); ++next) {
    const int32_t wanted = zeros(next) > zeros(seed) ? next : seed;
    if (shrinkage(wanted, edge) > most_shrinkage || shrinkage(wanted, next) > most_shrinkage) break;
    seed = wanted;
  }
  const double border = next < edges() ? 0.5 * (log_radius(next - 1) + log_radius(next)) : HUGE_VAL;
  return {edge, next, static_cast<int32_t>(std::lround(log_radius(seed))), border};
}

}  // namespace dsp::poly
