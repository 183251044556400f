// The transform on one instruction set. docs/fft.md draws the blocks.
#include "dsp/fft/fft_kernels.h"

#include "dsp/fft/bitrev_tables.h"
#include "dsp/fft/butterfly.h"
#include "dsp/fft/short_real.h"
#include "dsp/fft/short_transform.h"
#include "dsp/fft/times_root.h"

namespace dsp::fft {
namespace DSP_ISA {
namespace {

constexpr int widest = has_vector_registers ? lane_count : 1;

// Blocks of so many samples go through all their passes before the next is touched.
constexpr std::ptrdiff_t cached_samples = 1024;

// Up to so many samples are straight-line code without a plan; 16 and 32 only on wide vectors.
constexpr int most_small_bits = widest < 4 ? 3 : 5;

constexpr int reversed_bits(int value, int size) {
  int r = 0;
  for (; size > 1; size /= 2, value /= 2) r = 2 * r + value % 2;
  return r;
}

// How a pass loads its samples: the first one pairs, as the signal holds them, the others parts apart.
struct as_pairs {
  template <int W>
  static DSP_INLINE points<W> load(const double *p) {
    return load_pairs_in_order<W>(p);
  }
};
struct as_exchanged_pairs {
  template <int W>
  static DSP_INLINE points<W> load(const double *p) {
    return exchanged(load_pairs_in_order<W>(p));
  }
};
struct as_split {
  template <int W>
  static DSP_INLINE points<W> load(const double *p) {
    return load_split<W>(p);
  }
};

// One pass of radix R over neighbouring blocks of n samples.
template <int W, int R, class Source>
void pass(double *x, std::ptrdiff_t n, std::ptrdiff_t blocks, const double *roots) {
  const std::ptrdiff_t leg = 2 * (n / R);
  for (std::ptrdiff_t block = 0; block < blocks; ++block, x += 2 * n) {
    const double *root = roots;
    for (double *at = x; at < x + leg; at += 2 * W) {
      points<W> v[R];
      for (int i = 0; i < R; ++i) v[i] = Source::template load<W>(at + i * leg);
      butterfly(v);
      store_split<W>(at, v[0]);
      for (int i = 1; i < R; ++i, root += root_values * W)
        store_split<W>(at + reversed_bits(i, R) * leg, times_root<W>(v[i], root));
    }
  }
}

template <int W, class Source>
void pass(int radix_bits, double *x, std::ptrdiff_t n, std::ptrdiff_t blocks, const double *roots) {
  if (radix_bits == 3)
    pass<W, 8, Source>(x, n, blocks, roots);
  else
    pass<W, 4, Source>(x, n, blocks, roots);
}

// The passes from number `first` on, over neighbouring blocks of n samples.
template <int W>
void all_passes(const fft_plan &plan, int first, double *x, std::ptrdiff_t n, std::ptrdiff_t blocks,
                const double *roots) {
  for (int i = first; i < plan.passes; ++i) {
    pass<W, as_split>(plan.radix_bits[i], x, n, blocks, roots);
    roots += root_values * (n - (n >> plan.radix_bits[i]));
    n >>= plan.radix_bits[i];
    blocks <<= plan.radix_bits[i];
  }
}

// Depth first: a large block runs one pass, then its parts one after the other.
template <int W>
void later_passes(const fft_plan &plan, int first, double *x, std::ptrdiff_t n, std::ptrdiff_t blocks,
                  const double *roots) {
  if (first == plan.passes) return;
  if (n <= cached_samples) {
    const std::ptrdiff_t together = cached_samples / n < blocks ? cached_samples / n : blocks;
    for (std::ptrdiff_t b = 0; b < blocks; b += together) all_passes<W>(plan, first, x + 2 * b * n, n, together, roots);
    return;
  }
  const int radix_bits = plan.radix_bits[first];
  const double *next = roots + root_values * (n - (n >> radix_bits));
  for (std::ptrdiff_t b = 0; b < blocks; ++b, x += 2 * n) {
    pass<W, as_split>(radix_bits, x, n, 1, roots);
    later_passes<W>(plan, first + 1, x, n >> radix_bits, std::ptrdiff_t{1} << radix_bits, next);
  }
}

// a times the k-th eighth root of unity, for odd k still to be scaled by half_sqrt2.
template <int W>
DSP_INLINE points<W> turned_by_eighths(const points<W> &a, int k) {
  switch (k) {
    case 0:
      return a;
    case 1:
      return {a.re + a.im, a.im - a.re};
    case 2:
      return {a.im, -a.re};
    default:
      return {a.im - a.re, -a.re - a.im};
  }
}

// T rows of T samples, row i at the i-th multiple of the stride. What remains is a transform of T samples in each row.
// It runs across registers, after a transposition of units of two neighbouring samples, which also reverses the outer
// bits. The last level adds and subtracts the two samples of a unit; they are in different registers by then, as pairs
// of real and imaginary part.
template <int W, int T>
struct tile {
  static constexpr int side = W / 2;  // units in a register
  points<W> unit[T / 2][T / side];    // of `side` neighbouring rows

