// The circle with the least sum of squared distances from points.
//
// A circle is A |p|^2 + n.p = 0, p relative to an origin on the circle, n the unit normal there, A half the curvature.
// A straight line is the circle with A = 0, so that no digits are lost on short arcs. (Chernov and Lesort, J. Math.
// Imaging Vis. 23, 2005.) The unknowns of a step are A, a shift D along n and an angle T by which n turns.
#include <algorithm>
#include <cmath>
#include <cstdint>

#include "dsp/dsp.h"
#include "dsp/math/complex.h"
#include "dsp/math/constants.h"
#include "dsp/rf/point_cloud.h"

namespace dsp::rf {
namespace {

dsp_complex left_of(dsp_complex a) { return {-a.im, a.re}; }

struct circle {
  dsp_complex origin;
  dsp_complex normal;
  double half_curvature;
};

struct line_fit {
  circle line;
  double sum_of_squares;
  double farthest;
};

// The line through the mean of the points, along the axis of their least moment of inertia.
line_fit fit_line(const point_cloud &points) {
  const auto n = static_cast<double>(points.count());
  const dsp_complex mean = 1.0 / n * points.sum([&](int64_t i) { return points[i]; });
  double xx = 0.0, xy = 0.0, yy = 0.0;
  for (int64_t i = 0; i < points.count(); ++i) {
    const dsp_complex p = points[i] - mean;
    xx += p.re * p.re;
    xy += p.re * p.im;
    yy += p.im * p.im;
  }
  const double angle = 0.5 * std::atan2(2.0 * xy, xx - yy);
  line_fit fit = {{mean, {-std::sin(angle), std::cos(angle)}, 0.0}, 0.0, 0.0};
  for (int64_t i = 0; i < points.count(); ++i) {
    const double d = dot(points[i] - mean, fit.line.normal);
    fit.sum_of_squares += d * d;
    fit.farthest = std::max(fit.farthest, std::fabs(d));
  }
  return fit;
}

// The circle a |p|^2 + b.p + d = 0, p relative to `origin`, in the form with an origin on it.
circle on_curve(dsp_complex origin, double a, dsp_complex b, double d) {
  const double slope = std::sqrt(squared_modulus(b));
  const dsp_complex normal = slope > 0.0 ? 1.0 / slope * b : dsp_complex{1.0, 0.0};
  const double scale = 1.0 / std::sqrt(slope * slope - 4.0 * a * d);
  const double distance = 2.0 * d * scale / (1.0 + slope * scale);
  return {origin - distance * normal, normal, a * scale};
}

// Moments of points about their mean, along and across a line.
struct moments {
  double uu = 0.0, uv = 0.0, vv = 0.0, uz = 0.0, vz = 0.0, zz = 0.0;

  moments(const point_cloud &points, const circle &line) {
    const double weight = 1.0 / static_cast<double>(points.count());
    for (int64_t i = 0; i < points.count(); ++i) {
      const dsp_complex p = points[i] - line.origin;
      const double u = dot(p, line.normal), v = dot(p, left_of(line.normal)), z = u * u + v * v;
      uu += weight * u * u;
      uv += weight * u * v;
      vv += weight * v * v;
      uz += weight * u * z;
      vz += weight * v * z;
      zz += weight * z * z;
    }
  }
};

// The algebraic fit. (Pratt, Computer Graphics 21, 1987; its least eigenvalue by Newton's method from below.)
circle fit_algebraically(const point_cloud &points, const circle &line) {
  const moments m(points, line);
  const double z = m.uu + m.vv;
  const double area = m.uu * m.vv - m.uv * m.uv;
  const double variance = m.zz - z * z;
  const double a2 = 4.0 * area - 3.0 * z * z - m.zz;
  const double a1 = variance * z + 4.0 * area * z - m.uz * m.uz - m.vz * m.vz;
  const double a0 = m.uz * (m.uz * m.vv - m.vz * m.uv) + m.vz * (m.vz * m.uu - m.uz * m.uv) - variance * area;
  double x = 0.0;
  for (int i = 0; i < 30; ++i) {  // GCOVR_EXCL_BR_LINE: it converges sooner
    const double step = (a0 + x * (a1 + x * (a2 + 4.0 * x * x))) / (a1 + x * (2.0 * a2 + 16.0 * x * x));
    if (!(x - step > x)) break;
    x -= step;
  }
  const double a = 2.0 * (x * x - x * z + area);
  const double u = m.vz * m.uv - m.uz * (m.vv - x);
  const double v = m.uz * m.uv - m.vz * (m.uu - x);
  return on_curve(line.origin, a, u * line.normal + v * left_of(line.normal), -a * (z + 2.0 * x));
}

constexpr int unknowns = 3;  // A, D, T

// Half the sum of squared distances: its gradient, its Hessian, and the part of the Hessian that is never indefinite.
struct expansion {
  double sum_of_squares = 0.0;
  double gradient[unknowns] = {};
  double hessian[unknowns][unknowns] = {};
  double gauss[unknowns][unknowns] = {};

