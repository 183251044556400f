// Calibration, complex matrices, circles and arcs on plain arrays.
#include <algorithm>
#include <cmath>
#include <iterator>

#include "fuzz/block.h"
#include "fuzz/target.h"

namespace fuzz {
namespace {

using elements = block<dsp_complex>;

elements filled(play *p, int32_t n) {
  elements z(static_cast<std::size_t>(n));
  p->in->fill(reinterpret_cast<double *>(z.data()), 2 * n);
  return z;
}

void finish(play *p, elements *z) {
  p->check(z->is_intact(), "writes beside its array");
  p->note(reinterpret_cast<const double *>(z->data()), 2 * z->size());
}

// The six arrays may be the same ones; an empty range may lie anywhere.
int32_t calibrate(play *p) {
  const int32_t n = p->in->below(20);
  elements z[6];
  for (elements &each : z) each = filled(p, n);
  dsp_complex *at[6];
  const bool shared = p->in->byte() % 2 != 0;
  for (int i = 0; i < 6; ++i) at[i] = z[shared ? p->in->below(6) : i].data();
  const bool is_within = p->in->byte() < 224;
  const int32_t a = is_within ? p->in->below(n + 1) : p->integer();
  const int32_t b = is_within ? p->in->below(n + 1) : p->integer();
  Compute1PortTerms(at[0], at[1], at[2], at[3], at[4], at[5], is_within ? std::min(a, b) : std::max(a, b),
                    is_within ? std::max(a, b) : std::min(a, b));
  for (elements &each : z) finish(p, &each);
  return 0;
}

// Sizes that are refused, however little there is behind them, or small ones.
int32_t multiply(play *p) {
  const bool is_hostile = p->in->byte() >= 192;
  const int32_t m = is_hostile ? p->integer() : p->in->below(7);
  const int32_t k = is_hostile ? p->integer() : p->in->below(7);
  const int32_t columns = is_hostile ? p->integer() : p->in->below(7);
  const bool refused = m < 0 || k < 0 || columns < 0 || (k > 0 && k > m);
  if (is_hostile && !refused) return 0;
  const int32_t sharing = p->in->below(4);
  const int32_t size = is_hostile ? 1 : std::max({m * k, k * columns, m * columns});
  elements a = filled(p, is_hostile || sharing != 0 ? size : m * k);
  elements b = filled(p, is_hostile || sharing != 0 ? size : k * columns);
  elements c = filled(p, is_hostile || sharing != 0 ? size : m * columns);
  elements &out = sharing == 1 ? a : sharing == 2 ? b : c;
  const int32_t written = MatrixMult(a.data(), sharing == 3 ? a.data() : b.data(), out.data(), m, k, columns);
  p->check(written == (refused ? -1 : m * columns), "returns another count");
  finish(p, &a);
  finish(p, &b);
  finish(p, &c);
  return 0;
}

int32_t inverse(play *p) {
  const bool is_hostile = p->in->byte() >= 224;
  const int32_t n = is_hostile ? std::min(p->integer(), 0) : p->in->below(9);
  elements m = filled(p, is_hostile ? 1 : n * n);
  const int32_t done = invert(m.data(), n);
  p->check(done == 0 || (done == 1 && n > 0), "returns neither 0 nor 1");
  finish(p, &m);
  return 0;
}

// Nothing is written when there is no circle.
int32_t fit_circle(play *p) {
  const int32_t n = p->in->below(40);
  elements z = filled(p, n);
  const int32_t start = p->in->below(n + 1);
  const int32_t stop = p->in->byte() < 224 ? p->in->below(n + 1) : std::min(p->integer(), start + 2);
  dsp_complex centre = {0.5, 0.5};
  double radius = 0.5, rms = 0.5;
  const int32_t status =
      vfpd_CircleFit(z.data(), start, stop, &centre, &radius, p->in->byte() % 2 != 0 ? &rms : nullptr);
  if (status != 0)
    p->check(centre.re == 0.5 && radius == 0.5 && rms == 0.5, "writes what it refuses");
  else
    p->check(std::isfinite(centre.re) && std::isfinite(centre.im) && radius > 0.0 && rms >= 0.0, "gives no circle");
  return 0;
}

// Abscissae that mostly rise, queries that are anything.
int32_t interpolate(play *p) {
  const int32_t n = p->in->below(9), m = p->in->below(20);
  elements z = filled(p, n), zi = filled(p, m);
  block<double> x(static_cast<std::size_t>(n)), xi(static_cast<std::size_t>(m));
  p->in->fill(x.data(), n);
  p->in->fill(xi.data(), m);
  if (p->in->byte() < 224)
    for (int32_t i = 1; i < n; ++i) x.data()[i] = x.data()[i - 1] + std::fabs(x.data()[i]);
  const int32_t nodes = p->in->byte() < 240 ? n : std::min(p->integer(), 0);
  CircularInterpolation(x.data(), z.data(), nodes, xi.data(), zi.data(), p->in->byte() < 240 ? m : 0);
  finish(p, &z);
  finish(p, &zi);
  return 0;
}

constexpr row rows[] = {
    {"Compute1PortTerms", calibrate, 0},
    {"MatrixMult", multiply, 0},
    {"invert", inverse, 0},
    {"vfpd_CircleFit", fit_circle, 0},
    {"CircularInterpolation", interpolate, 0},
};

}  // namespace

const target rf = {"rf", rows, std::size(rows)};

}  // namespace fuzz
