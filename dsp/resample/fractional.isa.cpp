#include "dsp/resample/fractional_kernels.h"
#include "dsp/resample/position.h"

namespace dsp {
namespace {

typedef double quad __attribute__((vector_size(4 * sizeof(double))));

void fill_group(const kernel_rows &k, std::int32_t group) {
  const std::int32_t first = group * points_in_group;
  const std::int32_t count = k.phases - first < points_in_group ? k.phases - first + 1 : rows_in_group;
  double *rows = k.rows + static_cast<std::int64_t>(group) * rows_in_group * k.taps;
  for (std::int64_t i = 0; i < k.taps; ++i) {
    const double *from = k.points + first + i * k.phases;
    for (std::int64_t j = 0; j < count; ++j) rows[j * k.taps + i] = from[j];
  }
  k.filled[group] = 1;
}

// Weighs Width interleaved channels; sums run in four lanes and end in ((0 + 1) + (2 + 3)) + the taps left over.
template <int Width>
inline void weigh(const double *x, const double *row, const double *next, double fraction, std::int32_t taps,
                  double *y) {
  quad sum[Width] = {};
  double rest[Width] = {};
  const std::int32_t quads = taps / 4 * 4;
  for (std::int32_t i = 0; i < quads; i += 4) {
    quad a, b;
    __builtin_memcpy(&a, row + i, sizeof a);
    __builtin_memcpy(&b, next + i, sizeof b);
    const quad w = a + fraction * (b - a);
    for (int channel = 0; channel < Width; ++channel) {
      quad z;
      if constexpr (Width == 1)
        __builtin_memcpy(&z, x + i, sizeof z);
      else
        z = quad{x[2 * i + channel], x[2 * i + 2 + channel], x[2 * i + 4 + channel], x[2 * i + 6 + channel]};
      sum[channel] += w * z;
    }
  }
  for (std::int32_t i = quads; i < taps; ++i) {
    const double w = row[i] + fraction * (next[i] - row[i]);
    for (int channel = 0; channel < Width; ++channel) rest[channel] += w * x[Width * i + channel];
  }
  for (int channel = 0; channel < Width; ++channel) {
    const quad &s = sum[channel];
    y[channel] = ((s[0] + s[1]) + (s[2] + s[3])) + rest[channel];
  }
}

// Taps is the kernel's number of taps where that is known when compiling, else 0.
template <int Width, int Taps>
std::int32_t interpolate(const fractional_run &run, const kernel_rows &kernel, double *offset, std::int64_t *start) {
  const kernel_rows k = kernel;
  const std::int32_t taps = Taps > 0 ? Taps : k.taps;
  const double step = run.step;
  const auto whole = static_cast<std::int32_t>(step);  // a step passes so many samples, or one more
  const double whole_step = whole;
  const bool linear = run.linear;
  double now = *offset;
  double *y = run.y;
  double *const end = y + static_cast<std::int64_t>(run.most) * Width;
  std::int64_t at = *start;
  const std::int64_t newest = run.newest;
  const double *const block = run.block;
  for (;;) {
    const kernel_phase phase(now, k.phases, linear);
    const std::uint32_t point = static_cast<std::uint32_t>(phase.point);
    const std::uint32_t group = point / points_in_group;
    if (k.filled[group] == 0) fill_group(k, static_cast<std::int32_t>(group));
    const double *row = k.rows + static_cast<std::int64_t>(point + group) * taps;
    weigh<Width>(block + at * Width, row, row + taps, phase.fraction, taps, y);
    now += step;
    y += Width;
    if (y == end) break;
    // Rounds the offset up without looking at more than one sample.
    const double rest = now - whole_step;
    if (rest <= -1.0) {  // only after an offset of just -1
      position p = {now, 0.0};
      settle(&p);
      now = p.offset;
      at += static_cast<std::int64_t>(p.start);
    } else {
      const bool one_more = rest > 0.0;
      const double less = rest - 1.0;
      now = one_more ? less : rest;
      at += whole + (one_more ? 1 : 0);
    }
    if (at > newest) break;
  }
  *offset = now;
  *start = at;
  return static_cast<std::int32_t>((y - run.y) / Width);
}

// The taps of the built-in kernels, and any others.
template <int Width>
std::int32_t interpolate_taps(const fractional_run &run, const kernel_rows &k, double *offset, std::int64_t *start) {
  switch (k.taps) {
    case 8:
      return interpolate<Width, 8>(run, k, offset, start);
    case 10:
      return interpolate<Width, 10>(run, k, offset, start);
    case 13:
      return interpolate<Width, 13>(run, k, offset, start);
    default:
      return interpolate<Width, 0>(run, k, offset, start);
  }
}

}  // namespace

namespace DSP_ISA {
extern const fractional_kernels fractional_kernel_table = {interpolate_taps<1>, interpolate_taps<2>};
}

}  // namespace dsp
