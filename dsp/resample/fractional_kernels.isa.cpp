#pragma GCC diagnostic ignored "-Wpsabi"  // four lanes are passed between functions of this file only

#include "dsp/resample/fractional_kernels.h"

#include "dsp/resample/position.h"
#include "dsp/simd/vector.h"

namespace dsp::resample {
namespace {

void fill_group(const kernel_rows &k, std::int32_t group) {
  const std::int32_t first = group * points_in_group;
  const std::int32_t count = k.phases - first < points_in_group ? k.phases - first + 1 : rows_in_group;
  const std::int64_t stride = row_stride(k.taps);
  double *rows = k.rows + group * rows_in_group * stride;
  for (std::int64_t i = 0; i < k.taps; ++i) {
    const double *from = k.points + first + i * k.phases;
    for (std::int64_t j = 0; j < count; ++j) rows[j * stride + i] = from[j];
  }
  k.filled[group] = 1;
}

// The taps of one channel of an output, weighted: in four lanes as far as whole fours go.
struct partial_sums {
  lanes<4> fours;
  double rest;
};

template <int Width>
inline partial_sums weigh(const double *x, const double *row, double fraction, std::int32_t taps) {
  partial_sums sum = {};
  const double *next = row + row_stride(taps);
  const std::int32_t quads = taps / 4 * 4;
  const auto four = [=](std::int32_t i) {
    const lanes<4> a = load<lanes<4>>(row + i);
    const lanes<4> w = a + fraction * (load<lanes<4>>(next + i) - a);
    const double *z = x + i * Width;
    if constexpr (Width == 1)
      return w * load<lanes<4>>(z);
    else
      return w * lanes<4>{z[0], z[Width], z[2 * Width], z[3 * Width]};
  };
  if (quads > 0) sum.fours = four(0);  // a zero of either sign will do: the rest begins with one of sign +
  for (std::int32_t i = 4; i < quads; i += 4) sum.fours += four(i);
  for (std::int32_t i = quads; i < taps; ++i) sum.rest += (row[i] + fraction * (next[i] - row[i])) * x[i * Width];
  return sum;
}

inline double total(const partial_sums &s) { return ((s.fours[0] + s.fours[1]) + (s.fours[2] + s.fours[3])) + s.rest; }

// The totals of four outputs, added in the same order.
[[maybe_unused]] inline lanes<4> total(const partial_sums &a, const partial_sums &b, const partial_sums &c,
                                       const partial_sums &d) {
  const lanes<4> ab =
      __builtin_shufflevector(a.fours, b.fours, 0, 4, 2, 6) + __builtin_shufflevector(a.fours, b.fours, 1, 5, 3, 7);
  const lanes<4> cd =
      __builtin_shufflevector(c.fours, d.fours, 0, 4, 2, 6) + __builtin_shufflevector(c.fours, d.fours, 1, 5, 3, 7);
  return __builtin_shufflevector(ab, cd, 0, 1, 4, 5) + __builtin_shufflevector(ab, cd, 2, 3, 6, 7) +
         lanes<4>{a.rest, b.rest, c.rest, d.rest};
}

// Where a batch of outputs, and the one after it, lie: found before anything is weighed.
constexpr std::int32_t batch_limit = 64;
struct batch {
  double offset[batch_limit + 1];
  std::int64_t start[batch_limit + 1];
  std::uint32_t group[batch_limit];
  std::uint32_t row[batch_limit];  // its first double in kernel_rows::rows
  double fraction[batch_limit];
  std::int32_t count;
};

constexpr std::int64_t one_sample = std::int64_t{1} << 53;

// With steps of the converter's size, positions are whole multiples of 2^-53 throughout and no sum of them rounds.
bool is_exact(double step, double offset) {
  const double scaled = offset * one_sample;
  return step >= 0.5 && step < 1.0 && static_cast<double>(static_cast<std::int64_t>(scaled)) == scaled;
}

// Then each output's position follows from the first one's: none waits for another.
void place_exactly(double step, double offset, std::int64_t start, batch *b) {
  const auto first = static_cast<std::int64_t>(offset * one_sample);
  const auto stride = static_cast<std::int64_t>(step * one_sample);
  for (std::int64_t n = 0; n <= batch_limit; ++n) {
    const std::int64_t at = first + n * stride;
    const std::int64_t whole = at > 0 ? (at + (one_sample - 1)) / one_sample : 0;
    b->offset[n] = static_cast<double>(at - whole * one_sample) * (1.0 / one_sample);
    b->start[n] = start + whole;
  }
}

void place_in_turn(double step, double offset, std::int64_t start, batch *b) {
  position at = {offset, 0.0};
  for (std::int32_t n = 0; n <= batch_limit; ++n) {
    b->offset[n] = at.offset;
    b->start[n] = start + static_cast<std::int64_t>(at.start);
    at.offset += step;
    settle(&at);
  }
}

// Fills the batch and moves on; false when it is the last one, for want of samples or after `left` outputs.
bool find_positions(const fractional_run &run, std::int32_t left, batch *b, double *offset, std::int64_t *start) {
  if (is_exact(run.step, *offset))
    place_exactly(run.step, *offset, *start, b);
  else
    place_in_turn(run.step, *offset, *start, b);
  std::int32_t count = left < batch_limit ? left : batch_limit;
  while (b->start[count - 1] > run.newest) --count;
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

void find_phases(const kernel_rows &k, bool linear, batch *b) {
  const double phases = k.phases;
  const auto stride = static_cast<std::uint32_t>(row_stride(k.taps));
  for (std::int32_t n = 0; n < b->count; ++n) {
    const kernel_phase p(b->offset[n], phases, linear);
    const auto point = static_cast<std::uint32_t>(p.point);
    b->group[n] = point / points_in_group;
    b->row[n] = (point + point / points_in_group) * stride;
    b->fraction[n] = p.fraction;
  }
}

// Taps is the kernel's number of taps where that is known when compiling, else 0.
template <int Width, int Taps>
void weigh_batch(const fractional_run &run, const kernel_rows &k, const batch &b, double *y) {
  const std::int32_t taps = Taps > 0 ? Taps : k.taps;
  const double *const block = run.block;
  const double *const rows = k.rows;
  std::int32_t n = 0;
  if constexpr (Width == 1 && lane_count >= 4) {
    const auto sums = [&](std::int32_t i) {
      return weigh<1>(block + b.start[i], rows + b.row[i], b.fraction[i], taps);
    };
    for (; n + 4 <= b.count; n += 4) store(y + n, total(sums(n), sums(n + 1), sums(n + 2), sums(n + 3)));
  }
  for (; n < b.count; ++n)
    for (int channel = 0; channel < Width; ++channel)
      y[n * Width + channel] =
          total(weigh<Width>(block + b.start[n] * Width + channel, rows + b.row[n], b.fraction[n], taps));
}

// The taps of the converter's kernel, and any others.
void weigh_real(const fractional_run &run, const kernel_rows &k, const batch &b, double *y) {
  if (k.taps == 13)
    weigh_batch<1, 13>(run, k, b, y);
  else
    weigh_batch<1, 0>(run, k, b, y);
}

void fill_groups(const kernel_rows &k, const batch &b) {
  unsigned all = 1;
  for (std::int32_t n = 0; n < b.count; ++n) all &= k.filled[b.group[n]];
  if (all != 0) return;
  for (std::int32_t n = 0; n < b.count; ++n)
    if (k.filled[b.group[n]] == 0) fill_group(k, static_cast<std::int32_t>(b.group[n]));
}

std::int32_t interpolate(const fractional_run &run, const kernel_rows &k, double *offset, std::int64_t *start) {
  std::int32_t made = 0;
  batch b;
  for (bool more = true; more;) {
    more = find_positions(run, run.most - made, &b, offset, start);
    find_phases(k, run.linear, &b);
    fill_groups(k, b);
    double *y = run.y + static_cast<std::int64_t>(made) * run.width;
    if (run.width == 1)
      weigh_real(run, k, b, y);
    else
      weigh_batch<2, 0>(run, k, b, y);
    made += b.count;
  }
  return made;
}

}  // namespace

namespace DSP_ISA {
extern const fractional_kernel_set fractional_set = {interpolate};
}

}  // namespace dsp::resample
