#include "examples/support/least_squares.h"

#include <cmath>
#include <utility>

namespace examples {
namespace {

double dot(const column &a, const column &b) {
  double sum = 0.0;
  for (std::size_t i = 0; i < a.size(); ++i) sum += a[i] * b[i];
  return sum;
}

/** Takes out of x what points along the unit vector q, and returns how much that was. */
double project_out(const column &q, column *x) {
  const double along = dot(q, *x);
  for (std::size_t i = 0; i < q.size(); ++i) (*x)[i] -= along * q[i];
  return along;
}

}  // namespace

double norm(const column &x) { return std::sqrt(dot(x, x)); }

least_squares::least_squares(std::vector<column> columns, column y) : residual_(std::move(y)) {
  const std::size_t n = columns.size();
  column lengths, right(n, 0.0);
  for (const column &c : columns) lengths.push_back(norm(c));
  for (std::size_t i = 0; i < n; ++i) {
    const double left = norm(columns[i]);
    column row(n - i, 0.0);
    if (left > 1e-10 * lengths[i]) {
      row[0] = left;
      for (double &x : columns[i]) x /= left;
      for (std::size_t k = i + 1; k < n; ++k) row[k - i] = project_out(columns[i], &columns[k]);
      right[i] = project_out(columns[i], &residual_);
    }
    triangle_.push_back(row);
  }
  solution_.assign(n, 0.0);
  for (std::size_t i = n; i-- > 0;) {
    if (triangle_[i][0] == 0.0) continue;
    double sum = right[i];
    for (std::size_t k = i + 1; k < n; ++k) sum -= triangle_[i][k - i] * solution_[k];
    solution_[i] = sum / triangle_[i][0];
  }
}

double least_squares::sensitivity(const column &weights) const {
  column rest = weights, along(weights.size(), 0.0);
  for (std::size_t i = 0; i < rest.size(); ++i) {
    if (triangle_[i][0] == 0.0) continue;
    along[i] = rest[i] / triangle_[i][0];
    for (std::size_t k = i + 1; k < rest.size(); ++k) rest[k] -= triangle_[i][k - i] * along[i];
  }
  return norm(along);
}

}  // namespace examples
