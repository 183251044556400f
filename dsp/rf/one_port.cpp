// The error terms of a one-port reflection measurement from three standards.
#include <algorithm>
#include <cstdint>

#include "dsp/dsp.h"
#include "dsp/rf/complex_value.h"
#include "dsp/rf/one_port_kernels.h"

namespace dsp::rf {
namespace {

// Each standard gives an equation a D + e00 + a g e11 = g, linear in D = e10e01 - e00 e11, e00 and -e11.
void solve_point(complex_matrix *m, dsp_complex *const *g, const dsp_complex *const *a, int64_t i) {
  const complex_value measured[] = {g[0][i], g[1][i], g[2][i]};
  const complex_value actual[] = {a[0][i], a[1][i], a[2][i]};
  complex_value *row = m->data();
  for (int r = 0; r < 3; ++r, row += 3) {
    row[0] = actual[r];
    row[1] = 1.0;
    row[2] = -actual[r] * measured[r];
  }
  m->inv();  // a singular point is not reported: its result is whatever the elimination leaves
  complex_value unknown[3];
  field::multiply(m->data(), measured, unknown, 3, 3, 1);
  g[0][i] = unknown[1];
  g[1][i] = -unknown[2];
  g[2][i] = unknown[0] - unknown[1] * unknown[2];
}

}  // namespace
}  // namespace dsp::rf

using namespace dsp;
using namespace dsp::rf;

void Compute1PortTerms(dsp_complex *g1, dsp_complex *g2, dsp_complex *g3, const dsp_complex *a1, const dsp_complex *a2,
                       const dsp_complex *a3, int32_t first, int32_t end) {
  if (first >= end) return;
  complex_matrix m(3, 3);
  constexpr int64_t most_lanes = 8;
  for (int64_t i = first; i < end;) {
    dsp_complex *const g[] = {g1 + i, g2 + i, g3 + i};
    const dsp_complex *const a[] = {a1 + i, a2 + i, a3 + i};
    double *const measured[] = {doubles(g[0]), doubles(g[1]), doubles(g[2])};
    const double *const actual[] = {doubles(a[0]), doubles(a[1]), doubles(a[2])};
    const int64_t solved = one_port_kernels().solve_points(measured, actual, end - i);
    const int64_t stop = std::min(solved + most_lanes, end - i);
    for (int64_t n = solved; n < stop; ++n) solve_point(&m, g, a, n);
    i += stop;
  }
}
