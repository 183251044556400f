#include "dsp/filter/fir_kernels.h"

#include "dsp/simd/vector.h"

namespace dsp::filter {
namespace {

// Samples are read at every address. Wider vectors would nearly all straddle two cache lines, and lose.
constexpr int span_lanes = lane_count < 4 ? lane_count : 4;
using span = lanes<span_lanes>;

// Vectors of outputs side by side: enough to hide the adder's latency, as many as find registers.
constexpr int wide = has_vector_registers ? 8 : 4;

// Taps, oldest sample first. add() adds tap i to the accumulators of U vectors of outputs.
struct plain_taps {
  const double *h;
  std::int32_t stride;
  std::int32_t step;

  template <class V, int U>
  void add(carried<V> *acc, const double *x, std::int64_t i) const {
    const double tap = h[-i * stride];
    const double *at = x + i * step;
    for (int u = 0; u < U; ++u) acc[u] += tap * load<V>(at + u * width_of<V>);
  }
  template <class V, int U>
  void finish(carried<V> *, const double *) const {}
};

struct turning_taps {
  const double *h;

  template <class V, int U>
  void add(carried<V> *acc, const double *x, std::int64_t i) const {
    const double re = h[-2 * i];
    V im = h[-2 * i + 1] - V{};
    for (int k = 0; k < width_of<V>; k += 2) im[k] = -im[k];
    const double *at = x + 2 * i;
    for (int u = 0; u < U; ++u) {
      const V z = load<V>(at + u * width_of<V>);
      acc[u] += re * z + im * swap_pairs(z);
    }
  }
  template <class V, int U>
  void finish(carried<V> *, const double *) const {}
};

// `Samples` says where sample i of the span of output 0 lies.
template <class Samples, bool Anti>
struct mirrored_taps {
  folded_filter filter;
  Samples samples;

  template <class V, int U>
  void add(carried<V> *acc, const double *x, std::int64_t i) const {
    const double tap = filter.half[i];
    const double *newer = samples.at(x, filter.length() - 1 - i);
    const double *older = samples.at(x, i);
    for (int u = 0; u < U; ++u) {
      const V a = load<V>(newer + u * width_of<V>);
      const V b = load<V>(older + u * width_of<V>);
      acc[u] += tap * (Anti ? a - b : a + b);
    }
  }
  template <class V, int U>
  void finish(carried<V> *acc, const double *x) const {
    if (!filter.has_centre) return;
    const double *at = samples.at(x, filter.pairs);
    for (int u = 0; u < U; ++u) acc[u] += filter.half[filter.pairs] * load<V>(at + u * width_of<V>);
  }
};

struct contiguous {
  std::int32_t step;
  const double *at(const double *x, std::int64_t i) const { return x + i * step; }
};

struct alternating {
  std::int32_t step;
  std::int64_t even_to_odd;
  const double *at(const double *x, std::int64_t i) const { return x + (i & 1) * even_to_odd + (i >> 1) * step; }
};

template <class V, int U, class Taps>
inline void tile(double *y, const double *x, const Taps &taps, std::int64_t count, bool continued) {
  carried<V> acc[U];
  for (int u = 0; u < U; ++u) acc[u] = continued ? load<V>(y + u * width_of<V>) : V{};
  for (std::int64_t i = 0; i < count; ++i) taps.template add<V, U>(acc, x, i);
  taps.template finish<V, U>(acc, x);
  for (int u = 0; u < U; ++u) store(y + u * width_of<V>, acc[u]);
}

// Wide tiles, then single vectors, then what is left in the narrowest lane type that holds a sample. The last vector
// may begin among outputs that are done: it makes them again.
template <class Narrow, class Taps>
void filter(const fir_run &run, const Taps &taps, std::int64_t count, bool continued) {
  constexpr std::int64_t broad = wide * span_lanes;
  std::int64_t j = 0;
  for (; j + broad <= run.count; j += broad) tile<span, wide>(run.y + j, run.x + j, taps, count, continued);
  for (; j + span_lanes <= run.count; j += span_lanes) tile<span, 1>(run.y + j, run.x + j, taps, count, continued);
  if (j < run.count && run.count >= span_lanes && !continued) {
    j = run.count - span_lanes;
    tile<span, 1>(run.y + j, run.x + j, taps, count, continued);
    return;
  }
  for (; j < run.count; j += width_of<Narrow>) tile<Narrow, 1>(run.y + j, run.x + j, taps, count, continued);
}

void real_taps(const fir_run &run, const double *h, std::int32_t stride, std::int64_t taps, bool continued) {
  filter<double>(run, plain_taps{h, stride, run.step}, taps, continued);
}

void complex_taps(const fir_run &run, const double *h, std::int64_t taps, bool continued) {
  filter<lanes<2>>(run, turning_taps{h}, taps, continued);
}

void folded_taps(const fir_run &run, const folded_filter &f) {
  if (f.anti)
    filter<double>(run, mirrored_taps<contiguous, true>{f, {run.step}}, f.pairs, false);
  else
    filter<double>(run, mirrored_taps<contiguous, false>{f, {run.step}}, f.pairs, false);
}

void halved_taps(const fir_run &run, const double *odd, const folded_filter &f) {
  filter<double>(run, mirrored_taps<alternating, false>{f, {run.step, odd - run.x}}, f.pairs, false);
}

bool within(const double *x, std::int64_t count, double bound) {
  std::int64_t beyond = 0;
  for (std::int64_t i = 0; i < count; ++i) beyond += __builtin_fabs(x[i]) <= bound ? 0 : 1;
  return beyond == 0;
}

}  // namespace

namespace DSP_ISA {
extern const fir_kernel_set fir_set = {real_taps, complex_taps, folded_taps, halved_taps, within};
}

}  // namespace dsp::filter
