// A sampled oscillator: cosine and sine of phase + w k for consecutive k. Each block of 256 starts from the C library's
// values; within it eight neighbours are rotated together by 8 w.
//
// The rotation c cos(d) - s sin(d) loses digits where cos(d) is near 1, since 1 - cos(d) is rounded away. The form
// c - (alpha c + beta s) with alpha = 2 sin^2(d/2) and beta = sin(d) keeps them. Near half a turn alpha approaches 2,
// and the plain form is the more accurate one.
#pragma once

#include <cstdint>

namespace dsp {

class oscillator {
 public:
  static constexpr int32_t block = 256;

  oscillator(double phase, double w);

  // c[i], s[i] for k = first + i, i < count <= block. Writes up to a whole block, whatever `count` is.
  void operator()(int32_t first, int32_t count, double *c, double *s) const;

 private:
  static constexpr int lanes = 8;

  void turn(double *c, double *s) const;

  double phase_, w_;
  double lane_c_[lanes], lane_s_[lanes];
  double cos_, sin_;  // of an angle of eight steps; when slow_, alpha instead of the cosine
  bool slow_;
};

}  // namespace dsp
