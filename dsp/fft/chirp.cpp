#include "dsp/fft/chirp.h"

#include <cmath>
#include <cstring>

#include "dsp/core/caches.h"
#include "dsp/core/sizing.h"
#include "dsp/fft/chirp_kernels.h"
#include "dsp/fft/circle.h"
#include "dsp/fft/mixed.h"
#include "dsp/fft/real_transform.h"
#include "dsp/fft/recent.h"
#include "dsp/fft/transform.h"
#include "dsp/fft/work_memory.h"

namespace dsp::fft {
namespace {

struct chirp_tables {
  int32_t grid;
  double *chirp;   // w[k] = exp(-i pi k^2/n)
  double *filter;  // spectrum of conj w
};

recent<chirp_tables> chirps;
work_memory chirp_work;

int32_t grid_transform(double *x, int32_t m, bool inverse, double scale) {
  if (is_power_of_two(m)) return transform(x, log2_of(m), inverse, scale);
  return mixed_transform(find_or_make_mixed(m), x, inverse, scale);
}

struct grid {
  int64_t length;
  double cost;  // of a transform
};

// The cheapest of the lengths that transform fast: powers of two times a few odd numbers.
grid cheapest_grid(int64_t least) {
  grid best = {INT64_MAX, HUGE_VAL};
  static constexpr int64_t odd_factors[] = {1, 3, 5, 7, 9, 15, 21, 25, 27, 35, 45, 49, 63, 75, 81, 105, 125, 135};
  for (const int64_t odd : odd_factors) {
    int64_t length = odd * power_of_two_from((least + odd - 1) / odd);
    const int levels = log2_of(length);
    // A power of two needs no work area; the first pass of the others has the radix of the lanes.
    const double cost = static_cast<double>(length) *
                        (odd == 1   ? 0.85
                         : odd < 15 ? 1.0
                         : odd < 50 ? 1.05
                                    : 1.1) *
                        (levels + 2);
    if (cost < best.cost && (odd == 1 || length / odd >= 64)) best = {length, cost};
  }
  return best;
}

grid grid_of(int32_t n) { return cheapest_grid(2 * int64_t{n} - 2); }

// The index k^2 is carried modulo 2n, so that it never overflows and is exact.
void fill_chirp(const circle &roots, int32_t n, double *w) {
  const int64_t period = 2 * int64_t{n};
  int64_t square = 0;
  for (int64_t k = 0; k < n; ++k) {
    const root r = roots[square];
    w[2 * k] = r.cos;
    w[2 * k + 1] = -r.sin;
    square += 2 * k + 1;
    while (square >= period) square -= period;
  }
}

// Where m is 2n - 2, sample n - 1 and its mirror image m - (n - 1) are the same.
int32_t fill_filter(const double *w, int32_t n, int32_t m, double *h) {
  std::memset(h, 0, static_cast<std::size_t>(m) * 2 * sizeof(double));
  for (std::ptrdiff_t k = 0; k < n; ++k) {
    const std::ptrdiff_t mirror = k == 0 ? 0 : m - k;
    h[2 * k] = h[2 * mirror] = w[2 * k];
    h[2 * k + 1] = h[2 * mirror + 1] = -w[2 * k + 1];
  }
  return grid_transform(h, m, false, 1.0);
}

const chirp_tables *add_chirp(int32_t n) {
  const int64_t length = grid_of(n).length;
  if (length > INT32_MAX) return nullptr;
  const auto m = static_cast<int32_t>(length);
  circle roots(2 * n);
  if (!roots.build()) return nullptr;
  void *block;
  chirp_tables *tables =
      chirps.add(n, (static_cast<uint64_t>(n) + static_cast<uint64_t>(m) + 8) * 2 * sizeof(double), &block);
  if (tables == nullptr) return nullptr;
  auto *filter = static_cast<double *>(block);
  *tables = {m, filter + 2 * static_cast<std::ptrdiff_t>(m), filter};
  fill_chirp(roots, n, tables->chirp);
  if (fill_filter(tables->chirp, n, m, filter) == 0) return tables;
  chirps.remove_newest();
  return nullptr;
}

}  // namespace

bool has_chirp(int32_t n) { return chirps.find(n) != nullptr; }

double chirp_cost(int32_t n) { return 2 * grid_of(n).cost + 6.0 * n; }

int32_t chirp_transform(double *x, int32_t n, bool inverse, double scale) {
  const chirp_tables *tables = chirps.find(n);
  if (tables == nullptr) tables = add_chirp(n);
  if (tables == nullptr) return -1;
  const int32_t m = tables->grid;
  double *const y = chirp_work.at_least(2 * int64_t{m});
  if (y == nullptr) return -1;
  const chirp_kernel_set &kernels = chirp_kernels();
  kernels.multiply(x, tables->chirp, n, inverse, y);
  std::memset(y + 2 * static_cast<std::ptrdiff_t>(n), 0, static_cast<std::size_t>(m - n) * 2 * sizeof(double));
  if (grid_transform(y, m, false, 1.0) != 0) return -1;
  kernels.multiply(y, tables->filter, m, false, y);
  if (grid_transform(y, m, true, scale / m) != 0) return -1;  // GCOVR_EXCL_BR_LINE: the first one made the tables
  kernels.multiply_back(y, tables->chirp, n, inverse, x);
  return 0;
}

int32_t free_chirp_state() {
  chirps.release();
  chirp_work.release();
  free_mixed_plans();
  free_real_roots();
  return 0;
}

}  // namespace dsp::fft
