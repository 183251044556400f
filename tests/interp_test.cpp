// Interpolation on a grid, spline derivatives, interleaving.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>

#include "dsp/dsp.h"
#include "tests/support/record.h"

namespace {

using namespace support;

constexpr int32_t clamped = DSP_INTERP_CLAMP;

TEST(Grid, SchemesAndEnds) {
  const double nan = std::nan("");
  const reals x2 = {0, 1}, x3 = {0, 1, 2}, squares = {0, 1, 4};
  struct {
    int32_t mode;
    reals x, y, queries, expected;
  } cases[] = {
      {DSP_INTERP_LINEAR, x2, {0, 10}, {-1, 0.5, 2}, {-10, 5, 20}},
      {DSP_INTERP_LINEAR | clamped, x2, {0, 10}, {-1, 0.5, 2, 0.5}, {0, 5, 10, 10}},
      {DSP_INTERP_LINEAR | clamped, x2, {3, 10}, {-1, -2}, {3, 3}},
      {DSP_INTERP_LINEAR, x2, {0, 10}, {nan, 0.5}, {nan, 5}},
      {DSP_INTERP_HOLD, x3, {1, 2, 3}, {-1, 0.5, 1, 5, 0}, {1, 1, 2, 3, 3}},
      {DSP_INTERP_QUADRATIC, x3, squares, {-1, 0.25, 1.5, 3}, {1, 0.0625, 2.25, 9}},
      {DSP_INTERP_QUADRATIC | clamped, x3, squares, {-1, 0.25, 3, 1}, {0, 0.0625, 4, 4}},
      // The first of two queries midway between nodes takes the right one, a later one stays at the left.
      {DSP_INTERP_QUADRATIC, {0, 1, 2, 3}, {0, 0, 0, 6}, {1.5}, {-0.75}},
      {DSP_INTERP_QUADRATIC, {0, 1, 2, 3}, {0, 0, 0, 6}, {1.25, 1.5}, {0, 0}},
      {DSP_INTERP_QUADRATIC, x2, {0, 10}, {0.5}, {5}},
      {2, x3, squares, {1.5, 0.5}, {4, 4}},
      {4 | clamped, x3, squares, {-1, 0.5, 2}, {0, 1, 4}},
      {7, x3, squares, {0.5}, {1}},
      {7, x2, {0, 10}, {0.5}, {5}},
      {DSP_INTERP_LINEAR, {}, {}, {1, 2}, {0, 0}},
      {DSP_INTERP_HOLD | clamped, {3}, {7}, {1, 5}, {7, 7}},
      {DSP_INTERP_SPLINE | clamped, {1}, {5}, {3, 0}, {17, 8}},  // of second derivative 6
      {DSP_INTERP_LINEAR, x2, {1, 2}, {}, {}},
      // Nodes that do not rise: the last one ends every piece, whatever came before.
      {DSP_INTERP_HOLD, {0, 5, 2}, {7, 8, 9}, {0.5, 3, 0.5}, {7, 9, 9}},
      {DSP_INTERP_HOLD, {0, 5, 2}, {7, 8, 9}, {0.5, 1}, {7, 7}},
      {DSP_INTERP_QUADRATIC | clamped, {0, 5, 7, 1}, {0, 25, 49, 6}, {0.5, 3, 0.5}, {0.25, 6, 6}},
  };
  for (const auto &c : cases) {
    SCOPED_TRACE(&c - cases);
    const record x(c.x), y(c.y), d2(reals{6}), queries(c.queries, 0.125);
    record out(complexes{{9, 9}});
    EXPECT_EQ(dsp_interp(&x, &y, &d2, &queries, &out, c.mode), 0);
    EXPECT_TRUE(near(out, c.expected, 1e-15));
    EXPECT_EQ(out.dx, 0.125);
  }
}

TEST(Grid, Refusals) {
  const record y(reals{0, 1, 2, 3}), z(complexes{{0, 0}, {1, 0}, {2, 0}, {3, 0}}), three(reals(3));
  const record early(reals{0, 0, 1, 2}), amid(reals{0, 1, 1, 2}), late(reals{0, 1, 2, 2});
  const record before(reals{0.5}), beyond(reals{0.5, 1.5, 7});
  record out;
  EXPECT_EQ(dsp_interp(&amid, &y, nullptr, &before, &out, DSP_INTERP_LINEAR), 0);
  for (const record *nodes : {&early, &amid, &late})  // an interval without width, when it is met
    for (const int32_t scheme : {0, 1, 2, 3})
      for (const int32_t mode : {scheme, scheme | clamped})
        EXPECT_EQ(dsp_interp(nodes, &y, nullptr, &beyond, &out, mode), -1) << mode;
  const std::array<const record *, 4> calls[] = {{&z, &y, &y, &before},
                                                 {&y, &z, &y, &before},
                                                 {&y, &y, &y, &z},
                                                 {&y, &three, &y, &before},
                                                 {&y, &y, &z, &before},
                                                 {&y, &y, &three, &before},
                                                 {&three, &three, nullptr, &before}};
  for (const auto &[nodes, values, d2, q] : calls) EXPECT_EQ(dsp_cspline(nodes, values, d2, q, &out), -1);
  const std::array<const record *, 2> tables[] = {{&amid, &y}, {&y, &three}, {&z, &y}, {&y, &z}};
  for (const auto &[nodes, values] : tables) EXPECT_EQ(dspb_cspline_2d(nodes, values, &out, 0, 0, 1, 1), -1);
  for (const auto &[left, right] : {std::pair(4, 0), {0, 4}, {-1, 0}})
    EXPECT_EQ(dspb_cspline_2d(&y, &y, &out, 0, 0, left, right), -1);
}

// The defining equations, in long double: continuous slopes inside, and what each end asks for.
TEST(Spline, SatisfiesItsEquations) {
  for (const std::size_t n : {4u, 5u, 40u})
    for (int32_t left = 0; left < 4; ++left)
      for (int32_t right = 0; right < 4; ++right) {
        SCOPED_TRACE(testing::Message() << n << " nodes, ends " << left << " " << right);
        const reals steps = random_reals(n, 4), y = random_reals(n, 5);
        reals x(n);
        for (std::size_t i = 1; i < n; ++i) x[i] = x[i - 1] + 1.25 + steps[i];
        const record rx(x, 1.0), ry(y, 3.0);
        record d2;
        ASSERT_EQ(dspb_cspline_2d(&rx, &ry, &d2, 0.75, -0.5, left, right), 0);
        EXPECT_EQ(d2.dx, 2.0);
        const double *m = d2.data;
        const auto h = [&](std::size_t i) { return static_cast<long double>(x[i]) - x[i - 1]; };
        const auto slope = [&](std::size_t i, int a, int b) {
          return (static_cast<long double>(y[i]) - y[i - 1]) / h(i) + h(i) * (a * m[i - 1] + b * m[i]) / 6;
        };
        const auto third = [&](std::size_t i) { return (m[i] - m[i - 1]) / h(i); };
        for (std::size_t i = 1; i + 1 < n; ++i)
          EXPECT_NEAR(static_cast<double>(slope(i, 1, 2) - slope(i + 1, -2, -1)), 0.0, 3e-14) << i;
        const long double off[][2] = {{third(1) - third(2), third(n - 1) - third(n - 2)},  // not a knot
                                      {slope(1, -2, -1) - 0.75, slope(n - 1, 1, 2) + 0.5},
                                      {m[0] - 0.75, m[n - 1] + 0.5},
                                      {m[0], m[n - 1]}};
        EXPECT_NEAR(static_cast<double>(off[left][0]), 0.0, 1e-12);
        EXPECT_NEAR(static_cast<double>(off[right][1]), 0.0, 1e-12);
      }
}

// A wide interval and four of 1/r: second derivatives over r^2, solved in fractions; and mirrored, a wide last
// interval.
TEST(Spline, KeepsItsDigitsOnUnevenNodes) {
  const struct {
    double r;
    int32_t right;
    reals expected;
  } cases[] = {
      {0x1p13,
       0,
       {-10.264267026784616, 5.130095372661443, 5.131974567290282, 1.3420063581774295, -4.5, -10.34200635817743}},
      {0x1p13, 3, {-9.972973702610066, 4.984475377646873, 4.986301238130302, 2.0703196698319193, -7.26757991745798, 0}},
      {0x1p53,
       0,
       {-10.263157894736842, 5.1315789473684195, 5.131578947368421, 1.3421052631578947, -4.5, -10.342105263157894}},
      {0x1p53,
       3,
       {-9.971830985915494, 4.985915492957745, 4.985915492957747, 2.0704225352112675, -7.267605633802817, 0}},
  };
  for (const auto &c : cases) {
    const record x(reals{-1, 0, 1 / c.r, 2 / c.r, 3 / c.r, 4 / c.r}), y(reals{1, 2, -1, 0.5, 3, 1});
    record mirrored_x(x), mirrored_y(y), d2, mirrored;
    ASSERT_EQ(dspi_rev(&mirrored_x) | dspi_neg(&mirrored_x) | dspi_rev(&mirrored_y), 0);
    ASSERT_EQ(dspb_cspline_2d(&x, &y, &d2, 0, 0, 0, c.right), 0);
    ASSERT_EQ(dspb_cspline_2d(&mirrored_x, &mirrored_y, &mirrored, 0, 0, c.right, 0), 0);
    ASSERT_EQ(dspi_rev(&mirrored), 0);
    for (record *m : {&d2, &mirrored}) {
      ASSERT_EQ(dspi_scale(m, 1 / c.r) | dspi_scale(m, 1 / c.r), 0);
      EXPECT_TRUE(near(*m, c.expected, 1e-14));
    }
  }
}

TEST(Spline, ReproducesACubic) {
  const auto cubic = [](double x) { return 1 + x * (-2 + x * (0.5 + 0.25 * x)); };
  reals x = {-1, -0.5, 0.75, 1, 2.5, 3, 3.125}, y, curvature, queries, values;
  for (const double t : x) y.push_back(cubic(t)), curvature.push_back(1 + 1.5 * t);
  for (double t = -2; t < 4; t += 0.1875) queries.push_back(t), values.push_back(cubic(t));
  const record rx(x), ry(y), given(curvature), rq(queries);
  for (const record *d2 : {&given, static_cast<const record *>(nullptr)}) {
    record out;
    ASSERT_EQ(dsp_cspline(&rx, &ry, d2, &rq, &out), 0);
    EXPECT_TRUE(near(out, values, 1e-12));
  }
}

TEST(Interleave, PlacesSamples) {
  for (const bool a_complex : {false, true})
    for (const bool b_complex : {false, true}) {
      const record a = random_signal(101, a_complex, 1, 1.0), b = random_signal(101, b_complex, 2, 3.0);
      complexes merged, spaced;
      for (std::size_t i = 0; i < 101; ++i) {
        merged.insert(merged.end(), {complexes_of(a)[i], complexes_of(b)[i]});
        spaced.insert(spaced.end(), {complexes_of(a)[i], 0.0});
      }
      record out, spread(a);
      ASSERT_EQ(dspb_inter(&a, &b, &out), 0);
      EXPECT_TRUE(same(out, signal_of(merged, a_complex || b_complex, 1.0)));
      ASSERT_EQ(dspi_zinter(&spread), 0);
      EXPECT_TRUE(same(spread, signal_of(spaced, a_complex, 0.5)));
    }
  const record two(reals{1, 2}), one(reals{1});
  record out(reals{7});
  EXPECT_EQ(dspb_inter(&two, &one, &out), -1);
  EXPECT_EQ(doubles_of(out), reals{7});
  dsp_vec huge = {1.0, nullptr, 0, std::numeric_limits<int32_t>::max(), 0, 0};
  EXPECT_EQ(dspi_zinter(&huge), -1);
  EXPECT_EQ(dspb_inter(&huge, &huge, &out), -1);
}

}  // namespace