  DSP_INLINE void load(const double *x, std::ptrdiff_t stride) {
    for (int group = 0; group < T / W; ++group) {
      points<W> row[T];
      for (int i = 0; i < T; ++i) row[i] = load_split<W>(x + reversed_bits(i, T) * stride + 2 * W * group);
      take_rows(row, group);
    }
  }

  // For a record of one tile: runs the only pass before it, whose results stay in registers.
  template <class Source>
  DSP_INLINE void compute(const double *x, const double *roots) {
    for (int group = 0; group < T / W; ++group) {
      points<W> row[T];
      for (int i = 0; i < T; ++i) row[i] = Source::template load<W>(x + 2 * (i * T + group * W));
      butterfly(row);
      for (int i = 1; i < T; ++i, roots += root_values * W) row[i] = times_root<W>(row[i], roots);
      take_rows(row, group);
    }
  }

  // W samples of all T rows.
  DSP_INLINE void take_rows(const points<W> (&row)[T], int group) {
    for (int r = 0; r < T; r += side) {
      lanes<W> re[side];
      lanes<W> im[side];
      for (int l = 0; l < side; ++l) re[l] = row[r + l].re, im[l] = row[r + l].im;
      transpose_units<W>(re);
      transpose_units<W>(im);
      for (int l = 0; l < side; ++l) unit[group * side + l][r / side] = {re[l], im[l]};
    }
  }

  template <bool Exchange>
  DSP_INLINE void finish(double scale, double *x, std::ptrdiff_t stride) const {
    for (int rows = 0; rows < T / side; ++rows, x += W) {
      points<W> v[T / 2];
      for (int i = 0; i < T / 2; ++i) v[i] = unit[i][rows];
      butterfly(v);
      for (int i = 0; i < T / 2; ++i) {
        const int eighths = 8 / T * i;
        const points<W> even = exchanged_if<Exchange>(v[i] * scale);
        // GCOVR_EXCL_BR_START: tiles of 4 turn by quarters only
        const points<W> odd = exchanged_if<Exchange>(turned_by_eighths<W>(v[i], eighths));
        const lanes<W> first = first_lanes<W>(even.re, even.im);
        const lanes<W> second = second_lanes<W>(odd.re, odd.im);
        const double weight = eighths % 2 != 0 ? half_sqrt2 * scale : scale;
        // GCOVR_EXCL_BR_STOP
        store(x + i * stride, first + second * weight);
        store(x + (i + T / 2) * stride, first - second * weight);
      }
    }
  }
};

template <int W, int T, bool Exchange>
void last_pass(const fft_tables &tables, double *x, std::ptrdiff_t n, double scale) {
  const std::ptrdiff_t stride = 2 * (n / T);
  const auto at = [x](uint32_t number) { return x + static_cast<std::ptrdiff_t>(number) * 2 * T; };
  for (const uint32_t *i = tables.fixed; *i != bitrev_fixed_end; ++i) {
    tile<W, T> t;
    t.load(at(*i), stride);
    t.template finish<Exchange>(scale, at(*i), stride);
  }
  for (const uint32_t *pair = tables.pairs; *pair != 0; pair += 2) {
    tile<W, T> from_a;
    tile<W, T> from_b;
    from_a.load(at(pair[0]), stride);
    from_b.load(at(pair[1]), stride);
    from_a.template finish<Exchange>(scale, at(pair[1]), stride);
    from_b.template finish<Exchange>(scale, at(pair[0]), stride);
  }
}

template <int W, int T, bool Exchange, class Source>
void only_tile(const double *roots, double *x, double scale) {
  tile<W, T> t;
  t.template compute<Source>(x, roots);
  t.template finish<Exchange>(scale, x, 2 * T);
}

template <int W, int T>
void transform(const fft_plan &plan, const fft_tables &tables, double *x, double scale, bool inverse) {
  const std::ptrdiff_t n = std::ptrdiff_t{1} << plan.bits;
  if constexpr (1 << most_small_bits < T * T) {
    if (n == T * T)
      return inverse ? only_tile<W, T, true, as_exchanged_pairs>(tables.roots, x, scale)
                     : only_tile<W, T, false, as_pairs>(tables.roots, x, scale);
  }
  const int radix_bits = plan.radix_bits[0];
  const double *next = tables.roots + root_values * (n - (n >> radix_bits));
  if (inverse)
    pass<W, as_exchanged_pairs>(radix_bits, x, n, 1, tables.roots);
  else
    pass<W, as_pairs>(radix_bits, x, n, 1, tables.roots);
  later_passes<W>(plan, 1, x, n >> radix_bits, std::ptrdiff_t{1} << radix_bits, next);
  if (inverse)
    last_pass<W, T, true>(tables, x, n, scale);
  else
    last_pass<W, T, false>(tables, x, n, scale);
}

void transform_any(const fft_plan &plan, const fft_tables &tables, double *x, double scale, bool inverse) {
  transform<(widest < 2 ? 2 : widest), (widest < 8 ? 4 : 8)>(plan, tables, x, scale, inverse);
}

// Not inlined: GCC would merge the two directions, and run out of registers for what they share.
template <int N, bool Inverse>
[[gnu::noinline]] void small(double *x, double scale) {
  if constexpr (widest >= 4 && N >= 8) {
    short_transform<(N < 32 ? 2 : widest / 2), N, Inverse>(x, scale);
  } else {
    one_sample v[N];
    DSP_UNROLL for (int i = 0; i < N; ++i) v[i] = load_samples<one_sample>(x + 2 * i);
    butterfly(v);
    DSP_UNROLL for (int i = 0; i < N; ++i) store_samples(x + 2 * i, v[result<Inverse>(i, N)] * scale);
  }
}

template <int N>
void small(double *x, double scale, bool inverse) {
  if (inverse)
    small<N, true>(x, scale);
  else
    small<N, false>(x, scale);
}

void small_any(int bits, double *x, double scale, bool inverse) {
  if constexpr (most_small_bits == 5) {
    if (bits == 5) return small<32>(x, scale, inverse);
    if (bits == 4) return small<16>(x, scale, inverse);
  }
  if (bits == 3) return small<8>(x, scale, inverse);
  if (bits == 2) return small<4>(x, scale, inverse);
  small<2>(x, scale, inverse);
}

// Let z be the transform of the pairs, a = z[k], b = z[m - k] and w the k-th root of 2m. With s = a + conj b and
// d = w (a - conj b)/i, bin k of the real signal is s + d and bin m - k the conjugate of s - d, both still to be
// halved. The products are added one by one: fused, that rounds once less.
struct post_kernel {
  template <int W>
  static DSP_INLINE void apply(points<W> &a, points<W> &b, const lanes<W> &cos, const lanes<W> &sin) {
    const points<W> even = {a.re + b.re, a.im - b.im};
    const points<W> odd = {a.im + b.im, b.re - a.re};
    a = {even.re + odd.im * sin + odd.re * cos, even.im - odd.re * sin + odd.im * cos};
    b = {even.re - odd.im * sin - odd.re * cos, odd.im * cos - (even.im + odd.re * sin)};
  }

