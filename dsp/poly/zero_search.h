// All zeros of a polynomial at once: Ehrlich-Aberth iteration, Newton's step with every approximation pushed away from
// the others, first in doubles until a value is rounding noise, then with values of twice the digits. No deflation, so
// no zero suffers from the error of another. (Bini and Fiorentino, Numerical Algorithms 23, 2000.)
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

  // A part is infinite where it is too large for a double.
  dsp_complex zero(int32_t i) const;

  // Moves zero i to the real axis, for refine_moved() to refine all `count` of them there.
  void move_to_axis(int32_t i);
  void refine_moved(int32_t count);

 private:
  enum class state : int32_t { searched, found, on_axis, refined };

  struct approximation {
    dsp_complex z;     // in the scale of its group
    dsp_complex kept;  // a place in it that is good enough, if there is one
    bool has_kept;
    int32_t group;
    state now;
  };

  // One point of a block that the kernels have been over.
  struct result {
    int32_t index;
    double residue;    // |value| over the sum of all terms' moduli
    dsp_complex step;  // to the next place
    double push;
  };

  struct batch {
    point_block points;
    int32_t index[block_size];
    int count;
  };

  void group_edges();
  void start(int32_t group);
  void enter(int32_t group);
  void pass(int32_t group, state wanted);
  void add(int32_t i, bool is_outside);
  void serve(bool is_outside, state wanted);
  result judge(bool is_outside, int lane) const;
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
  double *re_, *im_, *modulus_;  // coefficients in the scale of the group entered last
  double *x_re_, *x_im_;         // all zeros in that scale
  int32_t entered_ = -1;         // that group
  int32_t open_;                 // zeros that are to be moved on
  batch sides_[2] = {};          // inside and outside the unit circle
};

}  // namespace dsp::poly
