// A tabulated function at other abscissae: held, linear, parabolic or a cubic spline.
#include <algorithm>
#include <cstdint>

#include "dsp/core/operands.h"
#include "dsp/core/sizing.h"
#include "dsp/core/temporary.h"
#include "dsp/dsp.h"

namespace dsp {
namespace {

struct nodes {
  const double *x;
  const double *y;
  const double *d2;
  std::int32_t n;

  double last_x() const { return x[n - 1]; }
  double last_y() const { return y[n - 1]; }
};

struct queries {
  const double *t;
  double *out;
  std::int32_t n;
};

// The first query from `begin` on that lies at or beyond `border`. Looked for eight at a time, without a branch each.
template <class Beyond>
std::int32_t run_end(const queries &q, std::int32_t begin, Beyond beyond) {
  std::int32_t i = begin;
  for (; i + 8 <= q.n; i += 8) {
    int any = 0;
    for (std::int32_t k = 0; k < 8; ++k) any |= beyond(q.t[i + k]);
    if (any != 0) break;
  }
  while (i < q.n && !beyond(q.t[i])) ++i;
  return i;
}

// Each scheme turns a run of queries that share their nodes into values; j is the right node of the bracket.
struct hold {
  static constexpr bool holds_the_end = true;
  void operator()(const nodes &f, std::int32_t j, const double *, double *out, std::int32_t count) const {
    std::fill_n(out, count, f.y[j - 1]);
  }
};

struct linear {
  static constexpr bool holds_the_end = false;
  void operator()(const nodes &f, std::int32_t j, const double *t, double *out, std::int32_t count) const {
    const double x0 = f.x[j - 1], x1 = f.x[j], y0 = f.y[j - 1], y1 = f.y[j], h = x1 - x0;
    for (std::int32_t i = 0; i < count; ++i) out[i] = ((x1 - t[i]) * y0 + (t[i] - x0) * y1) / h;
  }
};

struct spline {
  static constexpr bool holds_the_end = false;
  void operator()(const nodes &f, std::int32_t j, const double *t, double *out, std::int32_t count) const {
    const double x0 = f.x[j - 1], x1 = f.x[j], y0 = f.y[j - 1], y1 = f.y[j], h = x1 - x0, hh = h * h;
    const double m0 = f.d2[j - 1] / 6.0, m1 = f.d2[j] / 6.0;
    for (std::int32_t i = 0; i < count; ++i) {
      const double a = x1 - t[i];
      const double b = t[i] - x0;
      out[i] = ((a * y0 + b * y1) + (a * (a * a - hh) * m0 + b * (b * b - hh) * m1)) / h;
    }
  }
};

struct constant {
  static constexpr bool holds_the_end = false;
  double value;
  void operator()(const nodes &, std::int32_t, const double *, double *out, std::int32_t count) const {
    std::fill_n(out, count, value);
  }
};

// Moves the bracket [j - 1, j] right until it holds t or is the last one; false when an interval met has no width.
bool reach(const nodes &f, double t, std::int32_t *j) {
  while (f.x[*j] - f.x[*j - 1] != 0.0) {
    if (!(t >= f.x[*j]) || *j == f.n - 1) return true;
    ++*j;
  }
  return false;
}

template <class Scheme>
int32_t evaluate(const nodes &f, const queries &q, std::int32_t first, bool clamp, std::int32_t j, Scheme scheme) {
  const bool holds = clamp || Scheme::holds_the_end;
  for (std::int32_t i = first; i < q.n;) {
    if (!reach(f, q.t[i], &j)) return -1;
    if (holds && q.t[i] >= f.last_x()) {
      std::fill(q.out + i, q.out + q.n, f.last_y());
      return 0;
    }
    const double border = f.x[j];
    const bool to_the_end = j == f.n - 1 && !holds;
    const std::int32_t end = to_the_end ? q.n : run_end(q, i + 1, [border](double t) { return t >= border; });
    scheme(f, j, q.t + i, q.out + i, end - i);
    i = end;
  }
  return 0;
}

// The parabola through node m and its neighbours; false when two of them share an abscissa.
bool parabola(const nodes &f, std::int32_t m, const double *t, double *out, std::int32_t count) {
  const double x0 = f.x[m - 1], x1 = f.x[m], x2 = f.x[m + 1];
  const double p = x1 - x0, q = x2 - x1, s = p + q, scale = p * q * s;
  if (scale == 0.0) return false;
  const double y0 = f.y[m - 1], y1 = f.y[m], y2 = f.y[m + 1];
  for (std::int32_t i = 0; i < count; ++i) {
    const double a = t[i] - x0, b = t[i] - x1, c = t[i] - x2;
    out[i] = (q * b * c * y0 - s * a * c * y1 + p * a * b * y2) / scale;
  }
  return true;
}

int32_t evaluate_parabolas(const nodes &f, const queries &q, std::int32_t first, bool clamp, std::int32_t j) {
  const double t0 = q.t[first];
  std::int32_t m = j >= 2 && t0 - f.x[j - 1] < f.x[j] - t0 ? j - 1 : j;
  m = std::min(m, f.n - 2);
  for (std::int32_t i = first; i < q.n;) {
    const auto nearer_next = [&f, &m](double t) { return t - f.x[m] > f.x[m + 1] - t; };
    for (; m < f.n - 2 && nearer_next(q.t[i]); ++m)
      if (f.x[m + 1] - f.x[m] == 0.0) return -1;
    if (clamp && q.t[i] >= f.last_x()) {
      std::fill(q.out + i, q.out + q.n, f.last_y());
      return 0;
    }
    std::int32_t end = q.n;
    if (m < f.n - 2)
      end = run_end(q, i + 1, nearer_next);
    else if (clamp)
      end = run_end(q, i + 1, [&f](double t) { return t >= f.last_x(); });
    if (!parabola(f, m, q.t + i, q.out + i, end - i)) return -1;
    i = end;
  }
  return 0;
}

int32_t interpolate(const nodes &f, const queries &q, std::int32_t scheme, bool clamp) {
  std::int32_t first = 0;
  for (; clamp && first < q.n && q.t[first] < f.x[0]; ++first) q.out[first] = f.y[0];
  if (first == q.n) return 0;
  std::int32_t j = 1;
  if (!reach(f, q.t[first], &j)) return -1;
  switch (scheme) {
    case DSP_INTERP_HOLD:
      return evaluate(f, q, first, clamp, j, hold());
    case DSP_INTERP_LINEAR:
      return evaluate(f, q, first, clamp, j, linear());
    case DSP_INTERP_SPLINE:
      return evaluate(f, q, first, clamp, j, spline());
    case DSP_INTERP_QUADRATIC:
      return evaluate_parabolas(f, q, first, clamp, j);
    default:
      return evaluate(f, q, first, clamp, j, constant{f.y[j]});
  }
}

// Fewer than two nodes: nothing, a constant, or the spline's lone parabola.
void without_interval(const nodes &f, const queries &q, bool is_spline) {
  const double curvature = f.n == 1 && is_spline ? f.d2[0] * 0.5 : 0.0;
  for (std::int32_t i = 0; i < q.n; ++i) {
    q.out[i] = f.n == 1 ? f.y[0] : 0.0;
    if (f.n == 1 && is_spline) q.out[i] += (q.t[i] - f.x[0]) * (q.t[i] - f.x[0]) * curvature;
  }
}

constexpr std::int32_t scheme_mask = 7;

// Schemes with both low bits set need three nodes.
std::int32_t scheme_for(std::int32_t mode, std::int32_t n) {
  const std::int32_t scheme = mode & scheme_mask;
  return (scheme & DSP_INTERP_QUADRATIC) == DSP_INTERP_QUADRATIC && n < 3 ? DSP_INTERP_LINEAR : scheme;
}

}  // namespace
}  // namespace dsp