  // Bins 0 and m both come from z[0], and are real.
  template <int W>
  static DSP_INLINE void before_first(points<W> &a, points<W> &b) {
    set_first_lane<W>(b.re, first_lane<W>(a.re));
    set_first_lane<W>(b.im, first_lane<W>(a.im));
  }
  template <int W>
  static DSP_INLINE void after_first(points<W> &a, points<W> &b) {
    set_first_lane<W>(a.im, 0.0);
    set_first_lane<W>(b.im, 0.0);
  }
};

struct pre_kernel {
  template <int W>
  static DSP_INLINE void apply(points<W> &a, points<W> &b, const lanes<W> &cos, const lanes<W> &sin) {
    const points<W> even = {a.re + b.re, a.im - b.im};
    const points<W> odd = {a.re - b.re, a.im + b.im};
    a = {even.re - odd.re * sin - odd.im * cos, even.im - odd.im * sin + odd.re * cos};
    b = {even.re + odd.re * sin + odd.im * cos, odd.re * cos - (even.im + odd.im * sin)};
  }

  // Bins 0 and m of a real signal have no imaginary part: whatever is there is ignored.
  template <int W>
  static DSP_INLINE void before_first(points<W> &a, points<W> &b) {
    set_first_lane<W>(a.im, 0.0);
    set_first_lane<W>(b.im, 0.0);
  }
  template <int W>
  static DSP_INLINE void after_first(points<W> &, points<W> &) {}
};

// Pairs (k, m - k) and (m/2 - k, m/2 + k) for W values of k, which share a root: its cos is the other's sin. For k = 0
// these are (0, m) and (m/2, m/2), for which the formulas hold as well.
template <int W, class Kernel, bool First>
DSP_INLINE void mirrored_pairs(double *x, std::ptrdiff_t m, std::ptrdiff_t k, const double *octant) {
  double *const low = x + 2 * k;
  double *const high = x + 2 * (m - k - W + 1);
  double *const middle_low = x + 2 * (m / 2 - k - W + 1);
  double *const middle_high = x + 2 * (m / 2 + k);
  const lanes<W> cos = in_lane_order<W>(load<lanes<W>>(octant + k));
  const lanes<W> sin = in_lane_order<W>(load<lanes<W>>(octant + m / 4 + 1 + k));
  points<W> a = load_pairs<W>(low);
  points<W> b = load_pairs_reversed<W>(high);
  points<W> c = load_pairs_reversed<W>(middle_low);
  points<W> d = load_pairs<W>(middle_high);
  if constexpr (First) Kernel::template before_first<W>(a, b);
  Kernel::template apply<W>(a, b, cos, sin);
  Kernel::template apply<W>(c, d, sin, cos);
  if constexpr (First) Kernel::template after_first<W>(a, b);
  store_pairs<W>(low, a);
  store_pairs_reversed<W>(high, b);
  store_pairs_reversed<W>(middle_low, c);
  store_pairs<W>(middle_high, d);
}

// m from 16 on.
template <int W, class Kernel>
DSP_INLINE void all_pairs(double *x, std::ptrdiff_t m, const double *octant) {
  // Short signals take narrow loads: one that spans two recent stores of the transform stalls until both are done.
  if constexpr (W > 2)
    if (m < 32) return all_pairs<2, Kernel>(x, m, octant);
  mirrored_pairs<W, Kernel, true>(x, m, 0, octant);
  for (std::ptrdiff_t k = W; k < m / 4; k += W) mirrored_pairs<W, Kernel, false>(x, m, k, octant);
  points<1> a = load_split<1>(x + m / 2);  // sample m/4, its own mirror
  points<1> b = load_split<1>(x + m / 2 * 3);
  Kernel::template apply<1>(a, b, half_sqrt2, half_sqrt2);
  store_split<1>(x + m / 2, a);
  store_split<1>(x + m / 2 * 3, b);
}

void post_process(double *x, std::ptrdiff_t m, const double *octant) { all_pairs<widest, post_kernel>(x, m, octant); }

void pre_process(double *x, std::ptrdiff_t m, const double *octant) { all_pairs<widest, pre_kernel>(x, m, octant); }

// Pairs (k, m - k) for W values of k, for any m.
template <int W, class Kernel, bool First>
DSP_INLINE void pairs_from(double *x, std::ptrdiff_t m, std::ptrdiff_t k, const double *cosines, const double *sines) {
  double *const low = x + 2 * k;
  double *const high = x + 2 * (m - k - W + 1);
  points<W> a = load_pairs<W>(low);
  points<W> b = load_pairs_reversed<W>(high);
  if constexpr (First) Kernel::template before_first<W>(a, b);
  Kernel::template apply<W>(a, b, in_lane_order<W>(load<lanes<W>>(cosines + k)),
                            in_lane_order<W>(load<lanes<W>>(sines + k)));
  if constexpr (First) Kernel::template after_first<W>(a, b);
  store_pairs<W>(low, a);
  store_pairs_reversed<W>(high, b);
}

template <int W, class Kernel>
DSP_INLINE void all_pairs_of(double *x, std::ptrdiff_t m, const double *cosines, const double *sines) {
  if constexpr (W > 2)  // as in all_pairs
    if (m < 4 * W) return all_pairs_of<W / 2, Kernel>(x, m, cosines, sines);
  pairs_from<1, Kernel, true>(x, m, 0, cosines, sines);
  std::ptrdiff_t k = 1;
  for (; 2 * (k + W - 1) < m; k += W) pairs_from<W, Kernel, false>(x, m, k, cosines, sines);
  for (; 2 * k <= m; ++k) pairs_from<1, Kernel, false>(x, m, k, cosines, sines);
}

void post_process_any(double *x, std::ptrdiff_t m, const double *cosines, const double *sines) {
  all_pairs_of<widest, post_kernel>(x, m, cosines, sines);
}

void pre_process_any(double *x, std::ptrdiff_t m, const double *cosines, const double *sines) {
  all_pairs_of<widest, pre_kernel>(x, m, cosines, sines);
}

void small_real_any(int bits, double *x, double scale, bool inverse) {
  if (bits == 4) return short_real<16>(x, scale, inverse);
  if (bits == 3) return short_real<8>(x, scale, inverse);
  short_real<4>(x, scale, inverse);
}

}  // namespace

extern const fft_kernel_set fft_set = {
    widest > 2 ? widest : 2, most_small_bits,  transform_any,  small_any, post_process, pre_process,
    small_real_any,          post_process_any, pre_process_any};

}  // namespace DSP_ISA
}  // namespace dsp::fft
