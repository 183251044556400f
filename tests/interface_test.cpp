// The shared library as a program meets it: by its header and its exported names only.
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <vector>

#define DSP_STATIC  // on Windows: names of the DLL that a program may define itself
#include "dsp/dsp.h"

// A program may well have routines of these names; the library must go on using its own.
extern "C" int32_t invert(dsp_complex *, int32_t) { return 99; }
extern "C" int32_t MatrixMult(const dsp_complex *, const dsp_complex *, dsp_complex *, int32_t, int32_t, int32_t) {
  return 99;
}
extern "C" int32_t dsp_init(dsp_vec *) { return 99; }

namespace {

TEST(Interface, CallsInsideTheLibraryStayInside) {
  EXPECT_EQ(dsp_init(nullptr), 99);
  dsp_complex g[3] = {{1, 0}, {-1, 0}, {0, 0}};
  const dsp_complex a[3] = {{1, 0}, {-1, 0}, {0, 0}};
  Compute1PortTerms(&g[0], &g[1], &g[2], &a[0], &a[1], &a[2], 0, 1);
  EXPECT_EQ(g[2].re, 1.0);
  dsp_vec v = {0.5, nullptr, 0, 3, 1, 9};
  ASSERT_EQ(dsp_alloc(&v), 0);
  EXPECT_EQ(dsp_destroy(&v), 0);
  EXPECT_TRUE(v.dx == 1.0 && v.data == nullptr && v.capacity == 0);
  EXPECT_TRUE(v.length == 0 && v.is_complex == 0 && v.reserved == 0);
}

TEST(Interface, ASpectrumOfBorrowedMemory) {
  constexpr int32_t n = 256;
  std::vector<double> tone(n);
  const double step = 2 * std::acos(-1.0) * 10 / n;
  for (int32_t i = 0; i < n; ++i) tone[static_cast<std::size_t>(i)] = 0.5 * std::cos(step * i);
  const dsp_vec in = {1e-3, tone.data(), 0, n, 0, 0};
  dsp_vec spectrum = {1.0, nullptr, 0, 0, 0, 0};
  ASSERT_EQ(dsph_fft(&in, &spectrum, 0, 1.0, DSP_WINDOW_UNIFORM, 0), 0);
  ASSERT_EQ(spectrum.length, n / 2 + 1);
  ASSERT_EQ(dspi_mag(&spectrum), 0);
  EXPECT_NEAR(spectrum.data[10], 0.5, 1e-15);
  EXPECT_NEAR(spectrum.data[11], 0.0, 1e-15);
  EXPECT_DOUBLE_EQ(spectrum.dx, 1 / (1e-3 * n));
  EXPECT_EQ(dsp_destroy(&spectrum), 0);
  EXPECT_EQ(dsp_free_internal(), 0);
}

}  // namespace
