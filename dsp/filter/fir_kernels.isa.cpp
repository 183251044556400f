#include "dsp/filter/fir_kernels.h"

#include "dsp/simd/vector.h"

namespace dsp::filter {
namespace {

// With fused products, `depth` taps that lie a vector apart are applied at once: vector v of the samples is loaded once
// and serves vector v - q of the outputs by tap q. Without fused products taps are added one after another, in the same
// order on every processor.
constexpr int depth = has_fused_products && has_vector_registers ? 4 : 1;

// Vectors of outputs in a tile: enough to hide the latency of an addition, few enough for the registers.
constexpr int wide = !has_vector_registers ? 4 : lane_count == 8 ? 16 : 8;
constexpr int medium = wide < 8 ? wide : 8;

// The taps to apply, beginning with that of the oldest sample.
struct tap_run {
  const double *x;
  const double *h;
  int32_t step;    // doubles from sample to sample
  int32_t stride;  // doubles from tap to tap, backwards
  int64_t count;
};

struct real_tap {
  double weight;

  template <class V>
  DSP_INLINE void add(carried<V> &sum, const V &z) const {
    sum += weight * z;
  }
};

template <class Tap>
DSP_INLINE Tap load_tap(const double *h) {
  return {*h};
}

struct complex_tap {
  double re;
  double im;

  template <class V>
  DSP_INLINE void add(carried<V> &sum, const V &z) const {
    const V turned = im * alternating<V>(-1.0, 1.0);
    if constexpr (has_fused_products) {
      sum += re * z;
      sum += turned * swap_pairs(z);
    } else {
      sum += re * z + turned * swap_pairs(z);
    }
  }
};

template <>
DSP_INLINE complex_tap load_tap(const double *h) {
  return {h[0], h[1]};
}

// Applies Q taps that lie `group` taps apart, then the Q taps that follow these, and so on: `rows` times.
template <class V, int U, int Q, class Tap>
DSP_INLINE void add_rows(carried<V> *sum, const tap_run &run, const double *x, const double *h, int64_t group,
                         int64_t rows) {
  for (int64_t row = 0; row < rows; ++row, x += run.step, h -= run.stride) {
    Tap tap[Q];
#pragma GCC unroll 4
    for (int q = 0; q < Q; ++q) tap[q] = load_tap<Tap>(h - q * group * run.stride);
#pragma GCC unroll 32
    for (int v = 0; v < U + Q - 1; ++v) {
      const V z = load_once<V>(x + v * lane_count);
#pragma GCC unroll 4
      for (int q = 0; q < Q; ++q)
        if (v >= q && v - q < U) tap[q].template add<V>(sum[v - q], z);  // GCOVR_EXCL_BR_LINE: constants, unrolled
    }
  }
}

// The same for q taps, Least <= q <= Most.
template <class V, int U, int Least, int Most, class Tap>
DSP_INLINE void add_some_rows(int64_t q, carried<V> *sum, const tap_run &run, const double *x, const double *h,
                              int64_t group, int64_t rows) {
  if constexpr (Least < Most)
    if (q < Most) return add_some_rows<V, U, Least, Most - 1, Tap>(q, sum, run, x, h, group, rows);
  if constexpr (Most > 0) add_rows<V, U, Most, Tap>(sum, run, x, h, group, rows);
}

template <class V, int U, class Tap>
DSP_INLINE void add_taps(carried<V> *sum, const tap_run &run, int64_t j) {
  const double *x = run.x + j;
  const double *h = run.h;
  if constexpr (depth == 1) {
    add_rows<V, U, 1, Tap>(sum, run, x, h, 1, run.count);
  } else {
    const int64_t group = lane_count >> (run.step - 1);  // taps that a vector of samples spans
    const int64_t whole = depth * group;
    int64_t left = run.count;
    for (; left >= whole; left -= whole, x += depth * lane_count, h -= whole * run.stride)
      add_rows<V, U, depth, Tap>(sum, run, x, h, group, group);
    const int64_t full = left * run.step / lane_count;
    const int64_t longer = left - full * group;  // rows that apply one tap more
    add_some_rows<V, U, 1, depth, Tap>(full + 1, sum, run, x, h, group, longer);
    add_some_rows<V, U, 0, depth - 1, Tap>(full, sum, run, x + longer * run.step, h - longer * run.stride, group,
                                           group - longer);
  }
}

template <class Tap>
struct plain_taps {
  tap_run run;

  template <class V, int U>
  DSP_INLINE void add(carried<V> *sum, int64_t j) const {
    add_taps<V, U, Tap>(sum, run, j);
  }
};

struct split_taps {
  tap_run even;
  tap_run odd;

