// The upper convex hull of log2|c[k]| over k, which tells roughly where the zeros of a polynomial are: an edge from k =
// i to j stands for j - i zeros of moduli near 2^-slope. (Bini, Numerical Algorithms 13, 1996.)
#pragma once

#include <cstdint>

#include "dsp/poly/heap_array.h"
#include "dsp/poly/polynomial.h"

namespace dsp::poly {

// Neighbouring edges whose zeros are sought with the variable scaled by 2^exponent, which brings each term that matters
// into the range of a double.
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
  // Indices of the zeros of edge e: the first, and one past the last.
  int32_t begin(int32_t e) const { return vertices_[e].k; }
  int32_t end(int32_t e) const { return vertices_[e + 1].k; }
  double log_radius(int32_t e) const;
  // log2 of the largest term where |z| = 2^x, x the exponent of a group.
  double log_largest(const zero_group &g) const;
  // The longest run of edges from `edge` on for which one scaling is enough.
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
