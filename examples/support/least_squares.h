#pragma once

#include <cstddef>
#include <vector>

namespace examples {

using column = std::vector<double>;

/** The linear combination of columns that comes closest to y, by modified Gram-Schmidt, which keeps the digits that
 * normal equations would square away. A column that depends on those before it gets the coefficient 0. */
class least_squares {
 public:
  least_squares(std::vector<column> columns, column y);

  double operator[](std::size_t i) const { return solution_[i]; }
  /** What no combination reaches: y without its best approximation. */
  const column &residual() const { return residual_; }
  /** The most by which the sum of weights times coefficients changes when y changes by a vector of length 1. */
  double sensitivity(const column &weights) const;

 private:
  std::vector<column> triangle_;  // row by row, from its diagonal on
  column solution_, residual_;
};

double norm(const column &x);

}  // namespace examples
