// Arithmetic, representations, two-signal operations and elementary functions.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "dsp/dsp.h"
#include "tests/support/each_isa.h"
#include "tests/support/record.h"
#include "tests/support/routines.h"
#include "tests/support/wide.h"

namespace {

using namespace support;
using wide_complex = std::complex<long double>;

const double inf = std::numeric_limits<double>::infinity();
const double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double pi = 3.141592653589793;
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

// Random samples with the awkward ones strewn in.
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

TEST(Unary, KnownValues) {
  const double floor1 = -307.6526555685888, floor20 = 20 * floor1, floor_e = -708.3964185322641;
  const auto db = [](double factor) { return [factor](dsp_vec *v) { return dspi_db(v, factor); }; };
  const auto limit = [](double lo, double hi) { return [=](dsp_vec *v) { return dspi_limit(v, lo, hi, nullptr); }; };
  const double half = std::sqrt(0.5);
  struct {
    std::function<int32_t(dsp_vec *)> run;
    record in, out;
    double tolerance;
  } cases[] = {
      {db(20), reals{0, -1, 1e-310, 1, tiny, nan}, reals{floor20, floor20, floor20, 0, floor20, nan}, 0},
      {db(10), complexes{{0, 1}, {0, 0}, {1e150, 0}, {nan, 1}},
       complexes{{0, 10 * (pi / 2) * log10_e}, {10 * floor1, 0}, {1000, 0}, {nan, nan}}, 1e-13},
      {db(1), complexes{{1e101, -1e101}}, complexes{{std::log10(2e200) / 2, -pi / 4 * log10_e}}, 1e-14},
      {dspi_recip, reals{0, 4, -0.0}, reals{bound, 0.25, bound}, 0},
      {dspi_recip, complexes{{1e101, 0}, {0, 0}, {3, 4}, {1e-170, 0}},
       complexes{{10, -0.0}, {0, -0.0}, {0.12, -0.16}, {1e-70, -0.0}}, 1e-16},
      {dspi_sqrt, reals{-4, 4, nan}, reals{0, 2, nan}, 0},
      {dspi_sqrt, complexes{{-4, 0}, {0, 0}, {0, -2}, {1e101, 0}, {-4, -0.0}},
       complexes{{0, 2}, {0, 0}, {1, -1}, {1e50, 0}, {0, -2}}, 1e-15},
      {dspi_square, reals{3, 1e101, -std::nextafter(bound, inf), bound}, reals{9, bound, bound, 1e200}, 0},
      {dspi_square, complexes{{1, 2}, {-1e101, 3}, {2, -1e150}, {1e101, 1e101}},
       complexes{{-3, 4}, {1e200, 3 * -2e100}, {-1e200, -4e100}, {0, bound * 2e100}}, 0},
      {dspi_mag, complexes{{3, -4}, {inf, nan}, {1e200, 1e200}, {3e-320, 4e-320}, {nan, 0}, {0, 0}},
       reals{5, inf, std::hypot(1e200, 1e200), std::hypot(3e-320, 4e-320), nan, 0}, 0},
      {dspi_magsq, complexes{{3, -4}, {0, 1e101}, {nan, 2}}, reals{25, bound, nan}, 0},
      {dspi_phase, reals{-1, 0, -0.0, nan, 2}, reals{pi, 0, 0, 0, 0}, 0},
      {dspi_phase, complexes{{0, -1}, {-0.0, 0}, {-0.0, -0.0}, {-1, 0}}, reals{-pi / 2, 0, 0, pi}, 0},
      {dspi_rtop, reals{-3, 2}, complexes{{3, pi}, {2, 0}}, 0},
      {dspi_ptor, complexes{{2, pi / 2}, {-1, 0}}, complexes{{0, 2}, {-1, 0}}, 1e-15},
      {dspi_ptor, reals{-3, 2}, reals{-3, 2}, 0},
      {dspi_imag, reals{1, 2}, reals{0, 0}, 0},
      {dspi_asin, reals{2, 1, -0.5, nan}, reals{0, pi / 2, -pi / 6, nan}, 2e-16},
      {dspi_acos, reals{-1.1, 1, -1}, reals{0, 0, pi}, 0},
      {dspi_sinh, reals{231, -231, 1}, reals{bound, -bound, (std::exp(1) - std::exp(-1)) / 2}, 1e-15},
      {dspi_cosh, reals{231, -231, 0}, reals{bound, bound, 1}, 0},
      {dspi_besy0, reals{0, -1, 1}, reals{0, 0, 0.088256964215676958}, 1e-16},
      {dspi_besy1, reals{0, -1, 1}, reals{0, 0, -0.78121282130028871}, 2e-16},
      {dspi_exp, reals{231, 0, -1000, inf, -inf, nan, -1e300}, reals{bound, 1, 0, bound, 0, nan, 0}, 0},
      {dspi_exp, reals{230.25850929940458}, reals{bound}, 2e86},
      {dspi_exp, complexes{{231, pi / 2}, {0, pi}},
       complexes{{bound * 6.123233995736766e-17, bound}, {-1, 1.2246467991473532e-16}}, 1e84},
      {dspi_exp10, reals{1, -1e101, 2}, reals{10, -1e101, 2}, 1e-14},
      {dspi_exp10, reals{101, -400}, reals{bound, 0}, 0},
      {dspi_exp10, complexes{{-1e101, 0}, {-2, 0}}, complexes{{-bound, -0.0}, {0.01, 0}}, 1e-16},
      {dspi_log, reals{0, -1, 1, tiny}, reals{floor_e, floor_e, 0, floor_e}, 0},
      {dspi_log, complexes{{1e101, 0}, {0, -2}, {1e-160, 0}},
       complexes{{115.12925464970229, 0}, {std::log(2), -pi / 2}, {floor_e, 0}}, 2e-16},
      {dspi_log10, reals{0, 1, 10, 100, 1e-3, 1e22, inf, nan}, reals{floor1, 0, 1, 2, -3, 22, inf, nan}, 0},
      {dspi_log10, complexes{{half, half}}, complexes{{0, pi / 4 * log10_e}}, 1e-16},
      {limit(5, -5), reals{-7, 7, 1, nan}, reals{-5, 5, 1, nan}, 0},
  };
  for (auto &c : cases) {
    ASSERT_EQ(c.run(&c.in), 0);
    EXPECT_TRUE(near(c.in, c.out, c.tolerance))
        << "case " << &c - cases << ": " << ::testing::PrintToString(doubles_of(c.in));
  }
}

TEST(Unary, LimitTellsWhetherAnythingChanged) {
  int32_t clipped = 7;
  for (std::size_t at = 0; at < 19; ++at)
    for (const double x : {2.0, -2.0, 1.0, nan}) {
      record v(reals(19, 0.5));
      v.data[at] = x;
      EXPECT_EQ(dspi_limit(&v, -1, 1, &clipped), 0);
      EXPECT_EQ(clipped, std::abs(x) > 1 ? 1 : 0);
    }
}

// Relative errors of the magnitude |got - expected| / |expected| in units of epsilon/2.
TEST(Unary, AgreesWithLongDouble) {
  const wide_complex i(0, 1);
  const struct {
    std::function<int32_t(dsp_vec *)> run;
    std::function<wide_complex(wide_complex)> expected;
    double limit;
  } cases[] = {
      {[](dsp_vec *v) { return dspi_scale(v, 1.5); }, [](wide_complex z) { return 1.5L * z; }, 1},
      {[](dsp_vec *v) { return dspi_cscale(v, 0.3, -1.7); }, [](wide_complex z) { return wide_complex(0.3, -1.7) * z; },
       3},
      {dspi_recip, [](wide_complex z) { return 1.0L / z; }, 5},
      {dspi_square, [](wide_complex z) { return z * z; }, 3},
      {dspi_timesi, [i](wide_complex z) { return i * z; }, 0},
      {dspi_mag, [](wide_complex z) { return wide_complex(std::abs(z)); }, 2},
      {dspi_magsq, [](wide_complex z) { return wide_complex(std::norm(z)); }, 2},
      {dspi_rtop, [](wide_complex z) { return wide_complex(std::abs(z), std::arg(z)); }, 2},
      {dspi_sqrt, [](wide_complex z) { return std::sqrt(z); }, 6},
      {dspi_exp, [](wide_complex z) { return std::exp(z); }, 4},
      {dspi_log,
       [](wide_complex z) { return wide_complex(std::log(std::norm(wide_complex(complex(z)))) / 2, std::arg(z)); }, 8},
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

TEST(Unary, ExponentialsAndLogarithmsAreRightToTheLastPlace) {
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
  for (const char *const name : {"dspi_asin", "dspi_acos", "dspi_sinh", "dspi_cosh", "dspi_besy0", "dspi_besy1"})
    EXPECT_EQ(run(name, {&out}), -1) << name;
  for (const char *const name :
       {"dspb_mul", "dspb_conj_mul", "dspb_div", "dspb_avg_add", "dspb_max", "dspb_min", "dspb_ritoc", "dspbs_dot"})
    EXPECT_EQ(run(name, {&two, &three, &out}), -1) << name;
  EXPECT_EQ(dspb_ritoc(&two, &z, &out), -1);
  EXPECT_EQ(dspb_ritoc(&z, &two, &out), -1);
  EXPECT_EQ(dspb_pmul(&longest, &two, &out), -1);
  EXPECT_TRUE(same(out, before));
}

}  // namespace
