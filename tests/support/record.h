// Signals for tests: built from values, destroyed by scope, compared as plain vectors.
#pragma once

#include <gtest/gtest.h>

#include <complex>
#include <cstdint>
#include <initializer_list>
#include <vector>

#include "dsp/dsp.h"

namespace support {

using complex = std::complex<double>;
using reals = std::vector<double>;
using complexes = std::vector<complex>;

// A record that destroys itself; passes as a dsp_vec * with `&`.
class record : public dsp_vec {
 public:
  record() { dsp_init(this); }
  record(const reals &values, double spacing = 1.0);
  record(const complexes &values, double spacing = 1.0);
  record(const record &other);
  record(record &&other) noexcept;
  record &operator=(record other) noexcept;
  ~record() { dsp_destroy(this); }
};

// A record that borrows the vector's memory.
dsp_vec borrow(reals &values);
dsp_vec borrow(complexes &values);
// A second record on v's buffer, which does not own it.
dsp_vec view(const dsp_vec &v);

reals doubles_of(const dsp_vec &v);        // as they lie in memory
complexes complexes_of(const dsp_vec &v);  // real samples with imaginary part 0

// Values drawn evenly from [-1, 1]; the same for the same seed everywhere.
reals random_reals(std::size_t n, unsigned seed);
complexes random_complexes(std::size_t n, unsigned seed);
// A random signal of either representation.
record random_signal(std::size_t n, bool is_complex, unsigned seed, double spacing = 1.0);

// These values as they are, or as a real signal without their imaginary parts.
record signal_of(const complexes &values, bool is_complex, double spacing = 1.0);

// Same representation, length, dx and, bit for bit (any NaN equals any), samples.
::testing::AssertionResult same(const dsp_vec &a, const dsp_vec &b);
// Same representation and number of samples, every component within `tolerance` of the expected one; dx aside.
::testing::AssertionResult near(const dsp_vec &v, const record &expected, double tolerance);

}  // namespace support
