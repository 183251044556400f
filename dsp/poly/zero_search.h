// All zeros of a polynomial at once by Ehrlich-Aberth iteration, Newton's method with a term that keeps approximations
// apart: first in doubles until values are rounding noise, then with values of twice the digits. There is no deflation,
// which would spread the error of one zero to the others. (Bini and Fiorentino, Numerical Algorithms 23, 2000.)
#pragma once

#include <cstdint>

#include "dsp/poly/heap_array.h"
#include "dsp/poly/newton_polygon.h"
#include "dsp/poly/polynomial.h"
#include "dsp/poly/zero_kernels.h"

namespace dsp::poly {

class zero_search {
 public:
  // p has a degree of at least 1 and outlives the search.
  explicit zero_search(const polynomial &p);

  // False when memory ran out.
  bool is_valid() const;

  // Finds all zeros and refines them.
  void run();

  // A component too large for a double is infinite.
  dsp_complex zero(int32_t i) const;

  // Moves zero i to the real axis. refine_moved() then refines all `count` moved zeros there.
  void move_to_axis(int32_t i);
  void refine_moved(int32_t count);

 private:
  enum class state : int32_t { searched, found, on_axis, refined };

  struct approximation {
    dsp_complex z;     // in the scale of its group
    dsp_complex kept;  // the last value whose residue was small enough, if has_kept
    bool has_kept;
    int32_t group;
    state now;
  };

  // The step for one point of a block.
  struct result {
    int32_t index;
    double residue;    // |value| over the sum of all terms' moduli
    dsp_complex step;  // what is subtracted from the approximation
    double aberth;     // modulus of Aberth's sum
  };

  struct batch {
    point_block points;
    int32_t index[block_size];
    int count;
  };

  void start(int32_t group);
  void enter(int32_t group);
  void pass(int32_t group, state wanted);
  void add(int32_t i, bool is_outside);
  void step_batch(bool is_outside, state wanted);
  result step_of(bool is_outside, int lane) const;
  void move(int32_t i, dsp_complex step);
  void search(const result &r);
  void refine(const result &r);
  void refine_all(state wanted, int32_t count);
  void change_group(approximation *zero) const;
  void close(int32_t i, state now);
  int64_t exponent(int32_t group) const { return groups_[group].exponent; }

  const polynomial &p_;
  newton_polygon polygon_;
  heap_array<zero_group> groups_;
  int32_t group_count_ = 0;
  heap_array<approximation> zeros_;
  heap_array<double> numbers_;
  double *re_, *im_, *modulus_;  // coefficients in the scale of the current group
  double *x_re_, *x_im_;         // all zeros in that scale
  int32_t entered_ = -1;         // the current group
  int32_t open_;                 // zeros not finished yet
  batch sides_[2] = {};          // inside and outside the unit circle
};

}  // namespace dsp::poly
