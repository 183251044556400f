// Transforms of 8, 16 and 32 samples, straight-line code on vectors of pairs. The samples are a matrix of four rows:
// its columns are transformed across vectors; after a transposition its rows are.
#pragma once

#include "dsp/fft/butterfly.h"

namespace dsp::fft {
namespace {

// cos(2 pi k/32), k = 0 .. 8.
constexpr double cosines_of_32[] = {1.0,
                                    0.98078528040323045,
                                    0.92387953251128676,
                                    0.83146961230254524,
                                    0.70710678118654752,
                                    0.55557023301960222,
                                    0.38268343236508977,
                                    0.19509032201612827,
                                    0.0};

constexpr double cos_of_32(int k) {
  k %= 32;
  if (k > 16) k = 32 - k;
  return k <= 8 ? cosines_of_32[k] : -cosines_of_32[16 - k];
}

// The roots exp(-2 pi i l k/N) for columns l, W in a vector, and rows k = 1 .. 3: each cosine twice, then each sine
// with both signs.
template <int W, int N>
struct short_roots {
  alignas(64) double at[N / 4 / W][3][2][2 * W];
};

template <int W, int N>
constexpr short_roots<W, N> make_short_roots() {
  short_roots<W, N> roots = {};
  for (int l = 0; l < N / 4; ++l) {
    for (int k = 1; k < 4; ++k) {
      auto &to = roots.at[l / W][k - 1];
      const int angle = l * k * (32 / N);
      to[0][l % W * 2] = to[0][l % W * 2 + 1] = cos_of_32(angle);
      to[1][l % W * 2] = cos_of_32(angle + 24);
      to[1][l % W * 2 + 1] = -to[1][l % W * 2];
    }
  }
  return roots;
}

template <int W, int N>
constexpr short_roots<W, N> short_roots_of = make_short_roots<W, N>();

// Result k of an inverse butterfly of n legs is result n - k of the forward one.
template <bool Inverse>
constexpr int result(int k, int n) {
  return Inverse && k > 0 ? n - k : k;
}

// The scale multiplies the roots, not the results: that product is ready before the samples are.
template <int W, int N, bool Inverse>
DSP_INLINE void short_transform(double *x, double scale) {
  constexpr int columns = N / 4;
  constexpr int row_vectors = 4 / W;
  pairs<W> row[row_vectors][columns];
  DSP_UNROLL for (int c = 0; c < columns; c += W) {
    pairs<W> v[4];
    pairs<W> part[row_vectors][W];
    DSP_UNROLL for (int i = 0; i < 4; ++i) v[i] = load_samples<pairs<W>>(x + 2 * (i * columns + c));
    butterfly(v);
    part[0][0] = v[0] * scale;
    DSP_UNROLL for (int k = 1; k < 4; ++k) {
      const lanes<2 *W> a = v[result<Inverse>(k, 4)].parts;
      const auto &root = short_roots_of<W, N>.at[c / W][k - 1];
      const lanes<2 *W> cos = load<lanes<2 * W>>(root[0]) * scale;
      const lanes<2 *W> sin = load<lanes<2 * W>>(root[1]) * scale;
      part[k / W][k % W].parts = swap_pairs(a) * (Inverse ? -sin : sin) + a * cos;
    }
    DSP_UNROLL for (int r = 0; r < row_vectors; ++r) {
      transpose(part[r]);
      DSP_UNROLL for (int l = 0; l < W; ++l) row[r][c + l] = part[r][l];
    }
  }
  DSP_UNROLL for (int r = 0; r < row_vectors; ++r) {
    butterfly(row[r]);
    DSP_UNROLL for (int k = 0; k < columns; ++k)
        store_samples(x + 2 * (4 * k + r * W), row[r][result<Inverse>(k, columns)]);
  }
}

}  // namespace
}  // namespace dsp::fft
