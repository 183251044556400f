// Product and inverse of matrices in plain arrays.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <new>

#include "dsp/dsp.h"
#include "dsp/rf/complex_value.h"

namespace dsp::rf {
namespace {

complex_matrix matrix_of(int32_t rows, int32_t cols) {
  return {static_cast<uint32_t>(rows), static_cast<uint32_t>(cols)};
}

void to_array(const complex_matrix &m, dsp_complex *array) { std::copy_n(m.data(), m.size(), array); }

}  // namespace
}  // namespace dsp::rf

using namespace dsp;
using namespace dsp::rf;

int32_t MatrixMult(const dsp_complex *a, const dsp_complex *b, dsp_complex *out, int32_t m, int32_t k, int32_t p) {
  if (m < 0 || k < 0 || p < 0) return -1;
  const int64_t written = int64_t{m} * p;
  if (int64_t{k} * k > int64_t{m} * k || written > INT32_MAX) return -1;
  if (k == 0) {  // empty sums; a and b may be null
    std::fill_n(out, written, dsp_complex{0.0, 0.0});
    return static_cast<int32_t>(written);
  }
  try {
    complex_matrix product = matrix_of(m, p);  // out may be a or b
    matrix_kernels().multiply(doubles(a), doubles(b), doubles(product.data()), m, k, p);
    to_array(product, out);
  } catch (const std::bad_alloc &) {  // GCOVR_EXCL_BR_LINE: nothing else is thrown
    return -1;
  }
  return static_cast<int32_t>(written);
}

int32_t invert(dsp_complex *m, int32_t n) {
  if (n <= 0) return 0;
  try {
    complex_matrix inverse = matrix_of(n, n);
    std::copy_n(m, inverse.size(), inverse.data());
    if (!inverse.inv()) return 0;
    to_array(inverse, m);
  } catch (const std::bad_alloc &) {  // GCOVR_EXCL_BR_LINE: nothing else is thrown
    return 0;
  }
  return 1;
}
