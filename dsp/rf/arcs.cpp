// A complex trace between its points, along arcs.
#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdint>

#include "dsp/dsp.h"
#include "dsp/math/constants.h"

namespace dsp::rf {
namespace {

using complex = std::complex<double>;

constexpr double tolerance = 4.0 * 0x1p-52;

complex value(dsp_complex z) { return {z.re, z.im}; }

double largest_part(complex z) { return std::max(std::fabs(z.real()), std::fabs(z.imag())); }

complex scaled(complex z, double power) { return {z.real() * power, z.imag() * power}; }

// a b and conj(a) b by their formulas: the language's product tests for infinities.
complex product(complex a, complex b) {
  return {a.real() * b.real() - a.imag() * b.imag(), a.real() * b.imag() + a.imag() * b.real()};
}

// Half the angle by which an arc turns from one node to the next, as the third node of the circle sees it: `cross` and
// `dot` are the products of its sides to the two. Half a circle, to rounding, counts as counter-clockwise.
double half_turn(double cross, double dot) {
  return std::fabs(dot) <= tolerance * std::fabs(cross) ? 0.5 * pi : std::atan(cross / dot);
}

// The curve through three nodes: an arc, or a parabola for collinear ones.
class curve {
 public:
  curve() = default;
  curve(const double *x, const dsp_complex *z) : x_(x), z_(z) {
    const complex a = value(z[0]), b = value(z[1]), c = value(z[2]);
    int exponent;
    std::frexp(std::max({largest_part(b - a), largest_part(c - b), largest_part(c - a)}), &exponent);
    const double scale = std::ldexp(1.0, std::clamp(-exponent, -1000, 1000));
    const complex ab = scaled(b - a, scale), bc = scaled(c - b, scale), ac = scaled(c - a, scale);
    const double longest = std::max({std::abs(ab), std::abs(bc), std::abs(ac)});
    const double largest = std::max({std::abs(a), std::abs(b), std::abs(c)});
    const double cross = product(std::conj(ab), bc).imag();  // the same from each corner
    is_arc_ = std::fabs(cross) > tolerance * largest * scale * longest;
    if (!is_arc_) return;
    half_[0] = half_turn(cross, product(std::conj(ac), bc).real());
    half_[1] = half_turn(cross, product(std::conj(ab), ac).real());
  }

  // At x, from node `first` (0 or 1) of the three.
  complex at(double x, int first) const {
    const double *const node = x_ + first;
    const complex from = value(z_[first]), chord = value(z_[first + 1]) - from;
    const double done = x - node[0], left = x - node[1], step = node[1] - node[0];
    if (!is_arc_)
      return from + done * (chord / step + left * bend(value(z_[1]) - value(z_[0]), value(z_[2]) - value(z_[1])));
    const double half = done * (half_[first] / step + left * bend(half_[0], half_[1]));
    // Not std::polar, which takes no negative modulus.
    const double modulus = std::sin(half) / std::sin(half_[first]), turn = half - half_[first];
    return from + product(chord, {modulus * std::cos(turn), modulus * std::sin(turn)});
  }

 private:
  // The second divided difference, of values whose first differences are given.
  template <class T>
  T bend(T first, T second) const {
    return (second / (x_[2] - x_[1]) - first / (x_[1] - x_[0])) / (x_[2] - x_[0]);
  }

  const double *x_ = nullptr;
  const dsp_complex *z_ = nullptr;
  bool is_arc_ = false;
  double half_[2] = {};  // half the angle of each of the two arcs
};

// Serves one abscissa after the other; the curves of an interval stay until another is asked for.
class trace {
 public:
  trace(const double *x, const dsp_complex *z, int32_t n) : x_(x), z_(z), n_(n) {}

  complex at(double x) {
    if (n_ == 1) return value(z_[0]) + 0.0 * (x - x);
    enter(x);
    if (x == x_[k_]) return value(z_[k_]);
    if (x == x_[k_ + 1]) return value(z_[k_ + 1]);
    const double t = (x - x_[k_]) / (x_[k_ + 1] - x_[k_]);
    if (n_ == 2) return value(z_[0]) + t * (value(z_[1]) - value(z_[0]));
    if (k_ == 0) return next_.at(x, 0);
    if (k_ == n_ - 2) return previous_.at(x, 1);
    return (1.0 - t) * previous_.at(x, 1) + t * next_.at(x, 0);
  }

 private:
  void enter(double x) {
    if (k_ >= 0 && x >= x_[k_] && x < x_[k_ + 1]) return;
    const auto above = static_cast<int32_t>(std::upper_bound(x_, x_ + n_, x) - x_);
    const int32_t k = std::clamp(above - 1, 0, n_ - 2);
    if (k == k_) return;
    k_ = k;
    if (k > 0) previous_ = curve(x_ + k - 1, z_ + k - 1);
    if (k < n_ - 2) next_ = curve(x_ + k, z_ + k);
  }

  const double *x_;
  const dsp_complex *z_;
  int32_t n_;
  int32_t k_ = -1;
  curve previous_, next_;  // through the nodes from k - 1 on and from k on
};

bool rises(const double *x, int32_t n) {
  for (int32_t i = 1; i < n; ++i)
    if (!(x[i - 1] < x[i])) return false;
  return n > 0 && x[0] == x[0];
}

}  // namespace
}  // namespace dsp::rf

using namespace dsp;
using namespace dsp::rf;

int32_t CircularInterpolation(const double *x, const dsp_complex *z, int32_t n, const double *xi, dsp_complex *zi,
                              int32_t m) {
  if (!rises(x, n)) return -1;
  trace curves(x, z, n);
  for (int32_t i = 0; i < m; ++i) {
    const complex value = curves.at(xi[i]);
    zi[i] = {value.real(), value.imag()};
  }
  return 0;
}
