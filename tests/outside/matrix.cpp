// In C++: a matrix times its inverse, by the installed template and by the library's own product.
#include "dsp/rf/matrix.h"

#include <complex>
#include <cstdio>

#include "dsp/dsp.h"

int main() {
  matrix<std::complex<double>> m(2, 2);
  m(0, 0) = 2.0;
  m(0, 1) = {0.0, 1.0};
  m(1, 0) = 1.0;
  m(1, 1) = 3.0;
  matrix<std::complex<double>> inverse = m;
  if (!inverse.inv()) return 1;
  const matrix<std::complex<double>> one = m * inverse;
  std::printf("%d %.6f\n", static_cast<int>(dsp_version()), std::abs(one(0, 0)) + std::abs(one(0, 1)));
}
