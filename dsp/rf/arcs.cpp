// Interpolation of a complex trace along circular arcs.
#include <algorithm>
#include <cmath>
#include <cstdint>

#include "dsp/dsp.h"
#include "dsp/math/complex.h"
#include "dsp/math/constants.h"

namespace dsp::rf {
namespace {

constexpr double tolerance = 4.0 * epsilon;

// Half the angle of the arc between two nodes, which is the inscribed angle between the chords to them from the third
// node of the circle, given the cross and dot product of these. Half a circle, to rounding, counts as
// counter-clockwise.
double half_angle(double cross, double dot) {
  return std::fabs(dot) <= tolerance * std::fabs(cross) ? 0.5 * pi : std::atan(cross / dot);
}

// The curve through three nodes: an arc, or a parabola for collinear ones.
class curve {
 public:
  curve() = default;
  curve(const double *x, const dsp_complex *z) : x_(x), z_(z) {
    const dsp_complex a = z[0], b = z[1], c = z[2];
    const double size = std::max({largest_component(b - a), largest_component(c - b), largest_component(c - a)});
    const double scale = std::ldexp(1.0, std::clamp(-exponent_of(size), -1000, 1000));
    const dsp_complex ab = scale * (b - a), bc = scale * (c - b), ac = scale * (c - a);
    const double longest = std::max({modulus(ab), modulus(bc), modulus(ac)});
    const double largest = std::max({modulus(a), modulus(b), modulus(c)});
    const double area = cross(ab, bc);  // twice that of the triangle, from whichever node
    is_arc_ = std::fabs(area) > tolerance * largest * scale * longest;
    if (!is_arc_) return;
    half_[0] = half_angle(area, dot(ac, bc));
    half_[1] = half_angle(area, dot(ab, ac));
  }

  // The value at x, between the nodes `first` and first + 1 of the three; `first` is 0 or 1.
  dsp_complex at(double x, int first) const {
    const double *const node = x_ + first;
    const dsp_complex from = z_[first], chord = z_[first + 1] - from;
    const double done = x - node[0], left = x - node[1], step = node[1] - node[0];
    if (!is_arc_) return from + done * (chord / step + left * bend(z_[1] - z_[0], z_[2] - z_[1]));
    const double half = done * (half_[first] / step + left * bend(half_[0], half_[1]));
    const double ratio = std::sin(half) / std::sin(half_[first]), turn = half - half_[first];
    return from + product(chord, ratio * dsp_complex{std::cos(turn), std::sin(turn)});
  }

 private:
  // The second divided difference of values with these first differences.
  template <class T>
  T bend(T first, T second) const {
    return (second / (x_[2] - x_[1]) - first / (x_[1] - x_[0])) / (x_[2] - x_[0]);
  }

  const double *x_ = nullptr;
  const dsp_complex *z_ = nullptr;
  bool is_arc_ = false;
  double half_[2] = {};  // half the angle of each of the two arcs
};

// Keeps the curves of the interval of the last abscissa.
class trace {
 public:
  trace(const double *x, const dsp_complex *z, int32_t n) : x_(x), z_(z), n_(n) {}

  dsp_complex at(double x) {
    if (n_ == 1) return {z_[0].re + 0.0 * (x - x), z_[0].im};  // the same everywhere, but for NaN and infinity
    enter(x);
    if (x == x_[k_]) return z_[k_];
    if (x == x_[k_ + 1]) return z_[k_ + 1];
    const double t = (x - x_[k_]) / (x_[k_ + 1] - x_[k_]);
    if (n_ == 2) return z_[0] + t * (z_[1] - z_[0]);
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

// Whether there are nodes, none is NaN, and each is above the one before.
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
  for (int32_t i = 0; i < m; ++i) zi[i] = curves.at(xi[i]);
  return 0;
}
