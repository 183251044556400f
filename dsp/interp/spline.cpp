// The second derivatives of a cubic spline through given nodes, with a choice of conditions at its ends.
#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "dsp/core/sharing.h"
#include "dsp/core/sizing.h"
#include "dsp/core/temporary.h"
#include "dsp/dsp.h"

namespace dsp::interp {
namespace {

bool is_end_condition(int32_t value) { return value >= DSP_SPLINE_NOT_A_KNOT && value <= DSP_SPLINE_NATURAL; }

bool increases(const double *x, int32_t n) {
  for (int32_t i = 1; i < n; ++i)
    if (!(x[i] - x[i - 1] > 0.0)) return false;
  return true;
}

// With not-a-knot at both ends of four nodes the spline is one cubic: twice its leading divided differences.
void single_cubic(const double *x, const double *y, double *m) {
  double f[4] = {y[0], y[1], y[2], y[3]};
  for (int order = 1; order < 4; ++order)
    for (int i = 3; i >= order; --i) f[i] = (f[i] - f[i - 1]) / (x[i] - x[i - order]);
  double result[4];
  for (int i = 0; i < 4; ++i) result[i] = 2 * (f[2] + f[3] * ((x[i] - x[0]) + (x[i] - x[1]) + (x[i] - x[2])));
  for (int i = 0; i < 4; ++i) m[i] = result[i];
}

// The row of an end node: near * (second derivative at the end) + far * (that of its neighbour) = right.
struct end_row {
  double near;
  double far;
  double right;
};

// `slope` and `width` are those of the end interval, `value` the given derivative, both seen from inside: at the right
// end their signs are reversed.
end_row end_condition(int32_t condition, double value, double slope, double width) {
  if (condition == DSP_SPLINE_CLAMPED) return {2.0, 1.0, 6.0 / width * (slope - value)};
  return {1.0, 0.0, condition == DSP_SPLINE_NATURAL ? 0.0 : value};
}

// Not a knot: one cubic passes through the end node x[0] and the next two, x[step] and x[2 step]. Its second
// derivatives at the three add up to six times their second divided difference. With that the end node's value is
// eliminated from the row of its neighbour, where the system begins, and found afterwards without loss of digits: an
// extrapolation from the next two values would lose them when the end interval is wide.
struct one_cubic {
  double first, second, sum;

  one_cubic(const double *x, const double *y, std::ptrdiff_t step)
      : first(x[step] - x[0]), second(x[2 * step] - x[step]) {
    const double bend = (y[2 * step] - y[step]) / second - (y[step] - y[0]) / first;
    sum = 6.0 / (first + second) * bend;
  }

  end_row row() const { return {first + 2.0 * second, second - first, second * sum}; }
  double end_value(double near, double far) const { return sum - near - far; }
};

// The tridiagonal system of the second derivatives at some nodes in a row.
struct system_of_nodes {
  const double *x, *y;
  double *diagonal, *right;

  double width(int32_t i) const { return x[i] - x[i - 1]; }
  double slope(int32_t i) const { return (y[i] - y[i - 1]) / width(i); }

  // From row `end` to row `begin`, then back; the solution is left in `right`.
  void solve(int32_t begin, int32_t end, const end_row &first, const end_row &last) const {
    const auto lower = [&](int32_t i) { return i == end ? last.far : width(i) / width(i + 1); };
    diagonal[end] = last.near;
    right[end] = last.right;
    for (int32_t i = end; i-- > begin;) {
      const bool is_first = i == begin;
      const double next = width(i + 1);
      const double factor = (is_first ? first.far : 1.0) / diagonal[i + 1];
      diagonal[i] = (is_first ? first.near : 2.0 * (width(i) + next) / next) - factor * lower(i + 1);
      right[i] = (is_first ? first.right : 6.0 / next * (slope(i + 1) - slope(i))) - factor * right[i + 1];
    }
    right[begin] /= diagonal[begin];
    for (int32_t i = begin + 1; i <= end; ++i) right[i] = (right[i] - lower(i) * right[i - 1]) / diagonal[i];
  }
};

struct end {
  int32_t condition;
  double value;
  bool is_knot() const { return condition != DSP_SPLINE_NOT_A_KNOT; }
};

// Writes n second derivatives to `m`, which may be x or y: it is written last. `memory` holds 2 n doubles.
// NOLINTNEXTLINE(readability-non-const-parameter): the nodes write to the memory
void solve_spline(const double *x, const double *y, int32_t n, end left, end right, double *memory, double *m) {
  const system_of_nodes nodes = {x, y, memory, memory + n};
  const int32_t last = n - 1;
  const one_cubic at_left(x, y, 1), at_right(x + last, y + last, -1);
  const double right_value = right.condition == DSP_SPLINE_CLAMPED ? -right.value : right.value;
  nodes.solve(
      left.is_knot() ? 0 : 1, right.is_knot() ? last : last - 1,
      left.is_knot() ? end_condition(left.condition, left.value, nodes.slope(1), nodes.width(1)) : at_left.row(),
      right.is_knot() ? end_condition(right.condition, right_value, -nodes.slope(last), nodes.width(last))
                      : at_right.row());
  if (!left.is_knot()) nodes.right[0] = at_left.end_value(nodes.right[1], nodes.right[2]);
  if (!right.is_knot()) nodes.right[last] = at_right.end_value(nodes.right[last - 1], nodes.right[last - 2]);
  std::copy_n(nodes.right, n, m);
}

}  // namespace
}  // namespace dsp::interp

using namespace dsp;
using namespace dsp::interp;

int32_t dspb_cspline_2d(const dsp_vec *x, const dsp_vec *y, dsp_vec *d2, double left_value, double right_value,
                        int32_t left, int32_t right) {
  const int32_t n = samples(*x);
  if (x->is_complex != 0 || y->is_complex != 0 || n != samples(*y) || n < 4) return -1;
  if (!is_end_condition(left) || !is_end_condition(right) || !increases(x->data, n)) return -1;
  const bool lone_cubic = n == 4 && left == DSP_SPLINE_NOT_A_KNOT && right == DSP_SPLINE_NOT_A_KNOT;
  temporary memory;
  if (n > INT32_MAX / 2) return -1;  // GCOVR_EXCL_BR_LINE: takes gigabytes
  memory->length = 2 * n;
  if (!lone_cubic && dsp_alloc(memory.get()) != 0) return -1;
  operands nodes;
  if (dspb_prepare_output(*x, *y, d2, &nodes) != 0) return -1;
  if (lone_cubic)
    single_cubic(nodes.a, nodes.b, d2->data);
  else
    solve_spline(nodes.a, nodes.b, n, {left, left_value}, {right, right_value}, memory->data, d2->data);
  return 0;
}
