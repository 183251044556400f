#pragma GCC diagnostic ignored "-Wpsabi"  // vectors are passed between functions of this file only

#include "dsp/resample/repeating_kernels.h"

#include "dsp/resample/position.h"
#include "dsp/simd/vector.h"

namespace dsp::resample {
namespace {

static_assert(repeated_slots >= lane_count - 1);

typedef int64_t integers __attribute__((vector_size(lane_count * sizeof(int64_t))));

DSP_INLINE integers load_integers(const int64_t *p) {
  integers v;
  __builtin_memcpy(&v, p, sizeof v);
  return v;
}

DSP_INLINE void store_integers(int64_t *p, const integers &v) { __builtin_memcpy(p, &v, sizeof v); }

// Positions are counted in units of 2^-53 samples: all of them are whole, and no sum rounds.
constexpr int64_t one_sample = int64_t{1} << 53;
constexpr int key_bits = 40;

// Outputs of one pass, and the samples that their spans may reach over: vectors of samples reach further.
constexpr int32_t batch_limit = 128;
constexpr int32_t samples_limit = batch_limit + most_repeating_taps + 3 * lane_count;

struct batch {
  int32_t count;
  int64_t start[batch_limit + lane_count];  // of the span, from that of the first output on
  int64_t key[batch_limit + lane_count];    // of the phase
};

struct place {
  int64_t at;     // units from the span, in [-one_sample, 0]
  int64_t start;  // of the span
};

template <class T>
DSP_INLINE T whole_samples(const T &at) {
  const T rounding = at + (one_sample - 1);
  return (rounding > 0 ? rounding : rounding - rounding) >> 53;
}

place advanced(const place &p, int64_t distance) {
  const int64_t at = p.at + distance;
  const int64_t whole = whole_samples(at);
  return {at - whole * one_sample, p.start + whole};
}

// `outputs` are at most as many as slots.
DSP_INLINE int32_t slot_after(const repeating_weights &w, int32_t slot, int32_t outputs) {
  slot += outputs;
  return slot < w.slots ? slot : slot - w.slots;
}

// Returns whether the slots have the weights of all outputs.
bool place_outputs(const repeating_weights &w, int64_t at, int64_t stride, batch *b) {
  integers lane{};
  for (int i = 0; i < lane_count; ++i) lane[i] = i;
  integers position = at + lane * stride;
  integers unlike{};
  int32_t slot = w.next;
  for (int32_t n = 0; n < b->count; n += lane_count, position += lane_count * stride) {
    const integers whole = whole_samples(position);
    const integers key = ((whole << 53) - position + (int64_t{1} << (52 - key_bits))) >> (53 - key_bits);
    unlike |= key ^ load_integers(w.key + slot);
    store_integers(b->start + n, whole);
    store_integers(b->key + n, key);
    slot = slot_after(w, slot, lane_count);
  }
  int64_t any = 0;
  for (int i = 0; i < lane_count; ++i) any |= unlike[i];
  return any == 0;
}

void fill_slot(repeating_weights *w, int32_t slot, int64_t key) {
  const kernel_phase phase(static_cast<double>(key) * (-1.0 / (int64_t{1} << key_bits)), w->phases, true);
  const double *point = w->points + phase.point;
  for (int32_t i = 0; i < w->taps; ++i, point += w->phases)
    w->weights[i * w->stride + slot] = point[0] + phase.fraction * (point[1] - point[0]);
  w->key[slot] = key;
}

// Ends the batch before an output that needs other weights than one before it in the same slot.
void fill_slots(repeating_weights *w, batch *b) {
  int32_t slot = w->next;
  for (int32_t n = 0; n < b->count; ++n) {
    if (n >= w->slots && b->key[n] != b->key[n - w->slots]) b->count = n;
    for (int32_t s = slot; n < b->count && s < w->slots + repeated_slots; s += w->slots)
      if (w->key[s] != b->key[n]) fill_slot(w, s, b->key[n]);
    slot = slot_after(*w, slot, 1);
  }
}

// Samples x[start[i] + k] in lane i, where start[i] - start[0] < lane_count. Clang has no shuffle by a variable.
#if defined(__AVX512F__) && !defined(__clang__)
struct picked_samples {
  const double *x;
  integers from;
  widest low;
  widest high;

  DSP_INLINE picked_samples(const double *samples, const int64_t *start)
      : x(samples + start[0]), from(load_integers(start) - start[0]), low{}, high(load<widest>(x)) {}

  // k goes up from 0 by 1.
  DSP_INLINE widest pick(int32_t k) {
    if (k % lane_count == 0) {
      low = high;
      high = load<widest>(x + k + lane_count);
    }
    return __builtin_shuffle(low, high, from + k % lane_count);
  }
};
#elif defined(__AVX2__) && !defined(__clang__)
struct picked_samples {
  typedef int32_t halves __attribute__((vector_size(lane_count * sizeof(double))));

  const double *x;
  halves from;  // both halves of each double

  DSP_INLINE picked_samples(const double *samples, const int64_t *start) : x(samples + start[0]) {
    const integers twice = (load_integers(start) - start[0]) << 1;
    from = halves(twice | (twice + 1) << 32);
  }

