// Transforms of mixed radix on one instruction set. docs/fft.md draws the matrix.
#include "dsp/fft/mixed_kernels.h"

#include "dsp/fft/butterfly.h"
#include "dsp/fft/times_root.h"

namespace dsp::fft {
namespace DSP_ISA {
namespace {

// Without vector registers the compiler would keep vectors in memory: single numbers are faster.
constexpr int widest_lanes = has_vector_registers ? lane_count : 1;

// Kernels for half as many lanes work on pairs, which fill the same registers.
constexpr int pair_lanes = widest_lanes > 2 ? widest_lanes / 2 : 0;

// Where the last pass of a part stores its results: as vectors in the work area, multiplied by roots, or as samples of
// the record.
struct result_sink {
  enum { work, pairs, exchanged_pairs } kind;
  double *to;
  std::ptrdiff_t unit;  // doubles in one step of `order`
  std::ptrdiff_t step;  // doubles from one result of the last butterfly to the next
  const double *roots;  // for work, in the order of the results
  double scale;         // for pairs
};

template <class P, int R>
DSP_INLINE void put(const result_sink &sink, double *to, std::ptrdiff_t step, const double *roots, const P (&v)[R]) {
  constexpr int W = P::width;
  const double scale = sink.scale;
  if (sink.kind == result_sink::work) {
    DSP_UNROLL for (int k = 0; k < R; ++k)
        store_vector(to + k * step, times_root(v[k], roots + k * values_of_root<P> * W));
  } else if (sink.kind == result_sink::pairs) {
    DSP_UNROLL for (int k = 0; k < R; ++k) store_samples(to + k * step, v[k] * scale);
  } else {
    DSP_UNROLL for (int k = 0; k < R; ++k) store_samples(to + k * step, exchanged(v[k]) * scale);
  }
}

// What a pass needs beside its samples, which are `blocks` neighbouring transforms of n vectors.
struct pass_context {
  std::ptrdiff_t n;
  std::ptrdiff_t blocks;
  const double *roots;
  const double *circle;  // for a prime without a butterfly
  const uint32_t *order;
  const result_sink *sink;
};

// One pass in place. The last one, on blocks of R vectors, stores its results in the sink.
template <class P, int R>
void pass(double *x, const pass_context &c) {
  constexpr int W = P::width;
  const std::ptrdiff_t leg = 2 * W * (c.n / R);
  const bool last = c.n == R;
  const result_sink sink = *c.sink;
  const double *between = sink.roots;
  for (std::ptrdiff_t block = 0; block < c.blocks; ++block, x += 2 * W * c.n) {
    const double *root = c.roots;
    for (double *at = x; at < x + leg; at += 2 * W, root += (R - 1) * root_values) {
      P v[R];
      DSP_UNROLL for (int k = 0; k < R; ++k) v[k] = load_vector<P>(at + k * leg);
      butterfly(v);
      if (last) {
        put<P, R>(sink, sink.to + static_cast<std::ptrdiff_t>(c.order[block]) * sink.unit, sink.step, between, v);
        between += values_of_root<P> * W * R;
        continue;
      }
      store_vector(at, v[0]);
      DSP_UNROLL for (int k = 1; k < R; ++k)
          store_vector(at + k * leg, times_one_root(v[k], root + (k - 1) * root_values));
    }
  }
}

// The sums and differences that an odd butterfly of p legs works on.
template <class P>
struct prime_legs {
  P first;
  P sum[largest_radix / 2];
  P difference[largest_radix / 2];

  void load(const double *x, std::ptrdiff_t leg, int p) {
    first = load_vector<P>(x);
    for (int j = 1; j <= p / 2; ++j) {
      const P a = load_vector<P>(x + j * leg);
      const P b = load_vector<P>(x + (p - j) * leg);
      sum[j - 1] = a + b;
      difference[j - 1] = a - b;
    }
  }

  P total(int p) const {
    P all = first;
    for (int j = 0; j < p / 2; ++j) all = all + sum[j];
    return all;
  }

