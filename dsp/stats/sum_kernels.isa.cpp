#include "dsp/stats/sum_kernels.h"

#include "dsp/stats/blocked_sum.h"
#include "dsp/stats/saturated_powers.h"

namespace dsp::stats {
namespace DSP_ISA {
namespace {

struct identity {
  static constexpr int sums = 1;
  void operator()(const widest &x, int, widest *term) const { term[0] = x; }
};

struct plain_square {
  static constexpr int sums = 1;
  void operator()(const widest &x, int, widest *term) const { term[0] = x * x; }
};

// A complex sample with a component beyond the bound counts as one 1e100.
struct saturated_square {
  static constexpr int sums = 1;
  int width;
  void operator()(const widest &x, int, widest *term) const {
    const auto here = beyond(x);
    const auto there = width == 2 ? beyond(swap_pairs(x)) : here;
    term[0] = (here | there) ? alternating(overflow_bound, width == 2 ? 0.0 : overflow_bound) : x * x;
  }
};

template <class Powers>
using up_to_squares = differences<Powers, 2>;

void values(const double *x, int64_t n, int width, double *total) { blocked_sum(x, n, width, identity(), total); }

void squares(const double *x, int64_t n, int width, double *total) {
  blocked_sum<0>(x, n, width, plain_square(), saturated_square{width}, squares_within_bound, total);
}

void spread(const double *x, int64_t n, int width, const double *reference, double *total) {
  saturating_sum<up_to_squares>(x, n, width, total, alternating(reference[0], reference[width - 1]));
}

}  // namespace

extern const sum_kernel_set sum_set = {values, squares, spread};

}  // namespace DSP_ISA
}  // namespace dsp::stats
