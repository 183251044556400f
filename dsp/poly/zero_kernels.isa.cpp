#include "dsp/poly/zero_kernels.h"

#include "dsp/simd/vector.h"

namespace dsp::poly {
namespace DSP_ISA {
namespace {

typedef widest V;

// W vectors side by side hide the latency of the arithmetic.
template <int W>
struct horner_sums {
  V re[W], im[W];              // value
  V slope_re[W], slope_im[W];  // its derivative
  V terms[W];
};

template <int W>
DSP_INLINE void evaluate_vectors(const coefficient_run &c, point_block *b, int at) {
  horner_sums<W> s = {};
  V re[W], im[W], modulus[W];
  for (int v = 0; v < W; ++v) {
    re[v] = load<V>(b->re + at + v * lane_count);
    im[v] = load<V>(b->im + at + v * lane_count);
    modulus[v] = load<V>(b->modulus + at + v * lane_count);
  }
  for (int64_t k = 0, i = 0; k <= c.degree; ++k, i += c.step) {
    for (int v = 0; v < W; ++v) {
      const V slope_re = s.slope_re[v] * re[v] - s.slope_im[v] * im[v] + s.re[v];
      s.slope_im[v] = s.slope_re[v] * im[v] + s.slope_im[v] * re[v] + s.im[v];
      s.slope_re[v] = slope_re;
      const V value_re = s.re[v] * re[v] - s.im[v] * im[v] + c.re[i];
      s.im[v] = s.re[v] * im[v] + s.im[v] * re[v] + c.im[i];
      s.re[v] = value_re;
      s.terms[v] = s.terms[v] * modulus[v] + c.modulus[i];
    }
  }
  for (int v = 0; v < W; ++v) {
    store(b->value_re + at + v * lane_count, s.re[v]);
    store(b->value_im + at + v * lane_count, s.im[v]);
    store(b->slope_re + at + v * lane_count, s.slope_re[v]);
    store(b->slope_im + at + v * lane_count, s.slope_im[v]);
    store(b->terms + at + v * lane_count, s.terms[v]);
  }
}

void evaluate(const coefficient_run &c, point_block *b, int count) {
  int at = 0;
  for (; at + lane_count < count; at += 2 * lane_count) evaluate_vectors<2>(c, b, at);
  if (at < count) evaluate_vectors<1>(c, b, at);
}

// Splits a number into two of half the digits, whose products are exact. (Dekker 1971.)
struct halves {
  V high, low;
  explicit halves(const V &x) {
    const V spread = x * 134217729.0;  // 2^27 + 1
    high = spread - (spread - x);
    low = x - high;
  }
};

DSP_INLINE V product_error(const halves &a, const halves &b, const V &product) {
  return a.low * b.low - (((product - a.high * b.high) - a.low * b.high) - a.high * b.low);
}

// Horner's rule that carries the polynomial of its own rounding errors along. (Graillat and Menissier-Morain, Inform.
// and Comput. 216, 2012.)
void evaluate_twofold(const coefficient_run &c, point_block *b, int count) {
  for (int at = 0; at < count; at += lane_count) {
    const V x = load<V>(b->re + at), y = load<V>(b->im + at);
    const halves x_halves(x), y_halves(y);
    V re = {}, im = {}, error_re = {}, error_im = {};
    for (int64_t k = 0, i = 0; k <= c.degree; ++k, i += c.step) {
      const halves re_halves(re), im_halves(im);
      const V rx = re * x, iy = -im * y, ry = re * y, ix = im * x;
      const V product_re = rx + iy, product_im = ry + ix;
      const V next_re = product_re + c.re[i], next_im = product_im + c.im[i];
      const V lost_re = product_error(re_halves, x_halves, rx) - product_error(im_halves, y_halves, -iy) +
                        sum_error(rx, iy, product_re) + sum_error(product_re, broadcast(c.re[i]), next_re);
      const V lost_im = product_error(re_halves, y_halves, ry) + product_error(im_halves, x_halves, ix) +
                        sum_error(ry, ix, product_im) + sum_error(product_im, broadcast(c.im[i]), next_im);
      const V carried_re = error_re * x - error_im * y + lost_re;
      error_im = error_re * y + error_im * x + lost_im;
      error_re = carried_re;
      re = next_re;
      im = next_im;
    }
    store(b->value_re + at, re + error_re);
    store(b->value_im + at, im + error_im);
  }
}

template <int W>
DSP_INLINE void add_inverse_distances_vectors(const double *x_re, const double *x_im, int64_t n, point_block *b,
                                              int at) {
  V re[W], im[W], sum_re[W] = {}, sum_im[W] = {};
  for (int v = 0; v < W; ++v) {
    re[v] = load<V>(b->at_re + at + v * lane_count);
    im[v] = load<V>(b->at_im + at + v * lane_count);
  }
  for (int64_t j = 0; j < n; ++j) {
    for (int v = 0; v < W; ++v) {
      const V d_re = re[v] - x_re[j];
      const V d_im = im[v] - x_im[j];
      const V square = d_re * d_re + d_im * d_im;
      const V inverse = square != 0.0 ? 1.0 / square : V{};
      sum_re[v] += d_re * inverse;
      sum_im[v] -= d_im * inverse;
    }
  }
  for (int v = 0; v < W; ++v) {
    store(b->aberth_re + at + v * lane_count, sum_re[v]);
    store(b->aberth_im + at + v * lane_count, sum_im[v]);
  }
}

void add_inverse_distances(const double *x_re, const double *x_im, int64_t n, point_block *b, int count) {
  int at = 0;
  for (; at + lane_count < count; at += 2 * lane_count) add_inverse_distances_vectors<2>(x_re, x_im, n, b, at);
  if (at < count) add_inverse_distances_vectors<1>(x_re, x_im, n, b, at);
}

}  // namespace

extern const zero_kernel_set zero_set = {evaluate, evaluate_twofold, add_inverse_distances};

}  // namespace DSP_ISA
}  // namespace dsp::poly