  // Results k and p - k.
  void results(int k, int p, const double *circle, P *low, P *high) const {
    P even = first;
    P odd = {};
    for (int j = 0, i = k; j < p / 2; ++j, i = i + k < p ? i + k : i + k - p) {
      const double cos = circle[2 * i];
      const double sin = circle[2 * i + 1];
      even = even + sum[j] * cos;
      odd = odd + difference[j] * sin;
    }
    *low = minus_i(even, odd);
    *high = plus_i(even, odd);
  }
};

// Stores the results of one such butterfly: in place, multiplied by roots, or in the last pass in the sink.
template <class P>
struct prime_results {
  static constexpr int W = P::width;
  double *at;
  std::ptrdiff_t leg;
  const double *root;
  const result_sink *sink;
  double *out;  // null: not the last pass
  const double *between;

  void take(int i, const P &v) const {
    const P one[1] = {v};
    if (out != nullptr)
      put<P, 1>(*sink, out + i * sink->step, 0, between + i * values_of_root<P> * W, one);
    else
      store_vector(at + i * leg, i == 0 ? v : times_one_root(v, root + (i - 1) * root_values));
  }
};

template <class P>
void prime_butterfly(int p, const double *circle, const prime_results<P> &results) {
  prime_legs<P> legs;
  legs.load(results.at, results.leg, p);
  results.take(0, legs.total(p));
  for (int k = 1; k <= p / 2; ++k) {
    P low;
    P high;
    legs.results(k, p, circle, &low, &high);
    results.take(k, low);
    results.take(p - k, high);
  }
}

// As `pass`, for a prime without a butterfly of its own.
template <class P>
void prime_pass(int p, double *x, const pass_context &c) {
  constexpr int W = P::width;
  const std::ptrdiff_t leg = 2 * W * (c.n / p);
  const bool last = c.n == p;
  const double *between = c.sink->roots;
  for (std::ptrdiff_t block = 0; block < c.blocks; ++block, x += 2 * W * c.n, between += values_of_root<P> * W * p) {
    double *const out = last ? c.sink->to + static_cast<std::ptrdiff_t>(c.order[block]) * c.sink->unit : nullptr;
    const double *root = c.roots;
    for (double *at = x; at < x + leg; at += 2 * W, root += (p - 1) * root_values)
      prime_butterfly<P>(p, c.circle, {at, leg, root, c.sink, out, between});
  }
}

template <class P>
void any_pass(int radix, double *x, const pass_context &c) {
  constexpr int W = P::width;
  // The radices for which has_butterfly is true.
  if constexpr (W == 8) {
    if (radix == 9) return pass<P, 9>(x, c);
    if (radix == 10) return pass<P, 10>(x, c);
    if (radix == 11) return pass<P, 11>(x, c);
    if (radix == 13) return pass<P, 13>(x, c);
  }
  if constexpr (W == 4)
    if (radix == 15) return pass<P, 15>(x, c);
  switch (radix) {
    case 2:
      return pass<P, 2>(x, c);
    case 3:
      return pass<P, 3>(x, c);
    case 4:
      return pass<P, 4>(x, c);
    case 5:
      return pass<P, 5>(x, c);
    case 6:
      return pass<P, 6>(x, c);
    case 7:
      return pass<P, 7>(x, c);
    case 8:
      return pass<P, 8>(x, c);
    default:
      return prime_pass<P>(radix, x, c);
  }
}

// `count` neighbouring transforms of a part. The sink's step is that from one frequency to the next.
template <class P>
void run(const mixed_part &part, std::ptrdiff_t count, double *x, result_sink sink) {
  sink.step *= part.last_blocks;
  pass_context c = {part.n, count, part.roots, part.circle[0], part.order, &sink};
  for (int i = 0; i + 1 < part.passes; c.circle = part.circle[++i]) {
    const int radix = part.radix[i];
    any_pass<P>(radix, x, c);
    c.blocks *= radix;
    c.n = static_cast<int32_t>(c.n) / radix;
    c.roots += root_values * c.n * (radix - 1);
  }
  any_pass<P>(part.radix[part.passes - 1], x, c);
}

// n vectors of W columns each from the record to the buffer.
template <class P>
void gather_columns(const double *x, std::ptrdiff_t stride, std::ptrdiff_t n, bool inverse, double *buffer) {
  constexpr int W = P::width;
  for (std::ptrdiff_t i = 0; i < n; ++i, x += stride, buffer += 2 * W) {
    const P v = load_samples<P>(x);
    store_vector(buffer, inverse ? exchanged(v) : v);
  }
}

// W rows of the work area, whose lanes are columns, to the buffer, whose lanes are rows.
template <class P>
void gather_rows(const double *area, std::ptrdiff_t groups, std::ptrdiff_t n, double *buffer) {
  constexpr int W = P::width;
  for (std::ptrdiff_t g = 0; g < groups; ++g, area += 2 * W) {
    const std::ptrdiff_t first = g * W < n - W ? g * W : n - W;
    P v[W];
    DSP_UNROLL for (int l = 0; l < W; ++l) v[l] = load_vector<P>(area + l * groups * 2 * W);
    transpose(v);
    DSP_UNROLL for (int i = 0; i < W; ++i) store_vector(buffer + (first + i) * 2 * W, v[i]);
  }
}

constexpr std::ptrdiff_t smaller(std::ptrdiff_t a, std::ptrdiff_t b) { return a < b ? a : b; }

// A sink for samples of the record; its roots are not read.
result_sink to_record(double *x, std::ptrdiff_t stride, double scale, bool inverse) {
  return {inverse ? result_sink::exchanged_pairs : result_sink::pairs, x, stride, stride, x, scale};
}

// Any n1 and n2 from W on. The last group of columns and of rows overlaps the one before where W does not divide them.
template <class P>
void by_gathering(const mixed_plan &plan, const mixed_work &work, double *x, double scale, bool inverse) {
  constexpr int W = P::width;
  const std::ptrdiff_t n1 = plan.n1;
  const std::ptrdiff_t n2 = plan.rows.n;
  const std::ptrdiff_t groups = (n2 + W - 1) / W;
  const std::ptrdiff_t row = groups * 2 * W;
  for (std::ptrdiff_t g = 0; g < groups; ++g) {
    gather_columns<P>(x + 2 * smaller(g * W, n2 - W), 2 * n2, n1, inverse, work.buffer);
    run<P>(plan.columns, 1, work.buffer,
           {result_sink::work, work.area + g * 2 * W, row, row, plan.middle + g * W * n1 * values_of_root<P>, 1.0});
  }
  for (std::ptrdiff_t r = 0; r < n1; r += W) {
    const std::ptrdiff_t first = smaller(r, n1 - W);
    gather_rows<P>(work.area + first * row, groups, n2, work.buffer);
    run<P>(plan.rows, 1, work.buffer, to_record(x + 2 * first, 2 * n1, scale, inverse));
  }
}

// The first butterflies over W columns. After a transposition of v, lanes are frequencies and vectors are columns.
template <class P>
DSP_INLINE void first_butterfly(const double *x, std::ptrdiff_t leg, bool inverse, P (&v)[P::width]) {
  DSP_UNROLL for (int k = 0; k < P::width; ++k) v[k] = load_samples<P>(x + k * leg);
  if (inverse) {
    DSP_UNROLL for (int k = 0; k < P::width; ++k) v[k] = exchanged(v[k]);
  }
  butterfly(v);
}

// Columns of W samples, from x to the work area.
template <class P>
void short_columns(const mixed_plan &plan, const double *x, bool inverse, double *area) {
  constexpr int W = P::width;
  const std::ptrdiff_t n2 = plan.rows.n;
  const double *middle = plan.middle;
  for (std::ptrdiff_t c = 0; c < n2; c += W, middle += W * W * values_of_root<P>) {
    const std::ptrdiff_t first = smaller(c, n2 - W);
    P v[W];
    first_butterfly(x + 2 * first, 2 * n2, inverse, v);
    transpose(v);
    DSP_UNROLL for (int i = 0; i < W; ++i)
        store_vector(area + (first + i) * 2 * W, times_root(v[i], middle + i * values_of_root<P> * W));
  }
}

// Columns of m W samples: the other passes follow in the buffer.
template <class P>
void long_columns(const mixed_plan &plan, const mixed_work &work, const double *x, bool inverse) {
  constexpr int W = P::width;
  const std::ptrdiff_t m = plan.columns.n;
  const std::ptrdiff_t n2 = plan.rows.n;
  const double *middle = plan.middle;
  for (std::ptrdiff_t c = 0; c < n2; c += W, middle += W * W * m * values_of_root<P>) {
    const std::ptrdiff_t first = smaller(c, n2 - W);
    const double *root = plan.first;
    for (std::ptrdiff_t j = 0; j < m; ++j, root += (W - 1) * root_values) {
      P v[W];
      first_butterfly(x + 2 * (first + j * n2), 2 * m * n2, inverse, v);
      DSP_UNROLL for (int k = 1; k < W; ++k) v[k] = times_one_root(v[k], root + (k - 1) * root_values);
      transpose(v);
      DSP_UNROLL for (int i = 0; i < W; ++i) store_vector(work.buffer + (i * m + j) * 2 * W, v[i]);
    }
    run<P>(plan.columns, W, work.buffer,
           {result_sink::work, work.area + first * 2 * W, 2 * W, n2 * 2 * W, middle, 1.0});
  }
}

// n1 a multiple of W: the work area holds n1/W rows of n2 vectors, and nothing is gathered.
template <class P>
void by_transposing(const mixed_plan &plan, const mixed_work &work, double *x, double scale, bool inverse) {
  constexpr int W = P::width;
  const std::ptrdiff_t m = plan.columns.n;
  const std::ptrdiff_t row = plan.rows.n * std::ptrdiff_t{2 * W};
  if (m == 1)
    short_columns<P>(plan, x, inverse, work.area);
  else
    long_columns<P>(plan, work, x, inverse);
  for (std::ptrdiff_t k = 0; k < m; ++k)
    run<P>(plan.rows, 1, work.area + k * row, to_record(x + 2 * W * k, 2 * W * m, scale, inverse));
}

template <class P>
void matrix(const mixed_plan &plan, const mixed_work &work, double *x, double scale, bool inverse) {
  if (plan.transposed != 0)
    by_transposing<P>(plan, work, x, scale, inverse);
  else
    by_gathering<P>(plan, work, x, scale, inverse);
}

// Plans of one lane: all of them without vector registers, else only primes.
[[maybe_unused]] void single(const mixed_plan &plan, const mixed_work &work, double *x, double scale, bool inverse) {
  gather_columns<points<1>>(x, 2, plan.rows.n, inverse, work.buffer);
  const result_sink sink = to_record(x, 2, scale, inverse);
  if constexpr (widest_lanes == 1) {
    run<points<1>>(plan.rows, 1, work.buffer, sink);
  } else {
    const pass_context c = {plan.rows.n, 1, plan.rows.roots, plan.rows.circle[0], plan.rows.order, &sink};
    prime_pass<points<1>>(plan.rows.n, work.buffer, c);
  }
}

#if !defined(__AVX512F__)
template <int N>
[[gnu::noinline]] void direct(double *x, double scale, bool inverse) {
  // The inverse transform is the forward one of the samples 0, N - 1, .., 1.
  const double *from = inverse ? x + 2 * (N - 1) : x + 2;
  const std::ptrdiff_t step = inverse ? -2 : 2;
  one_sample v[N];
  v[0] = load_samples<one_sample>(x);
  DSP_UNROLL for (int i = 1; i < N; ++i, from += step) v[i] = load_samples<one_sample>(from);
  butterfly(v);
  DSP_UNROLL for (int i = 0; i < N; ++i) store_samples(x + 2 * i, v[i] * scale);
}

void any_direct(int32_t n, double *x, double scale, bool inverse) {
  switch (n) {
    case 3:
      return direct<3>(x, scale, inverse);
    case 5:
      return direct<5>(x, scale, inverse);
    case 6:
      return direct<6>(x, scale, inverse);
    case 7:
      return direct<7>(x, scale, inverse);
    case 9:
      return direct<9>(x, scale, inverse);
    case 10:
      return direct<10>(x, scale, inverse);
    case 11:
      return direct<11>(x, scale, inverse);
    case 12:
      return direct<12>(x, scale, inverse);
    case 13:
      return direct<13>(x, scale, inverse);
    case 14:
      return direct<14>(x, scale, inverse);
    default:
      return direct<15>(x, scale, inverse);
  }
}

#else
constexpr auto any_direct = nullptr;
#endif

void transform(const mixed_plan &plan, const mixed_work &work, double *x, double scale, bool inverse) {
  if constexpr (widest_lanes < 8)
    if (plan.lanes == 1) return single(plan, work, x, scale, inverse);
  if constexpr (pair_lanes > 1)
    if (plan.lanes == pair_lanes) return matrix<pairs<pair_lanes>>(plan, work, x, scale, inverse);
  if constexpr (widest_lanes > 1) matrix<points<widest_lanes>>(plan, work, x, scale, inverse);
}

}  // namespace

extern const mixed_kernel_set mixed_set = {widest_lanes, pair_lanes, transform, any_direct};

}  // namespace DSP_ISA
}  // namespace dsp::fft