  void add(const circle &c, dsp_complex p) {
    const double a = c.half_curvature;
    const double u = dot(p - c.origin, c.normal), v = dot(p - c.origin, left_of(c.normal)), square = u * u + v * v;
    const double value = a * square + u;
    const double root =
        std::sqrt(std::max(1.0 + 4.0 * a * value, 0x1p-40));  // the bound: no division by 0 at the centre
    const double d = 2.0 * value / (1.0 + root);
    const double first[unknowns] = {(square - d * d) / root, (1.0 + 2.0 * a * u) / root, v / root};
    const double second[unknowns][unknowns] = {
        {0.0, 2.0 * u, 0.0}, {2.0 * u, -4.0 * a * a * u, 2.0 * a * v}, {0.0, 2.0 * a * v, -u}};
    sum_of_squares += d * d;
    for (int i = 0; i < unknowns; ++i) {
      gradient[i] += d * first[i];
      for (int j = 0; j < unknowns; ++j) {
        const double mixed = (i == 0 ? first[j] : 0.0) + (j == 0 ? first[i] : 0.0);
        const double bend = (second[i][j] - 2.0 * a * first[i] * first[j] - 2.0 * d * mixed) / root;
        gauss[i][j] += first[i] * first[j];
        hessian[i][j] += first[i] * first[j] + d * bend;
      }
    }
  }

  expansion(const circle &c, const point_cloud &points) {
    for (int64_t i = 0; i < points.count(); ++i) add(c, points[i]);
  }
};

// Solves (m + damping diag m) x = -g by Cholesky's method; false when that matrix is not positive definite.
bool solve(const double m[unknowns][unknowns], double damping, const double *g, double *x) {
  double l[unknowns][unknowns];
  for (int i = 0; i < unknowns; ++i) {
    x[i] = -g[i];
    for (int j = 0; j <= i; ++j) {
      double s = i == j ? m[i][j] * (1.0 + damping) : m[i][j];
      for (int k = 0; k < j; ++k) s -= l[i][k] * l[j][k];
      if (i == j && !(s > 0.0)) return false;
      l[i][j] = i == j ? std::sqrt(s) : s / l[j][j];
    }
    for (int k = 0; k < i; ++k) x[i] -= l[i][k] * x[k];
    x[i] /= l[i][i];
  }
  for (int i = unknowns - 1; i >= 0; --i) {
    for (int k = i + 1; k < unknowns; ++k) x[i] -= l[k][i] * x[k];
    x[i] /= l[i][i];
  }
  return true;
}

circle moved(const circle &c, const double *step) {
  const double a = c.half_curvature + step[0];
  const double slope = std::sqrt(std::max(1.0 + 4.0 * a * step[1], 0.0));
  const dsp_complex b = slope * (std::cos(step[2]) * c.normal + std::sin(step[2]) * left_of(c.normal));
  return on_curve(c.origin, a, b, step[1]);
}

struct circle_fit {
  circle best;
  double sum_of_squares;
};

// Newton's method, damped when a step increases the sum.
circle_fit refine(circle c, const point_cloud &points) {
  constexpr int most_passes = 60;
  constexpr double small_step = 0x1p-34;  // the next step is below rounding
  const double noise = 256.0 * static_cast<double>(points.count()) * epsilon * epsilon;  // of the sum of squares
  expansion at(c, points);
  double damping = 0.0;
  for (int pass = 1; pass < most_passes; ++pass) {
    double step[unknowns];
    // GCOVR_EXCL_BR_START: only rounding makes both matrices singular
    const bool has_step = solve(at.hessian, damping, at.gradient, step) || solve(at.gauss, damping, at.gradient, step);
    if (!has_step) break;
    // GCOVR_EXCL_BR_STOP
    const circle next = moved(c, step);
    const expansion there(next, points);
    if (there.sum_of_squares > at.sum_of_squares * (1.0 + 0x1p-40) + noise) {
      damping = std::max(8.0 * damping, 0x1p-7);
      continue;
    }
    c = next;
    at = there;
    damping = damping < 0x1p-7 ? 0.0 : damping / 8.0;
    const double shift = std::max(std::fabs(step[1]), std::fabs(step[2]));
    const bool is_small = std::fabs(step[0]) <= small_step * std::fabs(c.half_curvature) && shift <= small_step;
    if (damping == 0.0 && is_small) break;
  }
  return {c, at.sum_of_squares};
}

}  // namespace
}  // namespace dsp::rf

using namespace dsp;
using namespace dsp::rf;

int32_t vfpd_CircleFit(const dsp_complex *z, int32_t start, int32_t stop, dsp_complex *centre, double *radius,
                       double *rms) {
  const int64_t n = int64_t{stop} - start;
  if (n < 3) return -1;
  const point_cloud points(z + start, n);
  if (!points.is_finite_throughout()) return -1;
  const line_fit line = fit_line(points);
  if (line.farthest <= 4.0 * epsilon * points.largest()) return -1;
  const circle_fit fit = refine(fit_algebraically(points, line.line), points);
  if (!(fit.sum_of_squares < line.sum_of_squares * (1.0 - 0x1p-40))) return -1;
  const double signed_radius = 0.5 / fit.best.half_curvature;
  const dsp_complex middle = points.place(fit.best.origin - signed_radius * fit.best.normal);
  const double r = points.length(std::fabs(signed_radius));
  if (!is_finite(middle) || !std::isfinite(r)) return -1;
  *centre = middle;
  *radius = r;
  if (rms != nullptr) *rms = points.length(std::sqrt(fit.sum_of_squares / static_cast<double>(n)));
  return 0;
}