using namespace dsp;

int32_t dsp_interp(const dsp_vec *x, const dsp_vec *y, const dsp_vec *d2, const dsp_vec *xq, dsp_vec *out,
                   int32_t mode) {
  const bool is_spline = (mode & scheme_mask) == DSP_INTERP_SPLINE;
  temporary made;
  if (is_spline && d2 == nullptr) {
    if (dspb_cspline_2d(x, y, made.get(), 0.0, 0.0, DSP_SPLINE_NOT_A_KNOT, DSP_SPLINE_NOT_A_KNOT) != 0) return -1;
    d2 = made.get();
  }
  const std::int32_t n = samples(*x);
  if (x->is_complex != 0 || y->is_complex != 0 || xq->is_complex != 0 || n != samples(*y)) return -1;
  if (is_spline && (d2->is_complex != 0 || samples(*d2) != n)) return -1;
  const bool shared = shares_buffer(*out, *x) || shares_buffer(*out, *y) || shares_buffer(*out, *xq) ||
                      (is_spline && shares_buffer(*out, *d2));
  temporary aside;
  dsp_vec *result = shared ? aside.get() : out;
  result->dx = xq->dx;
  result->is_complex = 0;
  result->length = samples(*xq);
  if (dsp_alloc(result) != 0) return -1;
  const nodes f = {x->data, y->data, is_spline ? d2->data : nullptr, n};
  const queries q = {xq->data, result->data, result->length};
  int32_t status = 0;
  if (n < 2)
    without_interval(f, q, is_spline);
  else
    status = interpolate(f, q, scheme_for(mode, n), (mode & DSP_INTERP_CLAMP) != 0);
  if (shared && dsp_copy(out, result) != 0) return -1;
  return status;
}

int32_t dsp_cspline(const dsp_vec *x, const dsp_vec *y, const dsp_vec *d2, const dsp_vec *xq, dsp_vec *out) {
  return dsp_interp(x, y, d2, xq, out, DSP_INTERP_SPLINE);
}
