// A product and what rounding took from it.
#pragma once

namespace dsp {

struct exact_product {
  double value;
  double rest;
};

// Factors split in halves, whose products are exact: no fused operation needed. Factors up to 1e290.
inline exact_product two_product(double a, double b) {
  constexpr double splitter = 134217729.0;  // 2^27 + 1
  const double a_scaled = a * splitter;
  const double b_scaled = b * splitter;
  const double a_high = a_scaled - (a_scaled - a);
  const double b_high = b_scaled - (b_scaled - b);
  const double a_low = a - a_high;
  const double b_low = b - b_high;
  const double p = a * b;
  return {p, ((a_high * b_high - p) + a_high * b_low + a_low * b_high) + a_low * b_low};
}

}  // namespace dsp
