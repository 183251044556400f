// Powers that saturate: a value beyond +-1e100 counts as +-1e100, and its powers as fixed numbers. Local to the file
// that includes it, as simd/vector.h is.
#pragma once

#include "dsp/math/saturation.h"
#include "dsp/stats/blocked_sum.h"

namespace dsp::stats {
namespace {

// A smaller sum of squares contains no value beyond +-1e100.
constexpr double squares_within_bound = 0.5 * overflow_square;

inline auto beyond(const widest &x) { return (x > overflow_bound) | (x < -overflow_bound); }

// `high` where x is beyond 1e100, `low` where it is beyond -1e100.
inline widest saturated(const widest &x, const widest &within, double high, double low) {
  return x > overflow_bound ? broadcast(high) : (x < -overflow_bound ? broadcast(low) : within);
}

// The powers of a difference.
struct powers {
  widest d;
  widest square;
  widest cube;
};

struct plain_powers {
  powers operator()(const widest &d) const { return {d, d * d, d * d * d}; }
};

struct saturated_powers {
  powers operator()(const widest &d) const {
    return {saturated(d, d, overflow_bound, -overflow_bound), beyond(d) ? broadcast(overflow_square) : d * d,
            saturated(d, d * d * d, 1e300, -1e300)};
  }
};

}  // namespace
}  // namespace dsp::stats
