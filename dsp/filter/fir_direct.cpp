#include "dsp/filter/fir_direct.h"

#include <algorithm>

namespace dsp::filter {
namespace {

// Where past and block meet, the samples that a few outputs need are put side by side, a bounded number at a time.
constexpr int64_t joined_outputs = 64;
constexpr int64_t joined_taps = 192;
constexpr int64_t joined_doubles = (joined_outputs + joined_taps) * 2;

// Calls kernel(first output, outputs, samples, first tap, taps) for at most `most` outputs at a time. Tap 0 is that of
// the oldest sample; an output gets its taps in this order, perhaps in several calls.
template <class Source, class Kernel>
void for_joined_spans(const Source &source, int64_t outputs, Kernel kernel, int64_t most = joined_outputs) {
  double span[joined_doubles];
  for (int64_t n = 0; n < outputs; n += most) {
    const int64_t count = std::min(most, outputs - n);
    const int64_t taps = source.taps_from(n);
    for (int64_t tap = 0; tap < taps; tap += joined_taps) {
      const int64_t some = std::min(joined_taps, taps - tap);
      source.copy(n + tap, count + some - 1, span);
      kernel(n, count, static_cast<const double *>(span), tap, some);
    }
  }
}

// All outputs of a block. Samples are joined for a short block as a whole, else for the outputs that reach into the
// past, rounded up so that the others start on whole tiles.
template <class Kernel>
void for_block(const past_and_block &x, Kernel kernel) {
  if (x.past_length < joined_taps && (x.past_length + x.block_length) * x.width <= joined_doubles)
    return for_joined_spans(x, x.block_length, kernel, x.block_length);
  const int64_t tiles = (x.past_length + joined_outputs - 1) / joined_outputs;
  const int64_t joined = std::min(x.block_length, tiles * joined_outputs);
  for_joined_spans(x, joined, kernel);
  if (joined < x.block_length)
    kernel(joined, x.block_length - joined, x.block + (joined - x.past_length) * x.width, 0, x.past_length + 1);
}

// Real samples, complex taps: the two parts apart, then woven together.
void weave_complex_taps(double *y, const double *x, int64_t count, const double *h, int64_t taps, bool continued) {
  constexpr int64_t most = 64;
  double parts[2][most];
  for (int64_t n = 0; n < count; n += most, y += 2 * most) {
    const int64_t some = std::min(most, count - n);
    for (int part = 0; part < 2; ++part) {
      for (int64_t j = 0; continued && j < some; ++j) parts[part][j] = y[2 * j + part];
      fir_kernels().real_taps({parts[part], x + n, some, 1}, h + part, 2, taps, continued);
    }
    for (int64_t j = 0; j < some; ++j) {
      y[2 * j] = parts[0][j];
      y[2 * j + 1] = parts[1][j];
    }
  }
}

}  // namespace

void filter_direct(const past_and_block &x, const dsp_vec &h, double *y) {
  const bool complex_taps = h.is_complex != 0;
  const int32_t tap_width = complex_taps ? 2 : 1;
  const int32_t out_width = std::max(x.width, tap_width);
  for_block(x, [&](int64_t n, int64_t count, const double *span, int64_t tap, int64_t taps) {
    const double *newest = h.data + (x.past_length - tap) * tap_width;
    double *out = y + n * out_width;
    if (!complex_taps)
      fir_kernels().real_taps({out, span, count * x.width, x.width}, newest, 1, taps, tap > 0);
    else if (x.width == 2)
      fir_kernels().complex_taps({out, span, 2 * count, 2}, newest, taps, tap > 0);
    else
      weave_complex_taps(out, span, count, newest, taps, tap > 0);
  });
}

void filter_folded(const past_and_block &x, const folded_filter &h, double *y) {
  static_assert(folded_limit <= joined_taps, "a folded filter takes its taps at once");
  for_block(x, [&](int64_t n, int64_t count, const double *span, int64_t, int64_t) {
    fir_kernels().folded_taps({y + n * x.width, span, count * x.width, x.width}, h);
  });
}

namespace {

// Corrects the first outputs of a circular convolution. They need the past that had no room in the transform; the
// convolution took the newest samples of the block instead. The difference of the two is what they lack.
struct displaced_past {
  const past_and_block &x;
  int64_t length;          // past samples without room
  const double *stand_in;  // the samples of the block that were taken instead

  int64_t taps_from(int64_t n) const { return length - n; }

  void copy(int64_t first, int64_t count, double *to) const {
    x.copy(first, count, to);
    const int64_t filled = std::clamp<int64_t>(length - first, 0, count) * x.width;
    for (int64_t i = 0; i < filled; ++i) to[i] -= stand_in[first * x.width + i];
    std::fill(to + filled, to + count * x.width, 0.0);
  }
};

}  // namespace

void unwrap_past(const past_and_block &x, int64_t size, const dsp_vec &h, double *y) {
  const int64_t displaced = x.past_length - (size - x.block_length);
  if (displaced <= 0) return;
  const displaced_past past{x, displaced, x.block + (size - x.past_length) * x.width};
  for_joined_spans(past, displaced, [&](int64_t n, int64_t count, const double *span, int64_t tap, int64_t taps) {
    fir_kernels().real_taps({y + n * x.width, span, count * x.width, x.width}, h.data + x.past_length - tap, 1, taps,
                            true);
  });
}

}  // namespace dsp::filter
