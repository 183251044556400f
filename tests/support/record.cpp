#include "tests/support/record.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>
#include <utility>

#include "tests/support/heap.h"

namespace support {
namespace {

void fill(dsp_vec *v, const double *from, std::size_t samples, bool is_complex, double spacing) {
  const exempt building;
  dsp_init(v);
  v->length = static_cast<int32_t>(samples);
  v->is_complex = is_complex;
  v->dx = spacing;
  if (dsp_alloc(v) != 0) std::abort();
  if (samples > 0) std::memcpy(v->data, from, samples * (is_complex ? 2 : 1) * sizeof(double));
}

const double *parts(const complexes &values) { return reinterpret_cast<const double *>(values.data()); }

bool identical(double a, double b) {
  return (std::isnan(a) && std::isnan(b)) || (a == b && std::signbit(a) == std::signbit(b));
}

// Doubles that are identical, or so near.
::testing::AssertionResult compared(const dsp_vec &a, const dsp_vec &b, double tolerance) {
  const reals x = doubles_of(a), y = doubles_of(b);
  if (x.size() != y.size() || (a.is_complex != 0) != (b.is_complex != 0))
    return ::testing::AssertionFailure() << "length " << a.length << " complex " << a.is_complex << " against length "
                                         << b.length << " complex " << b.is_complex;
  for (std::size_t i = 0; i < x.size(); ++i)
    if (!(std::abs(x[i] - y[i]) <= tolerance) && !identical(x[i], y[i]))
      return ::testing::AssertionFailure() << "double " << i << " is " << ::testing::PrintToString(x[i]) << " against "
                                           << ::testing::PrintToString(y[i]);
  return ::testing::AssertionSuccess();
}

}  // namespace

record::record(const reals &values, double spacing) { fill(this, values.data(), values.size(), false, spacing); }

record::record(const complexes &values, double spacing) { fill(this, parts(values), values.size(), true, spacing); }

record::record(const record &other) : dsp_vec() {
  fill(this, other.data, static_cast<std::size_t>(std::max(other.length, 0)), other.is_complex != 0, other.dx);
}

record::record(record &&other) noexcept : dsp_vec(other) { dsp_init(&other); }

record &record::operator=(record other) noexcept {
  std::swap(static_cast<dsp_vec &>(*this), static_cast<dsp_vec &>(other));
  return *this;
}

dsp_vec borrow(reals &values) { return {1.0, values.data(), 0, static_cast<int32_t>(values.size()), 0, 0}; }

dsp_vec borrow(complexes &values) {
  return {1.0, reinterpret_cast<double *>(values.data()), 0, static_cast<int32_t>(values.size()), 1, 0};
}

dsp_vec view(const dsp_vec &v) { return {v.dx, v.data, 0, v.length, v.is_complex, 0}; }

reals doubles_of(const dsp_vec &v) {
  const std::ptrdiff_t n = std::max(v.length, 0) * (v.is_complex != 0 ? 2 : 1);
  return n > 0 ? reals(v.data, v.data + n) : reals();
}

complexes complexes_of(const dsp_vec &v) {
  complexes z;
  for (int32_t i = 0; i < v.length; ++i)
    z.push_back(v.is_complex != 0 ? complex(v.data[2 * i], v.data[2 * i + 1]) : complex(v.data[i], 0.0));
  return z;
}

reals random_reals(std::size_t n, unsigned seed) {
  std::mt19937_64 engine(seed);
  reals x(n);
  for (double &value : x) value = static_cast<double>(static_cast<int64_t>(engine())) * 0x1p-63;
  return x;
}

complexes random_complexes(std::size_t n, unsigned seed) {
  const reals x = random_reals(2 * n, seed);
  complexes z(n);
  for (std::size_t i = 0; i < n; ++i) z[i] = {x[2 * i], x[2 * i + 1]};
  return z;
}

record random_signal(std::size_t n, bool is_complex, unsigned seed, double spacing) {
  return is_complex ? record(random_complexes(n, seed), spacing) : record(random_reals(n, seed), spacing);
}

record signal_of(const complexes &values, bool is_complex, double spacing) {
  record v(values, spacing);
  if (!is_complex) dspi_real(&v);
  return v;
}

::testing::AssertionResult same(const dsp_vec &a, const dsp_vec &b) {
  if (a.length != b.length || !identical(a.dx, b.dx))
    return ::testing::AssertionFailure() << "length " << a.length << " dx " << a.dx << " against length " << b.length
                                         << " dx " << b.dx;
  return compared(a, b, -1.0);
}

::testing::AssertionResult near(const dsp_vec &v, const record &expected, double tolerance) {
  return compared(v, expected, tolerance);
}

}  // namespace support
