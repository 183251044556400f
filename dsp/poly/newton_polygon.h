// Where the zeros of a polynomial lie, roughly: the upper convex hull of log2|c[k]| over k. An edge from k = i to j
// tells of j - i zeros whose moduli are near 2^-slope. (Bini, Numerical Algorithms 13, 1996.)
#pragma once

#include <cstdint>

#include "dsp/poly/heap_array.h"
#include "dsp/poly/polynomial.h"

namespace dsp::poly {

// Edges whose zeros are sought with the variable scaled by 2^exponent, which keeps every term that matters within the
// range of a double.
struct zero_group {
  int32_t first_edge, end_edge;
  int32_t exponent;
  double log_border;  // to the next group, log2 of the modulus
};

class newton_polygon {
 public:
  explicit newton_polygon(const polynomial &p);

  // False when memory ran out.
  bool is_valid() const { return static_cast<bool>(vertices_); }
  int32_t edges() const { return count_ - 1; }
  // The zeros of edge e: the first and the one behind the last.
  int32_t begin(int32_t e) const { return vertices_[e].k; }
  int32_t end(int32_t e) const { return vertices_[e + 1].k; }
  double log_radius(int32_t e) const;
  // log2 of the largest term where |z| = 2^x, x the exponent of a group.
  double log_largest(const zero_group &g) const;
  // As many edges from `edge` on as one scaling serves.
  zero_group group_from(int32_t edge) const;

 private:
  struct vertex {
    int32_t k;
    double height;
  };
  void add(vertex v);
  double shrinkage(int32_t seed, int32_t edge) const;

  heap_array<vertex> vertices_;
  int32_t count_ = 0;
};

}  // namespace dsp::poly