  DSP_INLINE widest pick(int32_t k) const { return widest(__builtin_shuffle(halves(load<widest>(x + k)), from)); }
};
#else
struct picked_samples {
  const double *x[lane_count];

  DSP_INLINE picked_samples(const double *samples, const int64_t *start) {
    for (int i = 0; i < lane_count; ++i) x[i] = samples + start[i];
  }

  DSP_INLINE widest pick(int32_t k) const {
    widest v{};
    for (int i = 0; i < lane_count; ++i) v[i] = x[i][k];
    return v;
  }
};
#endif

// A vector of outputs of one channel.
template <int Taps>
DSP_INLINE widest weighted_sums(const double *x, const int64_t *start, const double *weights, int64_t stride,
                                int32_t count) {
  picked_samples samples(x, start);
  const int32_t taps = Taps > 0 ? Taps : count;
  carried<widest> sum;
  sum = widest{};
#pragma GCC unroll 16
  for (int32_t k = 0; k < taps; ++k) sum += load<widest>(weights + k * stride) * samples.pick(k);
  widest result{};
  if constexpr (has_vector_registers)
    result = sum;
  else
    for (int i = 0; i < lane_count; ++i) result[i] = sum[i];
  return result;
}

// Complex outputs from vectors of their parts.
DSP_INLINE void interleave(double *y, const widest &re, const widest &im) {
  for (int i = 0; i < lane_count; ++i) {
    y[2 * i] = re[i];
    y[2 * i + 1] = im[i];
  }
}

template <int Width, int Taps>
void weigh(const double *const (&x)[2], const repeating_weights &w, const batch &b, double *y) {
  int32_t slot = w.next;
  double last[Width * lane_count] = {};
  for (int32_t n = 0; n < b.count; n += lane_count) {
    double *to = n + lane_count <= b.count ? y + n * Width : last;
    const double *weights = w.weights + slot;
    const widest re = weighted_sums<Taps>(x[0], b.start + n, weights, w.stride, w.taps);
    if constexpr (Width == 1)
      store(to, re);
    else
      interleave(to, re, weighted_sums<Taps>(x[1], b.start + n, weights, w.stride, w.taps));
    if (to == last)
      for (int32_t i = 0; i < (b.count - n) * Width; ++i) y[n * Width + i] = last[i];
    slot = slot_after(w, slot, lane_count);
  }
}

// The samples of a batch, channel by channel, with zeros behind them as far as vectors reach.
template <int Width>
void copy_samples(const double *from, int64_t count, double (&x)[2][samples_limit]) {
  for (int channel = 0; channel < Width; ++channel) {
    for (int64_t i = 0; i < count; ++i) x[channel][i] = from[i * Width + channel];
    for (int64_t i = count; i < count + 3 * lane_count; ++i) x[channel][i] = 0.0;
  }
}

template <int Width>
void make_batch(const fractional_run &run, const repeating_weights &w, const place &first, const batch &b, double *y) {
  double copy[2][samples_limit];
  const double *x[2] = {run.block + first.start * Width, nullptr};
  const int64_t needed = b.start[b.count - 1] + w.taps;
  if (Width == 2 || first.start + needed + 3 * lane_count > run.newest + w.taps) {
    copy_samples<Width>(x[0], needed, copy);
    x[0] = copy[0];
    x[1] = copy[1];
  }
  if (w.taps == 13)  // the converter's kernel
    weigh<Width, 13>(x, w, b, y);
  else
    weigh<Width, 0>(x, w, b, y);
}

// Outputs whose spans begin no later than `newest`, as far as a batch can hold.
int64_t outputs_within(const place &p, int64_t newest, int64_t stride) {
  const int64_t reach = newest - p.start < 2 * batch_limit ? newest - p.start : 2 * batch_limit;
  return (reach * one_sample - p.at) / stride + 1;
}

int32_t smaller(int64_t a, int64_t b) { return static_cast<int32_t>(a < b ? a : b); }

int32_t interpolate(const fractional_run &run, repeating_weights &w, double *offset, int64_t *start) {
  const auto stride = static_cast<int64_t>(run.step * one_sample);
  place p = {static_cast<int64_t>(*offset * one_sample), *start};
  const auto leave = [&](int64_t at) {
    *offset = static_cast<double>(at) * (1.0 / one_sample);
    *start = p.start;
  };
  batch b;
  for (int32_t made = 0;;) {
    // Later batches begin at slots where vectors of weights are aligned.
    b.count =
        smaller(smaller(batch_limit - w.next % lane_count, run.most - made), outputs_within(p, run.newest, stride));
    if (!place_outputs(w, p.at, stride, &b)) fill_slots(&w, &b);
    double *y = run.y + static_cast<int64_t>(made) * run.width;
    if (run.width == 1)
      make_batch<1>(run, w, p, b, y);
    else
      make_batch<2>(run, w, p, b, y);
    made += b.count;
    w.next = (w.next + b.count) % w.slots;
    p = advanced(p, (b.count - 1) * stride);
    if (made == run.most) return leave(p.at + stride), made;
    p = advanced(p, stride);
    if (p.start > run.newest) return leave(p.at), made;
  }
}

}  // namespace

namespace DSP_ISA {
extern const repeating_kernel_set repeating_set = {interpolate};
}

}  // namespace dsp::resample
