// Powers that saturate: a value beyond +-1e100 counts as +-1e100, and its powers as fixed numbers. Everything here is
// local to the file that includes it, as in simd/vector.h.
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

// Sums of d, d^2 and, for order 3, d^3 of the differences d from a reference.
template <class Powers, int Order>
struct differences {
  static constexpr int sums = Order;
  static constexpr int square = 1;
  widest reference;
  void operator()(const widest &x, int, widest *term) const {
    const powers p = Powers()(x - reference);
    term[0] = p.d;
    term[1] = p.square;
    if constexpr (Order > 2) term[2] = p.cube;
  }
};

// blocked_sum of a kernel that takes its powers as a parameter: with plain ones, and again with saturated ones for a
// block whose sum number `square` is so great that a value may be beyond the bound.
template <template <class> class Kernel, class... Parameters>
void saturating_sum(const double *x, int64_t n, int width, double *total, const Parameters &...parameters) {
  blocked_sum<Kernel<plain_powers>::square>(x, n, width, Kernel<plain_powers>{parameters...},
                                            Kernel<saturated_powers>{parameters...}, squares_within_bound, total);
}

}  // namespace
}  // namespace dsp::stats
