#include "dsp/interp/interp_kernels.h"

#include "dsp/simd/vector.h"

namespace dsp::interp {
namespace DSP_ISA {
namespace {

// True when a comparison holds in any lane.
template <class Mask>
bool any(const Mask &m) {
  if constexpr (sizeof m == 8 * 8) {
    const auto four = __builtin_shufflevector(m, m, 0, 1, 2, 3) | __builtin_shufflevector(m, m, 4, 5, 6, 7);
    return any(four);
  } else if constexpr (sizeof m == 4 * 8) {
    const auto two = __builtin_shufflevector(m, m, 0, 1) | __builtin_shufflevector(m, m, 2, 3);
    return any(two);
  } else {
    return (m[0] | m[1]) != 0;
  }
}

// x0, y0, x1, y1, ...
template <class V>
void store_in_turn(double *to, const V &x, const V &y) {
  constexpr int n = sizeof x / sizeof(double);
  if constexpr (n == 8) {
    store(to, __builtin_shufflevector(x, y, 0, 8, 1, 9, 2, 10, 3, 11));
    store(to + n, __builtin_shufflevector(x, y, 4, 12, 5, 13, 6, 14, 7, 15));
  } else if constexpr (n == 4) {
    store(to, __builtin_shufflevector(x, y, 0, 4, 1, 5));
    store(to + n, __builtin_shufflevector(x, y, 2, 6, 3, 7));
  } else {
    store(to, __builtin_shufflevector(x, y, 0, 2));
    store(to + n, __builtin_shufflevector(x, y, 1, 3));
  }
}

// The pieces of an interpolating function. Each takes one abscissa or a vector of them.

struct constant {
  double value;
  template <class V>
  V operator()(const V &) const {
    return value - V{};
  }
};

struct line {
  double x0, x1, y0, y1, h;
  line(const nodes &f, int32_t j) : x0(f.x[j - 1]), x1(f.x[j]), y0(f.y[j - 1]), y1(f.y[j]), h(x1 - x0) {}
  template <class V>
  V operator()(const V &t) const {
    return ((x1 - t) * y0 + (t - x0) * y1) / h;
  }
};

// a (y0/h + (a^2 - h^2) d0/6h) + b (y1/h + (b^2 - h^2) d1/6h) in the distances a, b to the nodes.
struct cubic {
  double x0, x1, square, y0, y1, d0, d1;
  cubic(const nodes &f, int32_t j) : x0(f.x[j - 1]), x1(f.x[j]) {
    const double h = x1 - x0, sixth = 1.0 / (6.0 * h);
    square = h * h;
    y0 = f.y[j - 1] / h;
    y1 = f.y[j] / h;
    d0 = f.d2[j - 1] * sixth;
    d1 = f.d2[j] * sixth;
  }
  template <class V>
  V operator()(const V &t) const {
    const V a = x1 - t, b = t - x0;
    return a * (y0 + (a * a - square) * d0) + b * (y1 + (b * b - square) * d1);
  }
};

struct parabola {
  double x0, x1, x2, y0, y1, y2, p, q, s, scale;
  parabola(const nodes &f, int32_t m)
      : x0(f.x[m - 1]), x1(f.x[m]), x2(f.x[m + 1]), y0(f.y[m - 1]), y1(f.y[m]), y2(f.y[m + 1]) {
    p = x1 - x0;
    q = x2 - x1;
    s = p + q;
    scale = p * q * s;
  }
  template <class V>
  V operator()(const V &t) const {
    const V a = t - x0, b = t - x1, c = t - x2;
    return (q * b * c * y0 - s * a * c * y1 + p * a * b * y2) / scale;
  }
};

// Where a piece ends: at the first query for which this is true. A NaN query never ends a piece.

struct nowhere {
  template <class V>
  auto operator()(const V &t) const {
    return t < t;
  }
};

struct node {
  double x;
  template <class V>
  auto operator()(const V &t) const {
    return t >= x;
  }
};

struct middle {
  double x0, x1;
  template <class V>
  auto operator()(const V &t) const {
    return t - x0 > x1 - t;
  }
};

// Writes values from out[i] on up to the first query beyond the piece, and returns its index. The last vector may write
// past it; those values are written again.
template <class Piece, class Past>
int32_t fill(const queries &q, int32_t i, const Piece &piece, const Past &past) {
  for (; i <= q.n - lane_count; i += lane_count) {
    const widest t = load<widest>(q.t + i);
    store(q.out + i, piece(t));
    if (any(past(t))) break;
  }
  for (; i < q.n && !past(q.t[i]); ++i) q.out[i] = piece(q.t[i]);
  return i;
}

// The first query in [begin, end) at or beyond the last node; `end` when there is none. Needed for nodes that do not
// rise: their last one may lie before the end of a piece.
[[gnu::noinline]] int32_t first_from(double last, const queries &q, int32_t begin, int32_t end) {
  int32_t i = begin;
  while (i < end && !(q.t[i] >= last)) ++i;
  return i;
}

int32_t hold_last(const nodes &f, const queries &q, int32_t i) {
  fill(q, i, constant{f.y[f.n - 1]}, nowhere());
  return 0;
}

// Moves the bracket [j - 1, j] right until it holds t or is the last one; false when it meets an interval of zero
// width.
bool reach(const nodes &f, double t, int32_t *j) {
  while (f.x[*j] - f.x[*j - 1] != 0.0) {
    if (!(t >= f.x[*j]) || *j == f.n - 1) return true;
    ++*j;
  }
  return false;
}

// piece(j) returns the piece of bracket j.
template <class MakePiece>
int32_t by_bracket(const nodes &f, const queries &q, int32_t i, bool hold_end, int32_t j, const MakePiece &piece) {
  const double last = f.x[f.n - 1];
  while (i < q.n) {
    if (!reach(f, q.t[i], &j)) return -1;
    if (hold_end && q.t[i] >= last) return hold_last(f, q, i);
    const int32_t begin = i;
    const bool ends = j < f.n - 1 || hold_end;  // GCOVR_EXCL_BR_LINE: some pieces always hold the end
    i = ends ? fill(q, i, piece(j), node{f.x[j]}) : fill(q, i, piece(j), nowhere());  // GCOVR_EXCL_BR_LINE: as above
    if (hold_end && last < f.x[j]) i = first_from(last, q, begin, i);                 // GCOVR_EXCL_BR_LINE: as above
  }
  return 0;
}

int32_t by_nearest_node(const nodes &f, const queries &q, int32_t i, bool hold_end, int32_t j) {
  const double last = f.x[f.n - 1];
  int32_t m = j >= 2 && q.t[i] - f.x[j - 1] < f.x[j] - q.t[i] ? j - 1 : j;
  if (m > f.n - 2) m = f.n - 2;
  while (i < q.n) {
    if (!reach(f, q.t[i], &j)) return -1;
    while (m < f.n - 2 && middle{f.x[m], f.x[m + 1]}(q.t[i])) ++m;
    if (hold_end && q.t[i] >= last) return hold_last(f, q, i);
    const parabola piece(f, m);
    if (piece.scale == 0.0) return -1;
    const int32_t begin = i;
    if (m < f.n - 2)
      i = fill(q, i, piece, middle{f.x[m], f.x[m + 1]});
    else
      i = hold_end ? fill(q, i, piece, node{last}) : fill(q, i, piece, nowhere());
    if (hold_end && last < f.x[m + 1]) i = first_from(last, q, begin, i);
  }
  return 0;
}

int32_t interpolate(const nodes &f, const queries &q, int32_t scheme, bool clamp) {
  int32_t first = 0;
  for (; clamp && first < q.n && q.t[first] < f.x[0]; ++first) q.out[first] = f.y[0];
  if (first == q.n) return 0;
  int32_t j = 1;
  if (!reach(f, q.t[first], &j)) return -1;
  switch (scheme) {
    case DSP_INTERP_HOLD:
      return by_bracket(f, q, first, true, j, [&f](int32_t k) { return constant{f.y[k - 1]}; });
    case DSP_INTERP_LINEAR:
      return by_bracket(f, q, first, clamp, j, [&f](int32_t k) { return line(f, k); });
    case DSP_INTERP_SPLINE:
      return by_bracket(f, q, first, clamp, j, [&f](int32_t k) { return cubic(f, k); });
    case DSP_INTERP_QUADRATIC:
      return by_nearest_node(f, q, first, clamp, j);
    default:
      return by_bracket(f, q, first, clamp, j, [value = f.y[j]](int32_t) { return constant{value}; });
  }
}

void interleave(const double *a, const double *b, double *out, int64_t n) {
  int64_t i = n;
  for (; i >= lane_count; i -= lane_count) {
    const widest x = load<widest>(a + i - lane_count), y = load<widest>(b + i - lane_count);
    store_in_turn(out + 2 * (i - lane_count), x, y);
  }
  while (i-- > 0) {
    const double x = a[i], y = b[i];
    out[2 * i] = x;
    out[2 * i + 1] = y;
  }
}

}  // namespace

extern const interp_kernel_set interp_set = {interpolate, interleave};

}  // namespace DSP_ISA
}  // namespace dsp::interp
