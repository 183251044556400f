// Chooses the matrix and the passes of a length. Costs are approximate cycles, as measured with AVX-512 and AVX2.
#include <cmath>

#include "dsp/fft/mixed.h"
#include "dsp/fft/mixed_kernels.h"

namespace dsp::fft {
namespace {

// Cycles of one butterfly on vectors, its products with roots included.
struct radix_cost {
  int8_t radix;
  double cycles;
};

constexpr radix_cost butterflies[] = {{15, 115}, {13, 160}, {11, 120}, {10, 74}, {9, 70}, {8, 48},
                                      {7, 48},   {6, 36},   {5, 28},   {4, 20},  {3, 16}, {2, 10}};

// Cycles for a prime without a butterfly of its own.
constexpr double prime_cycles(int32_t p) { return 1.5 * p * p; }

int32_t without_small_factors(int32_t n) {
  static constexpr int32_t small[] = {2, 3, 5, 7, 11, 13};
  for (const int32_t p : small)
    while (n % p == 0) n /= p;
  return n;
}

// Cycles for each vector in all passes of a transform of n vectors.
double cycles_for(int32_t n) {
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

constexpr int32_t groups_of(int32_t n, int32_t lanes) { return (n - 1) / lanes + 1; }

// Beyond a level 2 cache, a matrix whose columns and rows both stay within it saves visits to memory.
constexpr double strain(int32_t vectors, int32_t lanes) { return 16.0 * vectors * lanes > 1 << 20 ? 8 : 0; }

// Cycles of the two ways to run a matrix of n1 rows and n2 columns; `columns` and `rows` are those for each vector.
double transposing(int32_t n1, int32_t n2, int32_t lanes, double columns, double rows) {
  const int32_t m = n1 / lanes;
  const double calls = m > 1 ? 30.0 * (groups_of(n2, lanes) + m) : 30.0;
  return static_cast<double>(groups_of(n2, lanes)) * n1 * (columns + (m > 1 ? 16 : 12) + strain(m, lanes)) +
         static_cast<double>(m) * n2 * (rows + strain(n2, lanes)) + calls;
}

double gathering(int32_t n1, int32_t n2, int32_t lanes, double columns, double rows) {
  return static_cast<double>(groups_of(n2, lanes)) * (n1 * (columns + 7 + strain(n1, lanes)) + 40) +
         static_cast<double>(groups_of(n1, lanes)) * (n2 * (rows + 7 + strain(n2, lanes)) + 40);
}

// The cost of a vector of pairs, one register, over that of a vector of parts, two registers.
constexpr double half_vector = 0.55;

void take_cheaper(mixed_shape *best, const mixed_shape &other) {
  if (other.cost < best->cost) *best = other;
}

void try_rows(int32_t n, int32_t n1, int32_t widest, mixed_shape *best) {
  const int32_t n2 = n / n1;
  const double rows = cycles_for(n2);
  const double columns = cycles_for(n1);
  for (int32_t lanes = widest; lanes > 1; lanes /= 2) {
    if (n1 < lanes || n2 < lanes) continue;
    const double share = lanes < widest ? half_vector : 1.0;
    take_cheaper(best, {lanes, false, n1, share * gathering(n1, n2, lanes, columns, rows)});
    if (n1 % lanes == 0)
      take_cheaper(best, {lanes, true, n1, share * transposing(n1, n2, lanes, cycles_for(n1 / lanes), rows)});
  }
}

struct search {
  int32_t lanes;
  int8_t radix[32];
  int8_t best[32];
  int32_t count;
  double cost;
};

// For the radices of the table above.
constexpr bool is_prime(int32_t r) { return r == 2 || r == 3 || r == 5 || r == 7 || r == 11 || r == 13; }

double cycles_of(const radix_cost &butterfly, int32_t lanes) {
  return has_butterfly(butterfly.radix, lanes) ? butterfly.cycles : prime_cycles(butterfly.radix);
}

void extend(search *s, int32_t n, int32_t passes, std::size_t from, double cost) {
  if (cost >= s->cost) return;
  if (n == 1) {
    s->cost = cost;
    s->count = passes;
    for (int32_t i = 0; i < passes; ++i) s->best[i] = s->radix[passes - 1 - i];
    return;
  }
  for (std::size_t i = from; i < sizeof butterflies / sizeof *butterflies; ++i) {
    const int32_t r = butterflies[i].radix;
    if (n % r != 0 || (!is_prime(r) && !has_butterfly(r, s->lanes))) continue;
    s->radix[passes] = butterflies[i].radix;
    extend(s, n / r, passes + 1, i, cost + cycles_of(butterflies[i], s->lanes) / r);
  }
}

}  // namespace

mixed_shape shape_of(int32_t n, int32_t widest) {
  if (widest == 1) return {1, false, 1, n * cycles_for(n)};  // GCOVR_EXCL_BR_LINE: where there are no vector registers
  mixed_shape best = {1, false, 1, HUGE_VAL};
  for (int32_t d = 1; d <= n / d; ++d) {
    if (n % d != 0) continue;
    try_rows(n, d, widest, &best);
    try_rows(n, n / d, widest, &best);
  }
  if (best.lanes == 1 && n <= largest_radix) best.cost = prime_cycles(n);  // a prime: it has no rows
  return best;
}

int32_t choose_radices(int32_t n, int32_t lanes, int8_t *radix) {
  search s = {lanes, {}, {}, 0, HUGE_VAL};
  const int32_t prime = without_small_factors(n);
  if (prime > 1) s.radix[0] = static_cast<int8_t>(prime);
  extend(&s, n / prime, prime > 1 ? 1 : 0, 0, 0.0);
  for (int32_t i = 0; i < s.count; ++i) radix[i] = s.best[i];
  return s.count;
}

}  // namespace dsp::fft
