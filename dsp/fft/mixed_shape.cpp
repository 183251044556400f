// Which passes a length takes.
#include <cmath>

#include "dsp/fft/mixed.h"
#include "dsp/fft/mixed_kernels.h"

namespace dsp::fft {
namespace {

// Cycles of a butterfly on vectors, its products with roots included, as measured. Unlisted primes: the sum written
// out.
struct radix_cost {
  std::int8_t radix;
  double cycles;
};

constexpr radix_cost butterflies[] = {{13, 160}, {11, 120}, {10, 74}, {9, 70}, {8, 48}, {7, 48},
                                      {6, 36},   {5, 28},   {4, 20},  {3, 16}, {2, 10}};

double prime_cycles(std::int32_t p) { return 1.5 * p * p; }

// A vector's share in the passes of a part, from those of its prime factors.
double cycles_for(std::int32_t n) {
  double sum = 0;
  for (; n % 8 == 0; n /= 8) sum += 6;
  for (; n % 2 == 0; n /= 2) sum += 2.5;
  for (; n % 3 == 0; n /= 3) sum += 4;
  for (; n % 5 == 0; n /= 5) sum += 5.5;
  for (; n % 7 == 0; n /= 7) sum += 7;
  for (; n % 11 == 0; n /= 11) sum += 11;
  for (; n % 13 == 0; n /= 13) sum += 12.5;
  if (n == 1) return sum;
  if (n > largest_radix) return HUGE_VAL;
  return sum + prime_cycles(n) / n;  // a prime: the smallest other number without these factors is 17 * 17
}

constexpr std::int32_t groups_of(std::int32_t n, std::int32_t lanes) { return (n - 1) / lanes + 1; }

// Beyond a level 2 cache, a matrix whose columns and rows both stay within it saves visits to memory.
double strain(std::int32_t vectors, std::int32_t lanes) { return 16.0 * vectors * lanes > 1 << 20 ? 8 : 0; }

double transposing(std::int32_t n1, std::int32_t n2, std::int32_t lanes, double all) {
  const std::int32_t m = n1 / lanes;
  const double of_columns = cycles_for(m);
  const double calls = m > 1 ? 30.0 * (groups_of(n2, lanes) + m) : 30.0;
  return static_cast<double>(groups_of(n2, lanes)) * n1 * (of_columns + (m > 1 ? 16 : 12) + strain(m, lanes)) +
         static_cast<double>(m) * n2 * (all - of_columns + strain(n2, lanes)) + calls;
}

double gathering(std::int32_t n1, std::int32_t n2, std::int32_t lanes, double all) {
  const double of_columns = cycles_for(n1);
  return static_cast<double>(groups_of(n2, lanes)) * (n1 * (of_columns + 7 + strain(n1, lanes)) + 40) +
         static_cast<double>(groups_of(n1, lanes)) * (n2 * (all - of_columns + 7 + strain(n2, lanes)) + 40);
}

void take_cheaper(mixed_shape *best, const mixed_shape &other) {
  if (other.cost < best->cost) *best = other;
}

void try_rows(std::int32_t n, std::int32_t n1, std::int32_t lanes, mixed_shape *best) {
  const std::int32_t n2 = n / n1;
  if (n1 < lanes || n2 < lanes) return;
  const double all = cycles_for(n);
  take_cheaper(best, {lanes, false, n1, gathering(n1, n2, lanes, all)});
  if (n1 % lanes == 0) take_cheaper(best, {lanes, true, n1, transposing(n1, n2, lanes, cycles_for(n / lanes))});
}

struct search {
  std::int8_t radix[32];
  std::int8_t best[32];
  std::int32_t count;
  double cost;
};

void extend(search *s, std::int32_t n, std::int32_t passes, std::size_t from, double cost) {
  if (cost >= s->cost) return;
  if (n == 1) {
    s->cost = cost;
    s->count = passes;
    for (std::int32_t i = 0; i < passes; ++i) s->best[i] = s->radix[passes - 1 - i];
    return;
  }
  for (std::size_t i = from; i < sizeof butterflies / sizeof *butterflies; ++i) {
    const std::int32_t r = butterflies[i].radix;
    if (n % r != 0) continue;
    s->radix[passes] = butterflies[i].radix;
    extend(s, n / r, passes + 1, i, cost + butterflies[i].cycles / r);
  }
}

std::int32_t without_small_factors(std::int32_t n) {
  static constexpr std::int32_t small[] = {2, 3, 5, 7, 11, 13};
  for (const std::int32_t p : small)
    while (n % p == 0) n /= p;
  return n;
}

}  // namespace

mixed_shape shape_of(std::int32_t n, std::int32_t widest) {
  if (is_direct(n)) return {1, false, 1, static_cast<double>(10 * n)};
  const bool all_lanes = widest == 1;
  mixed_shape best = {1, false, 1, all_lanes ? n * cycles_for(n) : HUGE_VAL};
  if (all_lanes) return best;
  if (n <= largest_radix && without_small_factors(n) == n) return {1, false, 1, prime_cycles(n)};
  for (std::int32_t d = 1; d <= n / d; ++d) {
    if (n % d != 0) continue;
    for (std::int32_t lanes = widest; lanes > 1; lanes /= 2) {
      try_rows(n, d, lanes, &best);
      try_rows(n, n / d, lanes, &best);
    }
  }
  return best;
}

std::int32_t choose_radices(std::int32_t n, std::int8_t *radix) {
  search s = {{}, {}, 0, HUGE_VAL};
  const std::int32_t prime = without_small_factors(n);
  if (prime > 1) s.radix[0] = static_cast<std::int8_t>(prime);
  extend(&s, n / prime, prime > 1 ? 1 : 0, 0, 0.0);
  for (std::int32_t i = 0; i < s.count; ++i) radix[i] = s.best[i];
  return s.count;
}

}  // namespace dsp::fft
