// The second derivatives of a cubic spline through given nodes, with a choice of conditions at its ends.
#include <cstdint>

#include "dsp/core/sharing.h"
#include "dsp/core/sizing.h"
#include "dsp/core/temporary.h"
#include "dsp/dsp.h"

namespace dsp::interp {
namespace {

bool is_end_condition(std::int32_t value) { return value >= DSP_SPLINE_NOT_A_KNOT && value <= DSP_SPLINE_NATURAL; }

bool increases(const double *x, std::int32_t n) {
  for (std::int32_t i = 1; i < n; ++i)
    if (!(x[i] - x[i - 1] > 0.0)) return false;
  return true;
}

// Not a knot at either end of four nodes leaves one cubic through all of them: twice its leading divided differences.
void single_cubic(const double *x, const double *y, double *m) {
  double f[4] = {y[0], y[1], y[2], y[3]};
  for (int order = 1; order < 4; ++order)
    for (int i = 3; i >= order; --i) f[i] = (f[i] - f[i - 1]) / (x[i] - x[i - order]);
  double result[4];
  for (int i = 0; i < 4; ++i) result[i] = 2 * (f[2] + f[3] * ((x[i] - x[0]) + (x[i] - x[1]) + (x[i] - x[2])));
  for (int i = 0; i < 4; ++i) m[i] = result[i];
}

// One row of the system, about the end it belongs to: near * (end's value) + far * (its neighbour's) = right.
struct end_row {
  double near;
  double far;
  double right;
};

// `slope` and `width` are those of the end interval, `value` the given derivative as seen from inside: for the right
// end both slopes come with the sign turned.
end_row end_condition(std::int32_t condition, double value, double slope, double width) {
  if (condition == DSP_SPLINE_CLAMPED) return {2.0, 1.0, 6.0 / width * (slope - value)};
  return {1.0, 0.0, condition == DSP_SPLINE_NATURAL ? 0.0 : value};
}

// One cubic from the end node to the node after the dropped one goes through the dropped one: the second divided
// difference of the three follows from the second derivatives at the outer two. It keeps digits that a difference of
// ordinates would lose.
end_row not_a_knot(double end_x, double dropped_x, double next_x, double end_y, double dropped_y, double next_y) {
  const double whole = next_x - end_x;
  const double first = dropped_x - end_x, second = next_x - dropped_x;
  const double bend = (next_y - dropped_y) / second - (dropped_y - end_y) / first;
  return {1.0 + second / whole, 1.0 + first / whole, 6.0 / whole * bend};
}

// The tridiagonal system over the nodes that are knots, in five arrays.
struct system_of_knots {
  std::int32_t count = 0;
  double *x, *y, *diagonal, *upper, *right;

  system_of_knots(double *memory, std::int32_t n)
      : x(memory), y(x + n), diagonal(y + n), upper(diagonal + n), right(upper + n) {}

  void add(double knot_x, double knot_y) {
    x[count] = knot_x;
    y[count] = knot_y;
    ++count;
  }

  double width(std::int32_t i) const { return x[i] - x[i - 1]; }
  double slope(std::int32_t i) const { return (y[i] - y[i - 1]) / width(i); }

  // From the last row to the first, then back; the solution is left in `right`.
  void solve(const end_row &first, const end_row &last) {
    const std::int32_t end = count - 1;
    diagonal[end] = last.near;
    right[end] = last.right;
    for (std::int32_t i = end; i-- > 0;) {
      const double next = width(i + 1);
      diagonal[i] = i == 0 ? first.near : 2.0 * (width(i) + next) / next;
      upper[i] = i == 0 ? first.far : 1.0;
      right[i] = i == 0 ? first.right : 6.0 / next * (slope(i + 1) - slope(i));
      const double factor = upper[i] / diagonal[i + 1];
      diagonal[i] -= factor * lower(i + 1, last);
      right[i] -= factor * right[i + 1];
    }
    right[0] /= diagonal[0];
    for (std::int32_t i = 1; i <= end; ++i) right[i] = (right[i] - lower(i, last) * right[i - 1]) / diagonal[i];
  }

  double lower(std::int32_t i, const end_row &last) const {
    return i == count - 1 ? last.far : width(i) / width(i + 1);
  }
};

struct end {
  std::int32_t condition;
  double value;
};

// Writes n second derivatives to `m` after the last node has been read.
void solve_spline(const double *x, const double *y, std::int32_t n, end left, end right, double *memory, double *m) {
  const bool drop_left = left.condition == DSP_SPLINE_NOT_A_KNOT;
  const bool drop_right = right.condition == DSP_SPLINE_NOT_A_KNOT;
  system_of_knots knots(memory, n);
  for (std::int32_t i = 0; i < n; ++i)
    if (!(drop_left && i == 1) && !(drop_right && i == n - 2)) knots.add(x[i], y[i]);
  const std::int32_t k = knots.count - 1;
  knots.solve(drop_left ? not_a_knot(x[0], x[1], x[2], y[0], y[1], y[2])
                        : end_condition(left.condition, left.value, knots.slope(1), knots.width(1)),
              drop_right
                  ? not_a_knot(x[n - 1], x[n - 2], x[n - 3], y[n - 1], y[n - 2], y[n - 3])
                  : end_condition(right.condition, right.condition == DSP_SPLINE_CLAMPED ? -right.value : right.value,
                                  -knots.slope(k), knots.width(k)));
  // The second derivative of a dropped node lies on the line between its neighbours.
  const double at_left = (x[1] - x[0]) / (x[2] - x[0]);
  const double at_right = (x[n - 1] - x[n - 2]) / (x[n - 1] - x[n - 3]);
  std::int32_t from = 0;
  for (std::int32_t i = 0; i < n; ++i)
    if (!(drop_left && i == 1) && !(drop_right && i == n - 2)) m[i] = knots.right[from++];
  if (drop_left) m[1] = (1.0 - at_left) * m[0] + at_left * m[2];
  if (drop_right) m[n - 2] = at_right * m[n - 3] + (1.0 - at_right) * m[n - 1];
}

}  // namespace
}  // namespace dsp::interp

using namespace dsp;
using namespace dsp::interp;

int32_t dspb_cspline_2d(const dsp_vec *x, const dsp_vec *y, dsp_vec *d2, double left_value, double right_value,
                        int32_t left, int32_t right) {
  const std::int32_t n = samples(*x);
  if (x->is_complex != 0 || y->is_complex != 0 || n != samples(*y) || n < 4) return -1;
  if (!is_end_condition(left) || !is_end_condition(right) || !increases(x->data, n)) return -1;
  const bool one_cubic = n == 4 && left == DSP_SPLINE_NOT_A_KNOT && right == DSP_SPLINE_NOT_A_KNOT;
  temporary memory;
  if (n > INT32_MAX / 5) return -1;  // GCOVR_EXCL_BR_LINE: takes gigabytes
  memory->length = 5 * n;
  if (!one_cubic && dsp_alloc(memory.get()) != 0) return -1;
  operands nodes;
  if (dspb_prepare_output(*x, *y, d2, &nodes) != 0) return -1;
  if (one_cubic)
    single_cubic(nodes.a, nodes.b, d2->data);
  else
    solve_spline(nodes.a, nodes.b, n, {left, left_value}, {right, right_value}, memory->data, d2->data);
  return 0;
}
