// Roots of unity, right to the last bit but for near ties.
#pragma once

#include <cstddef>
#include <cstdint>

namespace dsp {

constexpr double half_sqrt2 = 0.7071067811865476;

struct root {
  double cos;
  double sin;
};

// cos and sin of 2 pi k/n for k = first .. last <= n/8, `spacing` doubles apart.
void fill_roots(double *cosines, double *sines, std::ptrdiff_t spacing, std::int64_t first, std::int64_t last,
                std::int64_t n);

// cos and sin of 2 pi k/n for the first eighth of the circle, k = 0 .. n/8; n is a power of two from 8 on.
void fill_octant(double *cosines, double *sines, std::int64_t n);

// cos and sin of 2 pi k/n for 0 <= k < n from such an octant.
root root_from_octant(const double *cosines, const double *sines, std::int64_t n, std::int64_t k);

}  // namespace dsp
