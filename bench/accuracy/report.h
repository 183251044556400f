// The page of measured errors: its parts, and how they write a table.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "dsp/dsp.h"

namespace accuracy {

static_assert(sizeof(long double) > sizeof(double), "references take numbers wider than a double");
using wide = long double;
using wides = std::vector<wide>;
using doubles = std::vector<double>;

constexpr double eps = 0x1p-52;
const wide pi = std::acos(-1.0L);

void transforms();
void roots();
void functions();
void generators();
void windows();
void statistics();
void zeros();
void filters();
void conversion();

using cells = std::vector<std::string>;
void heading(const std::string &title, const std::string &text);
void row(const cells &line);
void table(const cells &head);                // numbers to the right but in the first column
void held_by(const std::string &test_names);  // ends a table: what keeps these figures from growing

// Two significant digits; "-" for NaN.
std::string figure(double value);

inline dsp_vec borrow(doubles &x) { return {1.0, x.data(), 0, static_cast<int32_t>(x.size()), 0, 0}; }

// |value - exact| in units in the last place of the exact value.
inline double units(double value, wide exact) {
  const double size = std::abs(static_cast<double>(exact));
  if (value == static_cast<double>(exact) && size == 0) return 0;
  return static_cast<double>(std::abs(value - exact) / (size - std::nextafter(size, 0.0)));
}

// |value / exact - 1| in units of eps.
inline double relative(double value, wide exact) {
  return static_cast<double>(std::abs((value - exact) / exact)) / eps;
}

}  // namespace accuracy
