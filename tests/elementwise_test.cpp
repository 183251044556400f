// Element-wise arithmetic and functions, order, length, calculus and generators.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <numeric>
#include <random>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "dsp/dsp.h"
#include "dsp/math/sort.h"
#include "tests/support/each_isa.h"
#include "tests/support/record.h"
#include "tests/support/routines.h"
#include "tests/support/wide.h"

namespace {

using namespace support;
using wide_complex = std::complex<long double>;
using in_place = std::function<int32_t(dsp_vec *)>;

const double inf = std::numeric_limits<double>::infinity();
const double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double pi = 3.141592653589793;
constexpr double turn = 2 * pi;
constexpr double log10_e = 0.4342944819032518;
constexpr double bound = 1e100;
constexpr double tiny = 2.2250738585072014e-308;

const char *const each_sample[] = {
    "dspi_real",   "dspi_imag",    "dspi_rtoc",  "dspi_conj",   "dspi_neg",    "dspi_offset", "dspi_scale",
    "dspi_cscale", "dspi_recip",   "dspi_sqrt",  "dspi_square", "dspi_timesi", "dspi_limit",  "dspi_zero",
    "dspi_mag",    "dspi_magsq",   "dspi_phase", "dspi_rtop",   "dspi_ptor",   "dspi_db",     "dspi_exp",
    "dspi_exp10",  "dspi_log",     "dspi_log10", "dspb_add",    "dspb_sub",    "dspb_mul",    "dspb_conj_mul",
    "dspb_div",    "dspb_avg_add", "dspb_max",   "dspb_min"};

const routine *find(const std::string &name) {
  const auto row = std::find_if(routines().begin(), routines().end(), [&](const routine &r) { return r.name == name; });
  return row == routines().end() ? nullptr : &*row;
}

int32_t run(const std::string &name, const std::vector<dsp_vec *> &signals) {
  call c = {signals.data(), 0, {}};
  return find(name)->run(c);
}

// Random samples with special values among them.
record awkward_signal(std::size_t n, bool is_complex, unsigned seed) {
  const double special[] = {0.0, -0.0, 1e101, -1e101, 1e-310, -1e-310, inf, -inf, nan, 1e200, 1e-200, 300.0, -2.0};
  record v = random_signal(n, is_complex, seed, 0.5);
  const std::size_t doubles = is_complex ? 2 * n : n;
  for (std::size_t i = seed % 3; i < doubles; i += 1 + (seed + i) % 5) v.data[i] = special[(i + seed) % 13];
  return v;
}

TEST(EachSample, IsTreatedAlikeWhereverItLies) {
  on_each_isa([] {
    for (const std::string name : each_sample)
      for (int mix = 0; mix < (name[3] == 'b' ? 4 : 2); ++mix)
        for (const std::size_t n : {1u, 2u, 3u, 5u, 7u, 8u, 9u, 16u, 31u, 67u}) {
          SCOPED_TRACE(name + " mix " + std::to_string(mix) + " of " + std::to_string(n));
          record a = awkward_signal(n, mix & 1, static_cast<unsigned>(n)), out(reals{1}), whole;
          const record b = awkward_signal(n, mix & 2, 2);
          if (name == "dspi_exp10") dspi_limit(&a, -1e99, 1e300, nullptr);  // which a real sample below -1e100 ends
          for (int32_t i = 0; i < a.length; ++i) {
            record x, y, one;
            EXPECT_EQ(dspu_subvec(&a, &x, i, 1) | dspu_subvec(&b, &y, i, 1), 0);
            EXPECT_EQ(run(name, {&x, &y, &one}), 0);
            whole.dx = a.dx;
            EXPECT_EQ(dsp_append(&whole, name[3] == 'b' ? &one : &x), 0);
          }
          if (const std::string into = "dspu" + name.substr(4); find(into) != nullptr) {
            ASSERT_EQ(run(into, {&a, &out}), 0);
            EXPECT_TRUE(same(out, whole));
          }
          ASSERT_EQ(run(name, {&a, const_cast<record *>(&b), &out}), 0);
          EXPECT_TRUE(same(name[3] == 'b' ? out : a, whole));
        }
  });
}

// A call in place with what the routine takes beside the signal.
template <class... P, class... N>
in_place with(int32_t (*f)(dsp_vec *, P...), N... numbers) {
  return [=](dsp_vec *v) { return f(v, numbers...); };
}

record sized(int32_t n, bool is_complex, double dx = 1.0) {
  record v;
  v.length = n;
  v.is_complex = is_complex;
  v.dx = dx;
  return v;
}

TEST(InPlace, KnownValues) {
  const double floor1 = -307.6526555685888, floor20 = 20 * floor1, floor_e = -708.3964185322641;
  const double half = std::sqrt(0.5), r2 = std::sqrt(2.0);
  const complex i(0, 1);
  struct {
    in_place run;
    record in, out;
    double tolerance = 0.0;
  } cases[] = {
      {with(dspi_db, 20), reals{0, -1, 1e-310, 1, tiny, nan}, reals{floor20, floor20, floor20, 0, floor20, nan}},
      {with(dspi_db, 10), complexes{{0, 1}, {0, 0}, {1e150, 0}, {nan, 1}},
       complexes{{0, 10 * (pi / 2) * log10_e}, {10 * floor1, 0}, {1000, 0}, {nan, nan}}, 1e-13},
      {with(dspi_db, 1), complexes{{1e101, -1e101}}, complexes{{std::log10(2e200) / 2, -pi / 4 * log10_e}}, 1e-14},
      {dspi_recip, reals{0, 4, -0.0}, reals{bound, 0.25, bound}},
      {dspi_recip, complexes{{1e101, 0}, {0, 0}, {3, 4}, {1e-170, 0}},
       complexes{{10, -0.0}, {0, -0.0}, {0.12, -0.16}, {1e-70, -0.0}}, 1e-16},
      {dspi_sqrt, reals{-4, 4, nan}, reals{0, 2, nan}},
      {dspi_sqrt, complexes{{-4, 0}, {0, 0}, {0, -2}, {1e101, 0}, {-4, -0.0}},
       complexes{{0, 2}, {0, 0}, {1, -1}, {1e50, 0}, {0, -2}}, 1e-15},
      {dspi_square, reals{3, 1e101, -std::nextafter(bound, inf), bound}, reals{9, bound, bound, 1e200}},
      {dspi_square, complexes{{1, 2}, {-1e101, 3}, {2, -1e150}, {1e101, 1e101}},
       complexes{{-3, 4}, {1e200, 3 * -2e100}, {-1e200, -4e100}, {0, bound * 2e100}}},
      {dspi_mag, complexes{{3, -4}, {inf, nan}, {1e200, 1e200}, {3e-320, 4e-320}, {nan, 0}, {0, 0}},
       reals{5, inf, std::hypot(1e200, 1e200), std::hypot(3e-320, 4e-320), nan, 0}},
      {dspi_magsq, complexes{{3, -4}, {0, 1e101}, {nan, 2}}, reals{25, bound, nan}},
      {dspi_phase, reals{-1, 0, -0.0, nan, 2}, reals{pi, 0, 0, 0, 0}},
      {dspi_phase, complexes{{0, -1}, {-0.0, 0}, {-0.0, -0.0}, {-1, 0}}, reals{-pi / 2, 0, 0, pi}},
      {dspi_rtop, reals{-3, 2}, complexes{{3, pi}, {2, 0}}},
      {dspi_ptor, complexes{{2, pi / 2}, {-1, 0}}, complexes{{0, 2}, {-1, 0}}, 1e-15},
      {dspi_ptor, reals{-3, 2}, reals{-3, 2}},
      {dspi_imag, reals{1, 2}, reals{0, 0}},
      {dspi_asin, reals{2, 1, -0.5, nan}, reals{0, pi / 2, -pi / 6, nan}, 2e-16},
      {dspi_acos, reals{-1.1, 1, -1}, reals{0, 0, pi}},
      {dspi_sinh, reals{231, -231, 1}, reals{bound, -bound, (std::exp(1) - std::exp(-1)) / 2}, 1e-15},
      {dspi_cosh, reals{231, -231, 0}, reals{bound, bound, 1}},
      {dspi_besy0, reals{0, -1, 1}, reals{0, 0, 0.088256964215676958}, 1e-16},
      {dspi_besy1, reals{0, -1, 1}, reals{0, 0, -0.78121282130028871}, 2e-16},
      {dspi_exp, reals{231, 0, -1000, inf, -inf, nan, -1e300}, reals{bound, 1, 0, bound, 0, nan, 0}},
      {dspi_exp, reals{230.25850929940458}, reals{bound}, 2e86},
      {dspi_exp, complexes{{231, pi / 2}, {0, pi}},
       complexes{{bound * 6.123233995736766e-17, bound}, {-1, 1.2246467991473532e-16}}, 1e84},
      {dspi_exp10, reals{1, -1e101, 2}, reals{10, -1e101, 2}, 1e-14},
      {dspi_exp10, reals{101, -400, -bound}, reals{bound, 0, 0}},
      {dspi_exp10, complexes{{-1e101, 0}, {-2, 0}}, complexes{{-bound, -0.0}, {0.01, 0}}, 1e-16},
      {dspi_log, reals{0, -1, 1, tiny}, reals{floor_e, floor_e, 0, floor_e}},
      {dspi_log, complexes{{1e101, 0}, {0, -2}, {1e-160, 0}},
       complexes{{115.12925464970229, 0}, {std::log(2), -pi / 2}, {floor_e, 0}}, 2e-16},
      {dspi_log10, reals{0, 1, 10, 100, 1e-3, 1e22, inf, nan}, reals{floor1, 0, 1, 2, -3, 22, inf, nan}},
      {dspi_log10, complexes{{half, half}}, complexes{{0, pi / 4 * log10_e}}, 1e-16},
      {with(dspi_limit, 5, -5, nullptr), reals{-7, 7, 1, nan}, reals{-5, 5, 1, nan}},
      {with(dspi_shift, 2), record(reals{1, 2, 3}, 4.0), record(reals{3}, 4.0)},
      {with(dspi_shift, -2), complexes{i, 2.}, complexes{i, 2.}},
      {with(dspi_shift, 7), reals{1, 2, 3}, reals{}},
      {dspi_sort, reals{3, nan, -1, inf, -inf, nan, 2}, reals{-inf, -1, 2, 3, inf, nan, nan}},
      {dspi_sort, complexes{{3, 4}, {nan, 0}, {-5, 0}, {1e101, 0}, {0, 1e102}, {3, -4}, {1, 1}},
       complexes{{1, 1}, {-5, 0}, {3, -4}, {3, 4}, {0, 1e102}, {1e101, 0}, {nan, 0}}},
      {with(dspi_zpad, 4), complexes{i, 2}, complexes{i, 2, 0, 0}},
      {with(dspi_zpad, 1), reals{1, 2}, reals{1, 2}},
      {with(dspi_zpad2, 8, 0x102), reals{1, 2, 3}, reals{0, 0, 0, 1, 2, 3, 0, 0}},
      {with(dspi_zpad2, 8, 0x302), reals{1, 2, 3}, reals{1, 2, 0, 0, 0, 0, 0, 3}},
      {with(dspi_zpad2, 4, 0), reals{1, 1}, reals{2, 2, 0, 0}},
      {with(dspi_zpad2, 4, 0x201), reals{1, 1}, reals{0, 0, r2, r2}},
      {with(dspi_zpad2, 5, 0x7ffff8fa), complexes{1. + i, 2, 3}, complexes{1. + i, 2, 3, 0, 0}},
      {with(dspi_zpad2, 3, 3), reals{1, 1, 1}, reals{1, 1, 1}},
      {with(dspi_unzpad, 3, 0x302), reals{1, 2, 0, 0, 0, 0, 0, 3}, reals{1, 2, 3}},
      {with(dspi_unzpad, 2, 0x200), reals{0, 0, 4, 8}, reals{2, 4}},
      {with(dspi_unzpad, 3, 0x102), reals{0, 0, 0, 1, 2, 3, 0, 0}, reals{1, 2, 3}},
      {with(dspi_unzpad, -3, 0), reals{1, 2}, reals{}},
      {with(dspi_unzpad, 2, 0x703), reals{1, 2}, reals{1, 2}},
      {dspi_recon, complexes{1, 2. + i, 3}, complexes{1, 2. + i, 3, 2. - i}},
      {dspi_recon, reals{1, 2}, reals{1, 2}},
      {with(dspi_orecon, 1), complexes{1, 2. + i, 3. - i}, complexes{1, 2. + i, 3. - i, 3. + i, 2. - i}},
      {with(dspi_orecon, 1), reals{1, 2}, reals{1, 2, 2}},
      {with(dspi_orecon, 0), reals{1, 2}, reals{1, 2}},
      {with(dspi_orecon, 0), reals{1, 2, 3, 4}, reals{1, 2, 3, 4, 3, 2}},
      {dspi_differ, record(complexes{1. + i, 3. + 3. * i}, 0.0),
       record(complexes{{1e100, 1e100}, {2e100, 2e100}}, 0.0)},
      {dspi_unwrap, reals{4}, reals{4 - turn}},
      {dspi_unwrap, reals{1, nan, 1 + turn, inf, 2}, reals{1, nan, 1, nan, 2}},
      {with(dspi_unwrap_wnd, 1), reals{1, 1 + turn}, reals{1, 1}},
      {with(dspi_unwrap_wnd, 0), reals{4, 8, 1}, reals{4 - turn, 8 - turn, 1}},
      {with(dspi_edge, DSP_EDGE_RISING | DSP_EDGE_FALLING, 1), record(reals{0, 2, 0}, 3.0), reals{1.5, 4.5}},
      {with(dspi_edge, +DSP_EDGE_RISING, 1), reals{1, 2, 0, 1}, reals{0}},
      {with(dspi_edge, -2, 1), reals{1, 2, 1, 0, 1}, reals{2}},
      {with(dspi_edge, 4, 1), reals{0, 2, 0}, reals{}},
      {with(dspi_edge, DSP_EDGE_RISING | DSP_EDGE_FALLING, 1), reals{nan, 2, nan, 0}, reals{}},
      {with(dspc_line, 2, 1), sized(4, false, 0.5), record(reals{1, 2, 3, 4}, 0.5)},
      {with(dspc_line, -1, 3), sized(2, true), complexes{3, 2}},
      {with(dspc_line, 1, 0), sized(9, false, 0.1),
       record(reals{0, 0.1, 0.2, 0.1 + 0.2, 0.4, 0.5, 0.6, 0.7, 0.7999999999999999}, 0.1)},
      {with(dspc_cexp, 0, 0), sized(2, true), complexes{1, 1}},
  };
  for (auto &c : cases) {
    SCOPED_TRACE("case " + std::to_string(&c - cases));
    ASSERT_EQ(c.run(&c.in), 0);
    EXPECT_TRUE(c.tolerance == 0.0 ? same(c.in, c.out) : near(c.in, c.out, c.tolerance));
  }
}

TEST(InPlace, LimitTellsWhetherAnythingChanged) {
  int32_t clipped = 7;
  for (std::size_t at = 0; at < 19; ++at)
    for (const double x : {2.0, -2.0, 1.0, nan}) {
      record v(reals(20, 0.5));
      v.data[at] = x;
      v.data[v.length = 19] = 9;
      EXPECT_EQ(dspi_limit(&v, -1, 1, &clipped), 0);
      EXPECT_EQ(clipped, std::abs(x) > 1 ? 1 : 0);
    }
}

// Relative errors of the magnitude |got - expected| / |expected| in units of epsilon/2.
TEST(InPlace, AgreesWithLongDouble) {
  const wide_complex i(0, 1);
  const struct {
    in_place run;
    std::function<wide_complex(wide_complex)> expected;
    double limit;
  } cases[] = {
      {with(dspi_scale, 1.5), [](wide_complex z) { return 1.5L * z; }, 1},
      {with(dspi_cscale, 0.3, -1.7), [](wide_complex z) { return wide_complex(0.3, -1.7) * z; }, 3},
      {dspi_recip, [](wide_complex z) { return 1.0L / z; }, 5},
      {dspi_square, [](wide_complex z) { return z * z; }, 3},
      {dspi_timesi, [i](wide_complex z) { return i * z; }, 0},
      {dspi_mag, [](wide_complex z) { return wide_complex(std::abs(z)); }, 2},
      {dspi_magsq, [](wide_complex z) { return wide_complex(std::norm(z)); }, 2},
      {dspi_rtop, [](wide_complex z) { return wide_complex(std::abs(z), std::arg(z)); }, 3},
      {dspi_sqrt, [](wide_complex z) { return std::sqrt(z); }, 6},
      {dspi_exp, [](wide_complex z) { return std::exp(z); }, 4},
      {dspi_log,
       [](wide_complex z) { return wide_complex(std::log(std::norm(wide_complex(complex(z)))) / 2, std::arg(z)); }, 10},
  };
  for (const auto &f : cases) {
    const complexes x = random_complexes(1000, 11);
    record out(x);
    ASSERT_EQ(f.run(&out), 0);
    const complexes y = complexes_of(out);
    for (std::size_t k = 0; k < x.size(); ++k) {
      const wide_complex exact = f.expected(wide_complex(x[k]));
      ASSERT_LE(std::abs(wide_complex(y[k]) - exact) * 0x1p53L, f.limit * std::abs(exact)) << "case " << &f - cases;
    }
  }
}

// Distance of `got` from the exact value in units in the last place of that value.
double units(double got, wide exact) {
  const double size = std::abs(static_cast<double>(exact));
  const double unit = size - std::nextafter(size, 0.0);
  return got == static_cast<double>(exact) ? 0.0 : static_cast<double>(abs(got - exact) / unit);
}

TEST(InPlace, ExponentialsAndLogarithmsAreRightToTheLastPlace) {
  const struct {
    int32_t (*run)(dsp_vec *);
    wide (*exact)(wide);
    bool of_powers;  // the ranges are of exponents
    std::vector<std::pair<double, double>> ranges;
  } cases[] = {
      {dspi_exp, [](wide x) { return exp(x); }, false, {{-1, 1}, {-745, 230}}},
      {dspi_exp10, [](wide x) { return exp(wide(static_cast<double>(x) * 2.302585092994046)); }, false, {{-320, 100}}},
      {dspi_log, [](wide x) { return log(x); }, true, {{-1, 1}, {-1022, 1023}}},
      {dspi_log10, [](wide x) { return log10(x); }, true, {{-1, 1}, {-0.015, 0.015}, {-1022, 1023}}},
  };
  for (const auto &c : cases)
    for (const auto &[from, to] : c.ranges) {
      reals x = random_reals(20000, 12);
      for (double &value : x) {
        value = from + (to - from) * (0.5 + 0.5 * value);
        if (c.of_powers) value = std::exp2(value);
      }
      record v(x);
      ASSERT_EQ(c.run(&v), 0);
      for (std::size_t i = 0; i < x.size(); ++i)
        ASSERT_LE(units(v.data[i], c.exact(x[i])), 1.0) << "case " << &c - cases << " of " << x[i];
    }
}

TEST(Binary, KnownValues) {
  struct {
    std::function<int32_t(const dsp_vec *, const dsp_vec *, dsp_vec *)> run;
    record a, b, out;
  } cases[] = {
      {dspb_div, reals{1, -1, 0, 6}, reals{0, 0, 0, 4}, reals{bound, bound, 0, 1.5}},
      {dspb_div, complexes{{1, 1}, {0, 0}, {1, 2}, {1, 0}}, complexes{{0, 0}, {0, 0}, {1, -2}, {1e-170, 0}},
       complexes{{bound, bound}, {0, 0}, {-0.6, 0.8}, {bound, bound}}},
      {dspb_div, complexes{{1, 2}, {1, 0}, {0, 0}}, reals{2, 0, 0}, complexes{{0.5, 1}, {bound, bound}, {0, 0}}},
      {dspb_div, reals{10, 1, 0}, complexes{{3, 4}, {0, 0}, {0, 0}}, complexes{{1.2, -1.6}, {bound, bound}, {0, 0}}},
      {dspb_add, record(reals{1, 2, 3}, 1), record(reals{1, 1, 1, 4, 5}, 3), record(reals{2, 3, 4, 4, 5}, 2)},
      {dspb_sub, reals{1, 2, 3}, complexes{{1, 7}}, complexes{{0, -7}, {2, -0.0}, {3, -0.0}}},
      {dspb_sub, reals{1}, complexes{{1, 7}, {2, 3}}, complexes{{0, -7}, {-2, -3}}},
      {dspb_mul, complexes{{1, 2}}, complexes{{3, -4}}, complexes{{11, 2}}},
      {dspb_conj_mul, complexes{{1, 2}}, complexes{{3, -4}}, complexes{{-5, 10}}},
      {dspb_conj_mul, reals{2}, complexes{{3, -4}}, complexes{{6, 8}}},
      {dspb_conj_mul, complexes{{1, 2}}, reals{3}, complexes{{3, 6}}},
      {dspb_max, complexes{{3, 4}, {1, 1}}, reals{-5, 1}, complexes{{-5, 0}, {1, 1}}},
      {dspb_max, reals{3, nan, 1}, reals{-5, 2, nan}, reals{3, 2, nan}},
      {dspb_max, complexes{{1e101, 0}}, complexes{{0, 1e60}}, complexes{{0, 1e60}}},
      {dspb_min, complexes{{3, 4}, {0, 0}}, complexes{{5, 0}, {1, 1}}, complexes{{5, 0}, {0, 0}}},
      {dspb_min, reals{3}, reals{-5}, reals{-5}},
      {dspb_pmul, record(reals{1, 2}, 3.0), record(reals{3, 4, 5}, 9.0), record(reals{3, 10, 13, 10}, 3.0)},
      {dspb_pmul, complexes{{0, 1}, {1, 0}}, reals{1, 1}, complexes{{0, 1}, {1, 1}, {1, 0}}},
      {dspb_pmul, complexes{{0, 1}}, complexes{{0, 1}, {2, 1}}, complexes{{-1, 0}, {-1, 2}}},
      {dspb_pmul, reals{1}, complexes{}, complexes{}},
      {dspb_ritoc, record(reals{1, 2}, 1), record(reals{3, 4}, 2), record(complexes{{1, 3}, {2, 4}}, 1.5)},
      {dspbs_dot, complexes{{0, 1}}, complexes{{0, 1}}, complexes{{-1, 0}}},
      {dspbs_dot, reals{1, 2}, complexes{{3, 1}, {4, 2}}, complexes{{11, 5}}},
      {dspbs_dot, complexes{{3, 1}, {4, 2}}, reals{1, 2}, complexes{{11, 5}}},
      {dspbs_dot, reals{1e16, 1, -1e16}, reals{1, 1, 1}, reals{0}},
      {dspbs_dot, reals{}, reals{}, reals{0}},
  };
  for (const auto &c : cases) {
    SCOPED_TRACE("case " + std::to_string(&c - cases));
    record fresh;
    ASSERT_EQ(c.run(&c.a, &c.b, &fresh), 0);
    EXPECT_TRUE(same(fresh, c.out));
  }
}

TEST(Refuses, WithoutTouchingAnything) {
  const record before(complexes{{0.5, 1}}, 3.0);
  record two(reals{1, 2}), three(reals{1, 2, 3}), z(complexes{{1, 2}, {3, 4}}), longest, out(before);
  longest.length = std::numeric_limits<int32_t>::max();
  for (const char *const name : {"dspi_asin", "dspi_acos", "dspi_sinh", "dspi_cosh", "dspi_besy0", "dspi_besy1",
                                 "dspi_unwrap", "dspi_unwrap_wnd", "dspi_edge"})
    EXPECT_EQ(run(name, {&out}), -1) << name;
  for (const char *const name :
       {"dspb_mul", "dspb_conj_mul", "dspb_div", "dspb_avg_add", "dspb_max", "dspb_min", "dspb_ritoc", "dspbs_dot"})
    EXPECT_EQ(run(name, {&two, &three, &out}), -1) << name;
  EXPECT_EQ(dspb_ritoc(&two, &z, &out), -1);
  EXPECT_EQ(dspb_ritoc(&z, &two, &out), -1);
  EXPECT_EQ(dspb_pmul(&longest, &two, &out), -1);
  EXPECT_EQ(dspi_orecon(&longest, 0), -1);
  EXPECT_TRUE(same(out, before));
  for (const in_place &call : {with(dspi_unzpad, 1, 3), with(dspi_unzpad, 1, 0x502), with(dspi_unwrap_wnd, -1),
                               with(dspi_zpad2, 5, 3), with(dspi_zpad2, 5, 0x402)}) {
    record v(two);
    EXPECT_EQ(call(&v), -1);
  }
  EXPECT_EQ(dspi_zpad(&z, 0x7fffffff), -1);  // more doubles than can be counted
  EXPECT_TRUE(z.data == nullptr && z.capacity == 0);
}

TEST(Reshape, CuttingUndoesPadding) {
  for (const bool is_complex : {false, true})
    for (int32_t old = 1; old < 9; ++old)
      for (int32_t longer = old + 1; longer < 20; ++longer)
        for (const int32_t place : {0x000, 0x100, 0x200, 0x300}) {
          SCOPED_TRACE(std::to_string(old) + " to " + std::to_string(longer) + " placed " + std::to_string(place));
          const record in = random_signal(static_cast<std::size_t>(old), is_complex, 5);
          record v(in);
          ASSERT_EQ(dspi_zpad2(&v, longer, place | 2), 0);
          const complexes padded = complexes_of(v);
          EXPECT_EQ(longer - old, std::count(padded.begin(), padded.end(), complex(0.0, 0.0)));
          EXPECT_TRUE(place != 0x100 || padded.begin()[longer / 2] == complexes_of(in).begin()[old / 2]);
          ASSERT_EQ(dspi_unzpad(&v, old, place | 2), 0);
          EXPECT_TRUE(same(v, in));
          ASSERT_EQ(dspi_zpad2(&v, longer, place) | dspi_unzpad(&v, old, place), 0);
          EXPECT_TRUE(near(v, in, 4e-16));
        }
}

// What becomes of n samples whose spacing is 0.3, by the definition.
TEST(Reshape, KeepsToTheDefinitionsAtEveryLength) {
  const auto rotated = [](complexes z, std::size_t by) {
    std::rotate(z.begin(), z.begin() + static_cast<std::ptrdiff_t>(by), z.end());
    return z;
  };
  const struct {
    in_place run;
    std::function<complexes(const complexes &)> expected;
  } cases[] = {
      {dspi_rev, [](const complexes &z) { return complexes(z.rbegin(), z.rend()); }},
      {dspi_swap_halves, [&](const complexes &z) { return rotated(z, z.size() - z.size() / 2); }},
      {dspi_swap_halves2, [&](const complexes &z) { return rotated(z, z.size() / 2); }},
      {dspi_differ,
       [](complexes z) {
         for (std::size_t i = z.size(); i-- > 0;) z[i] = (z[i] - (i > 0 ? z[i - 1] : 0.0)) / 0.3;
         return z;
       }},
      {dspi_integ,
       [](complexes z) {
         std::partial_sum(z.begin(), z.end(), z.begin());
         for (complex &sum : z) sum *= 0.3;
         return z;
       }},
      {dspi_pdiffer,
       [](const complexes &z) {
         complexes derivative;
         for (std::size_t i = 1; i < z.size(); ++i) derivative.push_back(static_cast<double>(i) * z[i]);
         return derivative;
       }},
  };
  for (const auto &c : cases)
    for (const bool is_complex : {false, true})
      for (std::size_t n = 0; n < 46; ++n) {
        record v = random_signal(n, is_complex, 6, 0.3);
        const complexes expected = c.expected(complexes_of(v));
        ASSERT_EQ(c.run(&v), 0);
        EXPECT_TRUE(same(v, signal_of(expected, is_complex, 0.3))) << "case " << &c - cases << " of " << n;
      }
}

TEST(Reshape, SortsWhateverTheOrder) {
  std::mt19937 engine(7);
  for (const int n : {1, 2, 17, 1000, 30000})
    for (int pattern = 0; pattern < 6; ++pattern) {
      reals x;
      complexes z;
      for (int i = 0; i < n; ++i) {
        const int any = static_cast<int>(engine() % 1000001) - 500000;
        const int value[] = {any, i, n - i, 1, any % 3, std::min(i, n - i)};
        x.push_back(value[pattern] / 1e6);
        z.emplace_back(x.back(), any % 2);
      }
      record v(x), w(z);
      ASSERT_EQ(dspi_sort(&v) | dspi_sort(&w), 0);
      std::sort(x.begin(), x.end());
      const auto rank = [](complex c) { return std::make_tuple(std::norm(c), c.real(), c.imag()); };
      std::sort(z.begin(), z.end(), [&](complex a, complex b) { return rank(a) < rank(b); });
      EXPECT_EQ(doubles_of(v), x);
      EXPECT_EQ(complexes_of(w), z);
    }
}

// An adversary that chooses values only when they are compared, so that every pivot is among the smallest. (McIlroy, A
// killer adversary for quicksort, 1999.)
TEST(Reshape, SortsInTimeWhateverThePivots) {
  constexpr std::size_t n = 4000, open = n;
  for (const bool selects : {false, true}) {
    std::vector<std::size_t> value(n, open), order(n);
    value[0] = value[2] = 1, value[1] = 0;  // neither in order nor in reverse order, which is tested first
    std::size_t fixed = 2, candidate = 0, comparisons = 0;
    const auto before = [&](std::size_t a, std::size_t b) {
      ++comparisons;
      if (value[a] == open && value[b] == open) value[a == candidate ? a : b] = fixed++;
      if (value[a] == open) candidate = a;
      if (value[b] == open) candidate = b;
      return value[a] < value[b];
    };
    std::iota(order.begin(), order.end(), std::size_t{0});
    if (selects)
      dsp::select(order.data(), n, n / 2, before);
    else
      dsp::sort(order.data(), n, before);
    EXPECT_LT(comparisons, 80 * n);  // 40 n for a random order
    for (std::size_t i = 0; i < n / 2; ++i) ASSERT_FALSE(before(order[n / 2], order[i]));
    for (const std::size_t looks : {n - 1, n + 1}) {  // for samples in order, and in reverse order
      if (selects) continue;
      EXPECT_TRUE(std::is_sorted(order.begin(), order.end(), before));
      if (looks > n) std::reverse(order.begin(), order.end());
      comparisons = 0;
      dsp::sort(order.data(), n, before);
      EXPECT_LE(comparisons, looks);
    }
  }
}

// The definition, with fmod.
double unwrapped(double x, double reference) {
  const double d = x - reference;
  if (d >= -pi && d <= pi) return x;
  const double r = std::fmod(d, turn);
  return reference + (r > pi ? r - turn : r < -pi ? r + turn : r);
}

TEST(Calculus, UnwrapsToTheLastBit) {
  std::mt19937_64 engine(3);
  for (const double step : {0.01, 0.7, 2.0, 3.1, 5.0, 40.0, 1e7}) {
    reals x, expected;
    double phase = 0.0, last = 0.0;
    for (int i = 0; i < 3000; ++i) {
      phase += step * (static_cast<double>(engine() >> 11) * 0x1p-53 + (i < 2000 ? 0.3 : -0.8));
      const double corner[] = {pi, -pi, turn, 3 * pi, -3 * pi, -turn};
      x.push_back(i % 50 == 0   ? corner[engine() % 6]
                  : step > 1e6  ? phase
                  : step == 5.0 ? 1e8 + phase
                                : std::remainder(phase, turn));
      expected.push_back(last = unwrapped(x.back(), last));
    }
    record v(x);
    ASSERT_EQ(dspi_unwrap(&v), 0);
    EXPECT_EQ(doubles_of(v), expected) << step;
    if (step > 3.0) continue;
    for (const std::size_t size : {2u, 7u}) {
      record w(x);
      ASSERT_EQ(dspi_unwrap_wnd(&w, static_cast<int32_t>(size)), 0);
      const reals y = doubles_of(w);
      for (std::size_t i = 0; i < y.size(); ++i) {
        const std::size_t n = std::min(i, size);
        double mean = 0.0;
        for (std::size_t k = i - n; k < i; ++k) mean += y[k] / static_cast<double>(n);
        ASSERT_LE(std::abs(y[i] - mean), pi + 1e-9);
        ASSERT_NEAR(std::remainder(y[i] - x[i], turn), 0.0, 1e-10);
      }
    }
  }
}

// The largest distance from the exact rotation phase + w k, whose angle is a fraction of a turn.
double worst_error(const complexes &z, wide cycles, wide phase) {
  double worst = 0.0;
  for (std::size_t k = 0; k < z.size(); ++k) {
    const wide angle = 2 * wide_pi * fmod(cycles * k, 1) + phase;
    const std::complex<wide> exact = std::polar(wide(1), angle);
    worst = std::max(worst, static_cast<double>(std::abs(std::complex<wide>(z[k]) - exact)));
  }
  return worst;
}

TEST(Generators, RotateAsExactlyAsTheirSeeds) {
  // Slow, ordinary, towards half a turn and beyond a turn; the angle per sample is a double, its cycles are wider.
  for (const double freq : {1e-9, 1e-3, 0.0317, 0.125, 0.25, 0.31, 0.4999, 0.5, 0.75, 1.3, 1000.3})
    for (const int32_t n : {1, 9, 256, 257, 600}) {
      const double w = 2 * pi * freq;
      record z = sized(n, true), c = sized(n, false), cc = sized(n, true), added(reals(600, 0.5)),
             zadded = sized(n, true);
      added.length = n;
      ASSERT_EQ(dspc_cexp(&z, freq, 0.3) | dspc_cos(&c, freq, 0.3) | dspc_cos(&cc, freq, 0.3) | dspi_zero(&zadded) |
                    dspi_addcos(&added, DSP_ADDCOS_EXPONENTIAL, freq, 2.0, 0.3) |
                    dspi_addcos(&zadded, DSP_ADDCOS_EXPONENTIAL, freq, 1.0, 0.3) |
                    dspi_addcos(&zadded, 2, freq, 1.0, 0.3),
                0);
      // What w k loses in its rounding is the seeds', not the rotation's.
      const double rounding = 600 * w * 0x1p-53;
      EXPECT_LE(worst_error(complexes_of(z), wide(w) / (2 * wide_pi), 0.3), 6e-15 + rounding) << freq << " " << n;
      complexes cosines, twice;
      reals sums;
      for (const complex e : complexes_of(z)) {
        cosines.push_back(e.real());
        twice.emplace_back(2 * e.real(), e.imag());
        sums.push_back(0.5 + 2 * e.real());
      }
      EXPECT_TRUE(same(c, signal_of(cosines, false)) && same(cc, record(cosines)));
      EXPECT_TRUE(same(added, record(sums)) && same(zadded, record(twice)));
    }
}

TEST(Generators, StayExactOverTenMillionSamples) {
  // An angle of 45 bits: the phase of every seed is exact.
  const int32_t n = 10000000;
  const double w = 0x1.2345678p-3;
  record c = sized(n, false, w / turn);
  ASSERT_EQ(turn * c.dx, w);
  ASSERT_EQ(dspc_cos(&c, 1, 0), 0);
  double worst = 0.0;
  for (int32_t i = 0; i < n; i += 7) worst = std::max(worst, std::abs(c.data[i] - std::cos(w * i)));
  EXPECT_LE(worst, 5e-15);
}

}  // namespace
