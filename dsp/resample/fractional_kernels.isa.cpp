#pragma GCC diagnostic ignored "-Wpsabi"  // four lanes are passed between functions of this file only

#include "dsp/resample/fractional_kernels.h"

#include "dsp/resample/position.h"
#include "dsp/simd/vector.h"

namespace dsp::resample {
namespace {

// With fused products the taps of an output lie in whole vectors. The last vector may overlap the one before, so that
// no sample outside the span is read; both then hold half of the weights in common. Without fused products, and for
// kernels shorter than a vector, taps are summed in fours and the rest one by one, in the same way on every processor.
constexpr bool in_vectors = has_fused_products && has_vector_registers;

constexpr int32_t vectors_of(int32_t taps) { return (taps + lane_count - 1) / lane_count; }

// The first tap of a vector of weights.
[[maybe_unused]] constexpr int32_t first_tap(int32_t vector, int32_t taps) {
  const int32_t last = taps - lane_count;
  return vector * lane_count < last ? vector * lane_count : last;
}

// Whether rows lie in whole vectors. Their lane `lane` of vector `v` holds this share of its tap's weight.
constexpr bool in_whole_vectors(int32_t taps) { return in_vectors && taps >= lane_count; }
double share_of(int32_t v, int32_t lane, int32_t taps) {
  const int32_t last = vectors_of(taps) - 1;
  const int32_t tap = first_tap(v, taps) + lane;
  return tap >= first_tap(last, taps) && tap < last * lane_count ? 0.5 : 1.0;
}

void fill_row(const kernel_rows &k, int32_t row) {
  const double *point = k.points + row;
  double *to = k.rows + row * row_stride(k.taps);
  if (!in_whole_vectors(k.taps)) {
    for (int32_t tap = 0; tap < k.taps; ++tap) to[tap] = point[static_cast<int64_t>(tap) * k.phases];
    return;
  }
  for (int32_t v = 0; v < vectors_of(k.taps); ++v)
    for (int32_t lane = 0; lane < lane_count; ++lane)
      *to++ = share_of(v, lane, k.taps) * point[int64_t{first_tap(v, k.taps) + lane} * k.phases];
}

// Vector `v` of as many rows as it has lanes.
[[maybe_unused]] void fill_square(const kernel_rows &k, int32_t row, int32_t v) {
  const double *column = k.points + row + int64_t{first_tap(v, k.taps)} * k.phases;
  widest share{};
  widest even[lane_count / 2];
  widest odd[lane_count / 2];
  for (int i = 0; i < lane_count; ++i) share[i] = share_of(v, i, k.taps);
  for (int i = 0; i < lane_count / 2; ++i, column += 2 * int64_t{k.phases}) {
    const widest a = load<widest>(column);
    const widest b = load<widest>(column + k.phases);
    even[i] = first_lanes<lane_count>(a, b);
    odd[i] = second_lanes<lane_count>(a, b);
  }
  transpose_units<lane_count>(even);
  transpose_units<lane_count>(odd);
  double *to = k.rows + row * row_stride(k.taps) + v * lane_count;
  for (int i = 0; i < lane_count; ++i, to += row_stride(k.taps))
    store(to, share * (i % 2 == 0 ? even[i / 2] : odd[i / 2]));
}

void fill_rows(kernel_rows *k, int32_t first, int32_t count) {
  int32_t row = first;
  if constexpr (in_vectors)
    if (in_whole_vectors(k->taps))
      for (; row + lane_count <= first + count; row += lane_count)
        for (int32_t v = 0; v < vectors_of(k->taps); ++v) fill_square(*k, row, v);
  for (; row < first + count; ++row) fill_row(*k, row);
  for (row = first; row < first + count - 1; ++row) {
    k->missing -= k->ready[row] == 0 ? 1 : 0;
    k->ready[row] = 1;
  }
}

// Fills a row and the next one; after the first few calls many rows, so that whole cache lines of points are used.
void make_ready(kernel_rows *k, int32_t row) {
  constexpr int32_t few = 8;
  constexpr int32_t together = in_vectors ? 64 : 8;
  if (++k->fills <= few) return fill_rows(k, row, 2);
  const int32_t first = row / together * together;
  fill_rows(k, first, k->phases - first < together ? k->phases - first + 1 : together + 1);
}

// One channel of an output, in four lanes and the rest.
template <int Width>
inline double interpolate_in_fours(const double *x, const double *row, double fraction, int32_t taps) {
  const double *next = row + row_stride(taps);
  const int32_t fours = taps / 4 * 4;
  const auto four = [=](int32_t i) {
    const lanes<4> a = load<lanes<4>>(row + i);
    const lanes<4> w = a + fraction * (load<lanes<4>>(next + i) - a);
    const double *z = x + i * Width;
    if constexpr (Width == 1)
      return w * load<lanes<4>>(z);
    else
      return w * lanes<4>{z[0], z[Width], z[2 * Width], z[3 * Width]};
  };
  lanes<4> sum = {};
  double rest = 0;
  if (fours > 0) sum = four(0);  // a zero of either sign will do: the rest begins with one of sign +
  for (int32_t i = 4; i < fours; i += 4) sum += four(i);
  for (int32_t i = fours; i < taps; ++i) rest += (row[i] + fraction * (next[i] - row[i])) * x[i * Width];
  return ((sum[0] + sum[1]) + (sum[2] + sum[3])) + rest;
}

// Each weight twice, for both parts of a complex sample: those of the first half of the lanes, and of the second.
template <int W>
DSP_INLINE lanes<W> doubled_low(const lanes<W> &w) {
  if constexpr (W == 8)
    return __builtin_shufflevector(w, w, 0, 0, 1, 1, 2, 2, 3, 3);
  else if constexpr (W == 4)
    return __builtin_shufflevector(w, w, 0, 0, 1, 1);
  else
    return __builtin_shufflevector(w, w, 0, 0);
}

template <int W>
DSP_INLINE lanes<W> doubled_high(const lanes<W> &w) {
  if constexpr (W == 8)
    return __builtin_shufflevector(w, w, 4, 4, 5, 5, 6, 6, 7, 7);
  else if constexpr (W == 4)
    return __builtin_shufflevector(w, w, 2, 2, 3, 3);
  else
    return __builtin_shufflevector(w, w, 1, 1);
}

// The products of one output, not yet summed: of complex samples in pairs of lanes.
template <int Width>
DSP_INLINE widest products_of(const double *x, const double *row, double fraction, int32_t taps, int32_t vectors) {
  const double *next = row + row_stride(taps);
  widest sum = {};
  for (int32_t v = 0; v < vectors; ++v) {
    const widest a = load_once<widest>(row + v * lane_count);
    const widest w = a + fraction * (load<widest>(next + v * lane_count) - a);
    const double *from = x + first_tap(v, taps) * Width;
    if constexpr (Width == 1) {
      sum += w * load<widest>(from);
    } else {
      sum += doubled_low<lane_count>(w) * load<widest>(from);
      sum += doubled_high<lane_count>(w) * load<widest>(from + lane_count);
    }
  }
  return sum;
}

// sum_lanes adds neighbouring lanes of a and of b, sum_pairs neighbouring pairs of lanes, sum_halves the halves; sums
// of a and of b alternate. One of the two operands is a blend, which more units of a processor compute than a shuffle.
template <int W>
DSP_INLINE lanes<W> sum_lanes(const lanes<W> &a, const lanes<W> &b) {
  if constexpr (W == 8)
    return __builtin_shufflevector(a, b, 0, 9, 2, 11, 4, 13, 6, 15) +
           __builtin_shufflevector(a, b, 1, 8, 3, 10, 5, 12, 7, 14);
  else if constexpr (W == 4)
    return __builtin_shufflevector(a, b, 0, 5, 2, 7) + __builtin_shufflevector(a, b, 1, 4, 3, 6);
  else
    return __builtin_shufflevector(a, b, 0, 3) + __builtin_shufflevector(a, b, 1, 2);
}

template <int W>
DSP_INLINE lanes<W> sum_pairs(const lanes<W> &a, const lanes<W> &b) {
  if constexpr (W == 8)
    return __builtin_shufflevector(a, b, 0, 1, 10, 11, 4, 5, 14, 15) +
           __builtin_shufflevector(a, b, 2, 3, 8, 9, 6, 7, 12, 13);
  else
    return __builtin_shufflevector(a, b, 0, 1, 6, 7) + __builtin_shufflevector(a, b, 2, 3, 4, 5);
}

template <int W>
DSP_INLINE lanes<W> sum_halves(const lanes<W> &a, const lanes<W> &b) {
  return __builtin_shufflevector(a, b, 0, 1, 2, 3, 12, 13, 14, 15) +
         __builtin_shufflevector(a, b, 4, 5, 6, 7, 8, 9, 10, 11);
}

// Outputs of one or two doubles that fill W lanes, side by side; of(i) are the products of output i.
template <int Width, int W, class Products>
DSP_INLINE lanes<W> sums_of(const Products &of) {
  const auto two = [&](int i) {
    if constexpr (Width == 2)
      return of(i);
    else
      return sum_lanes<W>(of(2 * i), of(2 * i + 1));
  };
  if constexpr (W == 2) {
    return two(0);
  } else {
    const auto four = [&](int i) { return sum_pairs<W>(two(2 * i), two(2 * i + 1)); };
    if constexpr (W == 8)
      return sum_halves<W>(four(0), four(1));
    else
      return four(0);
  }
}

// Where a batch of outputs, and the one after it, lie: found before anything is weighed.
constexpr int32_t batch_limit = 128;
struct batch {
  double offset[batch_limit + 1];
  int64_t start[batch_limit + 1];
  uint32_t row[batch_limit];
  double fraction[batch_limit + lane_count];  // a vector may be loaded from each
  int32_t count;
};

constexpr int64_t one_sample = int64_t{1} << 53;

// With steps of the converter's size, positions are whole multiples of 2^-53 throughout and no sum of them rounds.
bool is_exact(double step, double offset) {
  const double scaled = offset * one_sample;
  return step >= 0.5 && step < 1.0 && static_cast<double>(static_cast<int64_t>(scaled)) == scaled;
}

// Then each output's position follows from the first one's: none waits for another.
void place_exactly(double step, double offset, int64_t start, batch *b) {
  const auto first = static_cast<int64_t>(offset * one_sample);
  const auto stride = static_cast<int64_t>(step * one_sample);
  for (int64_t n = 0; n <= batch_limit; ++n) {
    const int64_t at = first + n * stride;
    const int64_t whole = at > 0 ? (at + (one_sample - 1)) / one_sample : 0;
    b->offset[n] = static_cast<double>(at - whole * one_sample) * (1.0 / one_sample);
    b->start[n] = start + whole;
  }
}

void place_in_turn(double step, double offset, int64_t start, batch *b) {
  position at = {offset, 0.0};
  for (int32_t n = 0; n <= batch_limit; ++n) {
    b->offset[n] = at.offset;
    b->start[n] = start + static_cast<int64_t>(at.start);
    at.offset += step;
    carry_whole_samples(&at);
  }
}

// Fills the batch and moves on; false when it is the last one, for want of samples or after `left` outputs.
bool find_positions(const fractional_run &run, int32_t left, batch *b, double *offset, int64_t *start) {
  if (is_exact(run.step, *offset))
    place_exactly(run.step, *offset, *start, b);
  else
    place_in_turn(run.step, *offset, *start, b);
  int32_t count = left < batch_limit ? left : batch_limit;
  while (count > 0 && b->start[count - 1] > run.newest) --count;
  b->count = count;
  if (count == left) {
    *offset = b->offset[count - 1] + run.step;
    *start = b->start[count - 1];
    return false;
  }
  *offset = b->offset[count];
  *start = b->start[count];
  return *start <= run.newest;
}

// Outputs that complete the last vector repeat the last one.
void find_phases(const kernel_rows &k, bool linear, batch *b) {
  const double phases = k.phases;
  for (int32_t n = 0; n < b->count; ++n) {
    const kernel_phase p(b->offset[n], phases, linear);
    b->row[n] = static_cast<uint32_t>(p.point);
    b->fraction[n] = p.fraction;
  }
  for (int32_t n = b->count; n % lane_count != 0; ++n) {
    b->start[n] = b->start[b->count - 1];
    b->row[n] = b->row[b->count - 1];
    b->fraction[n] = b->fraction[b->count - 1];
  }
}

// Taps is the kernel's number of taps where that is known when compiling, else 0.
template <int Width, int Taps>
void interpolate_in_vectors(const fractional_run &run, const kernel_rows &k, const batch &b, double *y) {
  constexpr int32_t outputs = lane_count / Width;
  const int32_t taps = Taps > 0 ? Taps : k.taps;
  const int32_t vectors = vectors_of(taps);
  const double *const block = run.block;
  const double *const rows = k.rows;
  const int64_t stride = row_stride(taps);
  const auto interpolated = [&](int32_t n) {
    return sums_of<Width, lane_count>([&](int32_t i) {
      return products_of<Width>(block + b.start[n + i] * Width, rows + b.row[n + i] * stride, b.fraction[n + i], taps,
                                vectors);
    });
  };
  int32_t n = 0;
  for (; n + outputs <= b.count; n += outputs) store(y + n * Width, interpolated(n));
  if (n == b.count) return;
  double last[lane_count];
  store(last, interpolated(n));
  for (int32_t i = 0; i < (b.count - n) * Width; ++i) y[n * Width + i] = last[i];
}

template <int Width>
void interpolate_batch(const fractional_run &run, const kernel_rows &k, const batch &b, double *y) {
  if constexpr (in_vectors) {
    if (k.taps == 13) return interpolate_in_vectors<Width, 13>(run, k, b, y);  // the converter's kernel
    if (k.taps >= lane_count) return interpolate_in_vectors<Width, 0>(run, k, b, y);
  }
  for (int32_t n = 0; n < b.count; ++n)
    for (int channel = 0; channel < Width; ++channel)
      y[n * Width + channel] = interpolate_in_fours<Width>(
          run.block + b.start[n] * Width + channel, k.rows + b.row[n] * row_stride(k.taps), b.fraction[n], k.taps);
}

void make_rows_ready(kernel_rows *k, const batch &b) {
  if (k->missing == 0) return;
  unsigned all = 1;
  for (int32_t n = 0; n < b.count; ++n) all &= k->ready[b.row[n]];
  if (all != 0) return;
  for (int32_t n = 0; n < b.count; ++n)
    if (k->ready[b.row[n]] == 0) make_ready(k, static_cast<int32_t>(b.row[n]));
}

int32_t interpolate(const fractional_run &run, kernel_rows &k, double *offset, int64_t *start) {
  int32_t made = 0;
  batch b;
  for (bool more = true; more;) {
    more = find_positions(run, run.most - made, &b, offset, start);
    find_phases(k, run.linear, &b);
    make_rows_ready(&k, b);
    double *y = run.y + static_cast<int64_t>(made) * run.width;
    if (run.width == 1)
      interpolate_batch<1>(run, k, b, y);
    else
      interpolate_batch<2>(run, k, b, y);
    made += b.count;
  }
  return made;
}

}  // namespace

namespace DSP_ISA {
extern const fractional_kernel_set fractional_set = {interpolate};
}

}  // namespace dsp::resample
