// The bit-reversal permutation by itself, by tiles of 4 by 4 samples from 16 samples on.
#include <cstddef>

#include "dsp/core/sizing.h"
#include "dsp/dsp.h"
#include "dsp/fft/bitrev_tables.h"
#include "dsp/fft/transform.h"

namespace dsp::fft {
namespace {

template <int Parts>
struct sample {
  double part[Parts];
};

template <int Parts>
sample<Parts> operator*(sample<Parts> s, double k) {
  for (double &part : s.part) part *= k;
  return s;
}

// Reads T rows of T samples, transposed, outer bits reversed on the way.
template <int T, int Parts>
void load(const sample<Parts> *x, std::ptrdiff_t stride, double scale, sample<Parts> (&to)[T][T]) {
  constexpr int reversed[] = {0, 2, 1, 3};
  for (int row = 0; row < T; ++row)
    for (int column = 0; column < T; ++column) to[reversed[column]][reversed[row]] = x[row * stride + column] * scale;
}

template <int T, int Parts>
void store(sample<Parts> *x, std::ptrdiff_t stride, const sample<Parts> (&from)[T][T]) {
  for (int row = 0; row < T; ++row)
    for (int column = 0; column < T; ++column) x[row * stride + column] = from[row][column];
}

template <int T, int Parts>
void reverse_tiles(double *data, std::ptrdiff_t n, double scale, const uint32_t *pairs, const uint32_t *fixed) {
  auto *x = reinterpret_cast<sample<Parts> *>(data);
  const std::ptrdiff_t stride = n / T;
  const auto tile = [x](uint32_t number) { return x + static_cast<std::ptrdiff_t>(number) * T; };
  for (; *fixed != bitrev_fixed_end; ++fixed) {
    sample<Parts> t[T][T];
    load(tile(*fixed), stride, scale, t);
    store(tile(*fixed), stride, t);
  }
  for (; *pairs != 0; pairs += 2) {
    sample<Parts> *a = tile(pairs[0]);
    sample<Parts> *b = tile(pairs[1]);
    sample<Parts> from_a[T][T];
    sample<Parts> from_b[T][T];
    load(a, stride, scale, from_a);
    load(b, stride, scale, from_b);
    store(b, stride, from_a);
    store(a, stride, from_b);
  }
}

int32_t reverse(dsp_vec *v, double scale) {
  const int bits = log2_of(v->length);
  const bool tiled = bits >= 4;
  const uint32_t *pairs = bitrev_pairs(tiled ? bits - 4 : bits);
  const uint32_t *fixed = bitrev_fixed(tiled ? bits - 4 : bits);
  if (pairs == nullptr || fixed == nullptr) return -1;
  const auto run = v->is_complex != 0 ? (tiled ? reverse_tiles<4, 2> : reverse_tiles<1, 2>)
                                      : (tiled ? reverse_tiles<4, 1> : reverse_tiles<1, 1>);
  run(v->data, v->length, scale, pairs, fixed);
  return 0;
}

}  // namespace
}  // namespace dsp::fft

using namespace dsp;
using namespace dsp::fft;

int32_t dspi_bitrev(dsp_vec *v) { return is_power_of_two(v->length) ? reverse(v, 1.0) : -1; }

int32_t dspi_bitrev_scale(dsp_vec *v) { return is_power_of_two(v->length) ? reverse(v, 1.0 / v->length) : -1; }
