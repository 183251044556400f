#include "dsp/trace/trace_kernels.h"

#include "dsp/simd/vector.h"

namespace dsp::trace {
namespace DSP_ISA {
namespace {

// Elements up to the next cache line: wide stores that cross lines cost twice as much.
template <class T>
int64_t to_border(const T *x, int64_t n) {
  const auto count = static_cast<int64_t>((64 - reinterpret_cast<uintptr_t>(x) % 64) % 64 / sizeof(T));
  return count < n ? count : n;
}

template <class T>
void scale(T factor, T *x, int64_t n) {
  int64_t i = 0;
  for (const int64_t head = to_border(x, n); i < head; ++i) x[i] *= factor;
  for (; i < n; ++i) x[i] *= factor;
}

// Written with vectors: since `out` may be `in`, the compiler would assume that samples depend on each other.
void map(const double *in, int64_t n, double lo, double k, double *out, double out_lo) {
  int64_t i = 0;
  for (; i + lane_count <= n; i += lane_count) store(out + i, out_lo + k * (load<widest>(in + i) - lo));
  for (; i < n; ++i) out[i] = out_lo + k * (in[i] - lo);
}

void map_to_int(const double *in, int64_t n, double lo, double k, int32_t *out, double out_lo) {
  for (int64_t i = 0; i < n; ++i) {
    double v = out_lo + k * (in[i] - lo);
    v = v == v ? v : 0.0;
    v = v > -2147483648.0 ? v : -2147483648.0;
    v = v < 2147483647.0 ? v : 2147483647.0;
    out[i] = static_cast<int32_t>(v);
  }
}

// `better` compares vectors or numbers. NaN is never better.
template <class Better>
double best(const double *x, int64_t n, double than, Better better) {
  constexpr int side = 4;
  widest found[side];
  for (widest &f : found) f = than - widest{};
  int64_t i = 0;
  for (; i + side * lane_count <= n; i += side * lane_count) {
    for (int k = 0; k < side; ++k) {
      const widest v = load<widest>(x + i + k * lane_count);
      found[k] = better(v, found[k]) ? v : found[k];
    }
  }
  double value = than;
  for (const widest &f : found)
    for (int l = 0; l < lane_count; ++l) value = better(f[l], value) ? f[l] : value;
  for (; i < n; ++i) value = better(x[i], value) ? x[i] : value;
  return value;
}

double largest(const double *x, int64_t n, double than) {
  return best(x, n, than, [](auto a, auto b) { return a > b; });
}

double smallest(const double *x, int64_t n, double than) {
  return best(x, n, than, [](auto a, auto b) { return a < b; });
}

void line(double *x, int32_t n, double first, double step) {
  int32_t i = 0;
  for (const int64_t head = to_border(x, n); i < head; ++i) x[i] = first + step * i;
  for (; i < n; ++i) x[i] = first + step * i;
}

// For each k only two additions depend on the results for the k before.
bool slide(compensated_sum *s, const double *enters, const double *leaves, int32_t n, double divisor, double *out) {
  double step[slide_block], lost[slide_block], sum[slide_block + 1];
  int64_t ordinary = -1;
  for (int32_t k = 0; k < n; ++k) ordinary &= __builtin_fabs(enters[k]) <= 0x1p990 ? -1 : 0;
  if (ordinary == 0) return false;
  for (int32_t k = 0; k < n; ++k) {
    step[k] = enters[k] - leaves[k];
    lost[k] = sum_error(enters[k], -leaves[k], step[k]);
  }
  sum[0] = s->sum;
  for (int32_t k = 0; k < n; ++k) sum[k + 1] = sum[k] + step[k];
  for (int32_t k = 0; k < n; ++k) lost[k] += sum_error(sum[k], step[k], sum[k + 1]);
  for (int32_t k = 0; k < n; ++k) lost[k] = s->lost += lost[k];
  for (int32_t k = 0; k < n; ++k) step[k] = (sum[k + 1] + lost[k]) / divisor;
  for (int32_t k = 0; k < n; ++k) out[k] = step[k];
  s->sum = sum[n];
  return true;
}

double power(const dsp_complex &z) { return z.re * z.re + z.im * z.im; }

void magnitude(const dsp_complex *z, double *out, int64_t n) {
  for (int64_t i = 0; i < n; ++i) out[i] = __builtin_sqrt(power(z[i]));
}

void standing_wave_ratio(const dsp_complex *z, double *out, int64_t n) {
  for (int64_t i = 0; i < n; ++i) {
    const double r = __builtin_sqrt(power(z[i]));
    out[i] = r > 0.999998 ? 1000000.0 : (1.0 + r) / (1.0 - r);
  }
}

}  // namespace

extern const trace_kernel_set trace_set = {scale<double>, scale<float>, map,   map_to_int, largest,
                                           smallest,      line,         slide, magnitude,  standing_wave_ratio};

}  // namespace DSP_ISA
}  // namespace dsp::trace
