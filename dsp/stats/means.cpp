// Arithmetic, geometric and harmonic mean.
#include <cmath>

#include "dsp/dsp.h"
#include "dsp/stats/blocked_sum.h"
#include "dsp/stats/input.h"
#include "dsp/stats/result.h"
#include "dsp/stats/saturated_powers.h"
#include "dsp/stats/sum_kernels.h"

namespace dsp::stats {
namespace {

struct reciprocal_and_zeros {
  static constexpr int sums = 2;
  void operator()(const widest &x, int, widest *term) const {
    term[0] = 1.0 / x;
    term[1] = x == 0.0 ? broadcast(1.0) : widest{};
  }
};

// conj(z) / |z|^2 with z's parts saturated; 1e100 stands for 1/0.
struct complex_reciprocal {
  static constexpr int sums = 1;
  void operator()(const widest &z, int, widest *term) const {
    const powers p = saturated_powers()(z);
    const widest square = p.square + swap_pairs(p.square);
    const widest factor = square <= 0.0 ? broadcast(overflow_bound) : 1.0 / square;
    term[0] = p.d * alternating(1.0, -1.0) * factor;
  }
};

double real_geometric_mean(const stats_input &x) {
  double product = 1.0;
  for (int64_t i = 0; i < x.n; ++i) product *= x.data[i];
  if (product < smallest_normal) return 0.0;
  return std::exp(std::log(product) / static_cast<double>(x.n));
}

// The principal root.
dsp_complex complex_geometric_mean(const stats_input &x) {
  dsp_complex product = {1.0, 0.0};
  for (int64_t i = 0; i < x.n; ++i) {
    const double re = x.data[2 * i];
    const double im = x.data[2 * i + 1];
    product = {product.re * re - product.im * im, product.re * im + product.im * re};
  }
  const double square = product.re * product.re + product.im * product.im;
  if (square < smallest_normal) return {0.0, 0.0};
  const auto n = static_cast<double>(x.n);
  const double r = std::exp(std::log(square) / (2.0 * n));
  const double angle = std::atan2(product.im, product.re) / n;
  return {r * std::cos(angle), r * std::sin(angle)};
}

double real_harmonic_mean(const stats_input &x) {
  double total[2];
  blocked_sum(x.data, x.n, 1, reciprocal_and_zeros(), total);
  if (total[1] != 0.0) return 0.0;
  return total[0] != 0.0 ? static_cast<double>(x.n) / total[0] : overflow_bound;
}

dsp_complex complex_harmonic_mean(const stats_input &x) {
  double total[2];
  blocked_sum(x.data, x.n, 2, complex_reciprocal(), total);
  const double square = total[0] * total[0] + total[1] * total[1];
  const auto n = static_cast<double>(x.n);
  if (square > 0.0) return {n * total[0] / square, -n * total[1] / square};
  return {n * overflow_bound * total[0], -n * overflow_bound * total[1]};
}

template <class Real, class Complex>
int32_t put_mean(const stats_input &x, dsp_vec *out, Real real, Complex complex) {
  if (x.n < 1) return put_sample(out, x.is_complex, 0.0, 0.0);
  if (!x.is_complex) return put_number(out, real(x));
  const dsp_complex mean = complex(x);
  return put_sample(out, true, mean.re, mean.im);
}

}  // namespace
}  // namespace dsp::stats

using namespace dsp;
using namespace dsp::stats;

int32_t dsps_mean(const dsp_vec *in, dsp_vec *out) {
  const stats_input x(*in);
  const double n = x.n > 0 ? static_cast<double>(x.n) : 1.0;
  double total[2] = {};
  sum_kernels().values(x.data, x.n, x.width, total);
  return put_sample(out, x.is_complex, total[0] / n, total[1] / n);
}

int32_t dsps_gmean(const dsp_vec *in, dsp_vec *out) {
  return put_mean(stats_input(*in), out, real_geometric_mean, complex_geometric_mean);
}

int32_t dsps_hmean(const dsp_vec *in, dsp_vec *out) {
  return put_mean(stats_input(*in), out, real_harmonic_mean, complex_harmonic_mean);
}
