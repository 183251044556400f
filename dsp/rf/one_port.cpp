// The error terms of a one-port reflection measurement from three standards.
#include <cstdint>

#include "dsp/dsp.h"
#include "dsp/rf/complex_value.h"

using namespace dsp;

// Each standard gives an equation a D + e00 + a g e11 = g, linear in D = e10e01 - e00 e11, e00 and -e11.
void Compute1PortTerms(dsp_complex *g1, dsp_complex *g2, dsp_complex *g3, const dsp_complex *a1, const dsp_complex *a2,
                       const dsp_complex *a3, int32_t first, int32_t end) {
  if (first >= end) return;
  complex_matrix m(3, 3);
  for (int32_t i = first; i < end; ++i) {
    const complex_value g[] = {g1[i], g2[i], g3[i]};
    const complex_value a[] = {a1[i], a2[i], a3[i]};
    complex_value *row = m.data();
    for (int r = 0; r < 3; ++r, row += 3) {
      row[0] = a[r];
      row[1] = 1.0;
      row[2] = -a[r] * g[r];
    }
    m.inv();  // whatever it leaves of a singular point is used; there is nobody to tell
    const complex_matrix x = m * complex_matrix(3, 1, g, 0);
    const complex_value *const unknown = x.data();
    g1[i] = unknown[1];
    g2[i] = -unknown[2];
    g3[i] = unknown[0] - unknown[1] * unknown[2];
  }
}