  template <class V, int U>
  DSP_INLINE void add(carried<V> *sum, int64_t j) const {
    add_taps<V, U, real_tap>(sum, even, j);
    add_taps<V, U, real_tap>(sum, odd, j);
  }
};

// Mirrored samples are added, or subtracted, before the product. `Samples` says where sample i of the span of output 0
// lies.
template <class Samples, bool Anti>
struct mirrored_taps {
  folded_filter filter;
  Samples samples;

  template <class V, int U>
  DSP_INLINE void add(carried<V> *sum, int64_t j) const {
    for (int64_t i = 0; i < filter.pairs; ++i) {
      const double tap = filter.half[i];
      const double *newer = samples.at(filter.length() - 1 - i) + j;
      const double *older = samples.at(i) + j;
      for (int u = 0; u < U; ++u) {
        const V a = load<V>(newer + u * width_of<V>);
        const V b = load<V>(older + u * width_of<V>);
        sum[u] += tap * (Anti ? a - b : a + b);
      }
    }
    if (!filter.has_centre) return;
    const double *at = samples.at(filter.pairs) + j;
    for (int u = 0; u < U; ++u) sum[u] += filter.half[filter.pairs] * load<V>(at + u * width_of<V>);
  }
};

struct contiguous {
  const double *x;
  int32_t step;
  const double *at(int64_t i) const { return x + i * step; }
};

struct interlaced {
  const double *even;
  const double *odd;
  int32_t step;
  const double *at(int64_t i) const { return ((i & 1) != 0 ? odd : even) + (i >> 1) * step; }
};

template <class V, int U, class Taps>
inline void tile(double *y, const Taps &taps, int64_t j, bool continued) {
  carried<V> sum[U];
#pragma GCC unroll 16
  for (int u = 0; u < U; ++u) sum[u] = continued ? load<V>(y + j + u * width_of<V>) : V{};
  taps.template add<V, U>(sum, j);
#pragma GCC unroll 16
  for (int u = 0; u < U; ++u) store(y + j + u * width_of<V>, sum[u]);
}

// Tiles of vectors, then single vectors, then the rest in the narrowest lane type that holds a sample. The last tile
// and the last vector may overlap the one before: the outputs in common are computed twice.
template <class Narrow, class Taps>
void filter(double *y, int64_t count, const Taps &taps, bool continued) {
  constexpr int64_t broad = wide * lane_count;
  constexpr int64_t narrower = medium * lane_count;
  int64_t j = 0;
  for (; j + broad <= count; j += broad) tile<widest, wide>(y, taps, j, continued);
  if constexpr (medium < wide)
    for (; j + narrower <= count; j += narrower) tile<widest, medium>(y, taps, j, continued);
  if (has_vector_registers && count - j > 2 * lane_count && count >= narrower && !continued)
    return tile<widest, medium>(y, taps, count - narrower, false);
  for (; j + lane_count <= count; j += lane_count) tile<widest, 1>(y, taps, j, continued);
  if (j < count && count >= lane_count && !continued) return tile<widest, 1>(y, taps, count - lane_count, false);
  for (; j < count; j += width_of<Narrow>) tile<Narrow, 1>(y, taps, j, continued);
}

void real_taps(const fir_run &run, const double *h, int32_t stride, int64_t taps, bool continued) {
  filter<double>(run.y, run.count, plain_taps<real_tap>{{run.x, h, run.step, stride, taps}}, continued);
}

void complex_taps(const fir_run &run, const double *h, int64_t taps, bool continued) {
  filter<lanes<2>>(run.y, run.count, plain_taps<complex_tap>{{run.x, h, 2, 2, taps}}, continued);
}

// All taps of a folded filter: two fused products take no longer than adding mirrored samples and one product.
struct unfolded {
  double taps[folded_limit];

  explicit unfolded(const folded_filter &f) {
    const int32_t given = f.length() - f.pairs;
    const double sign = f.anti ? -1.0 : 1.0;
    for (int32_t i = 0; i < given; ++i) taps[i] = f.half[i];
    for (int32_t i = 0; i < f.pairs; ++i) taps[given + i] = sign * f.half[f.pairs - 1 - i];
  }
};

template <bool Fused>
void folded_taps(const fir_run &run, const folded_filter &f) {
  if constexpr (Fused) {
    const unfolded all(f);
    real_taps(run, all.taps + f.length() - 1, 1, f.length(), false);
  } else if (f.anti) {
    filter<double>(run.y, run.count, mirrored_taps<contiguous, true>{f, {run.x, run.step}}, false);
  } else {
    filter<double>(run.y, run.count, mirrored_taps<contiguous, false>{f, {run.x, run.step}}, false);
  }
}

// Parts 2 W doubles, samples of Step doubles each, into samples of even and of odd number.
template <int Step, int W>
DSP_INLINE void split_vector(const double *x, double *even, double *odd) {
  const lanes<W> a = load<lanes<W>>(x);
  const lanes<W> b = load<lanes<W>>(x + W);
  if constexpr (Step == 1) {
    const points<W> parted = load_pairs_in_order<W>(x);
    store(even, parted.re);
    store(odd, parted.im);
  } else if constexpr (W == 8) {
    store<lanes<W>>(even, __builtin_shufflevector(a, b, 0, 1, 4, 5, 8, 9, 12, 13));
    store<lanes<W>>(odd, __builtin_shufflevector(a, b, 2, 3, 6, 7, 10, 11, 14, 15));
  } else if constexpr (W == 4) {
    store<lanes<W>>(even, __builtin_shufflevector(a, b, 0, 1, 4, 5));
    store<lanes<W>>(odd, __builtin_shufflevector(a, b, 2, 3, 6, 7));
  } else {
    store(even, a);
    store(odd, b);
  }
}

template <int Step>
void split(const double *x, int64_t count, double *even, double *odd) {
  int64_t i = 0;
  if constexpr (has_vector_registers)
    for (; i + lane_count <= count; i += lane_count) split_vector<Step, lane_count>(x + 2 * i, even + i, odd + i);
  for (; i < count; i += Step)
    for (int part = 0; part < Step; ++part) {
      even[i + part] = x[2 * i + part];
      odd[i + part] = x[2 * i + Step + part];
    }
}

template <bool Fused>
void halved_taps(const fir_run &run, const folded_filter &f) {
  constexpr int64_t room = 2 * (halved_limit + folded_limit / 2);
  alignas(64) double even[room];
  alignas(64) double odd[room];
  const int64_t pairs = run.count + f.length() / 2 * run.step;
  if (run.step == 1)
    split<1>(run.x, pairs, even, odd);
  else
    split<2>(run.x, pairs, even, odd);
  if constexpr (Fused) {
    const unfolded all(f);
    const double *newest = all.taps + f.length() - 1;
    const int64_t evens = (f.length() + 1) / 2;
    const tap_run of_even = {even, newest, run.step, 2, evens};
    const tap_run of_odd = {odd, newest - 1, run.step, 2, f.length() - evens};
    filter<double>(run.y, run.count, split_taps{of_even, of_odd}, false);
  } else {
    filter<double>(run.y, run.count, mirrored_taps<interlaced, false>{f, {even, odd, run.step}}, false);
  }
}

template <class V>
DSP_INLINE void multiply_vector(double *y, const double *x, const double *h, bool continued, carried<V> &squares) {
  const V z = load<V>(x);
  const V g = load<V>(h);
  const V re = first_lanes<width_of<V>>(g, g);
  const V im = second_lanes<width_of<V>>(g, g);
  V sum = continued ? load<V>(y) : V{};
  sum += re * z;
  sum += im * (alternating<V>(-1.0, 1.0) * swap_pairs(z));
  store(y, sum);
  squares += z * z;
}

double multiply(double *y, const double *x, const double *h, int64_t count, bool continued) {
  constexpr int vectors = 2;
  carried<widest> squares[vectors] = {};
  carried<lanes<2>> rest = {};
  int64_t i = 0;
  for (; i + vectors * lane_count <= 2 * count; i += vectors * lane_count)
#pragma GCC unroll 2
    for (int v = 0; v < vectors; ++v) {
      const int64_t at = i + v * lane_count;
      multiply_vector<widest>(y + at, x + at, h + at, continued, squares[v]);
    }
  for (; i < 2 * count; i += 2) multiply_vector<lanes<2>>(y + i, x + i, h + i, continued, rest);
  double sum = rest[0] + rest[1];
  for (int lane = 0; lane < lane_count; ++lane) sum += squares[0][lane] + squares[1][lane];
  return sum;
}

// Magnitudes compare like the integers of their bits; infinity and NaN are the largest.
bool within(const double *x, int64_t count, double bound) {
  constexpr int64_t magnitude = INT64_MAX;
  int64_t most = 0;
  __builtin_memcpy(&most, &bound, sizeof most);
  int64_t margins = 0;  // negative once a margin is
  for (int64_t i = 0; i < count; ++i) {
    int64_t bits = 0;
    __builtin_memcpy(&bits, x + i, sizeof bits);
    margins |= most - (bits & magnitude);
  }
  return margins >= 0;
}

}  // namespace

namespace DSP_ISA {
extern const fir_kernel_set fir_set = {lane_count / 2.0,         real_taps, complex_taps, folded_taps<(depth > 1)>,
                                       halved_taps<(depth > 1)>, multiply,  within};
}

}  // namespace dsp::filter
