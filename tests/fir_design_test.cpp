// FIR kernels against their closed forms and their frequency responses.
#include <gtest/gtest.h>

#include <cmath>
#include <numeric>

#include "dsp/dsp.h"
#include "tests/support/record.h"
#include "tests/support/wide.h"

namespace {

using namespace support;
using real = wide;

const real pi = wide_pi;

real sinc(real x) { return x == 0 ? 1 : sin(x) / x; }

// The derivative of sinc: its series where the closed form cancels.
real sinc_derivative(real x) {
  if (abs(x) > 2) return (cos(x) - sinc(x)) / x;
  real sum = 0, term = 1;
  for (int k = 1; k <= 20; ++k) sum += 2 * k * (term *= -x * x / (2 * k * (2 * k + 1)));
  return x == 0 ? 0 : sum / x;
}

// sinh(sqrt a), or sin(sqrt -a), times e^-peak.
real bell(real a, real peak) {
  const real root = sqrt(abs(a));
  return a > 0 ? (exp(root - peak) - exp(-root - peak)) / 2 : sin(root) * exp(-peak);
}

// What is under the root of a bell: beta2 - curvature t^2. Some lengths have a width of their own by default.
struct shape {
  real beta2, curvature;
};

shape shape_of(int32_t kind, real n, real f) {
  const bool sinh = kind == DSP_FIR_SINH;
  const struct {
    int32_t kind, n;
    real beta2, second;  // step, or beta^2 + pi^2
  } tabulated[] = {{DSP_FIR_SINH, 3, 39.95532260104617, 6.321022275},
                   {DSP_FIR_SINH, 4, 56.54137636, 6.01552},
                   {DSP_FIR_SINH, 6, 114.190596, 42.744 / 7},
                   {DSP_FIR_SINH, 8, 194.937444, 55.848 / 9},
                   {DSP_FIR_SINH, 11, 355.57287208959997, 6.285546666666666},
                   {DSP_FIR_KAISER_SPECTRUM, 3, 35.074549330129, 44.944153731218364},
                   {DSP_FIR_KAISER_SPECTRUM, 5, 89.98736245465562, 99.85696685574499},
                   {DSP_FIR_KAISER_SPECTRUM, 7, 157.9377833289, 167.80738772998936},
                   {DSP_FIR_KAISER_SPECTRUM, 9, 254.057108410561, 263.92671281165036},
                   {DSP_FIR_KAISER_SPECTRUM, 11, 364.85163918809997, 374.7212435891893}};
  for (const auto &row : tabulated)
    if (f == 0 && row.kind == kind && row.n == n)
      return {row.beta2, sinh ? row.second * row.second / 4 : 4 * row.second / ((n + 1) * (n + 1))};
  const real usual = !sinh             ? real(1.386795655) + real(1.610830415) * n
                     : fmod(n, 2) != 0 ? (n + 1) * pi / 2
                                       : real(1.4) + n * pi / 2;
  const real beta2 = f != 0 ? f * f : usual * usual;
  return {beta2, 4 * (beta2 + (sinh ? 0 : pi * pi)) / ((n + 1) * (n + 1))};
}

// The kernels as functions of the offset from the centre, before a unit sum is made.
real kernel(int32_t kind, real t, real n, real f, real p) {
  const real x = 2 * pi * f * t;
  if (kind == DSP_FIR_BANDPASS) return 2 * p * sinc(pi * p * t) * cos(x);
  if (kind == DSP_FIR_BANDSTOP) return (t == 0) - 2 * p * sinc(pi * p * t) * cos(x);
  if (kind == DSP_FIR_HIGHPASS) return (t == 0) - 2 * f * sinc(x);
  if (kind == DSP_FIR_LOWPASS) return 2 * f * sinc(x);
  if (kind == DSP_FIR_DELAYED_LOWPASS) return 2 * f * sinc(2 * pi * f * (t - p));
  if (kind == DSP_FIR_DIFFERENTIATOR) return 4 * pi * f * f * sinc_derivative(x);
  if (kind == DSP_FIR_GAUSSIAN) return exp(-x * x / (2 * log(real(2))));
  if (kind == DSP_FIR_HILBERT) return x == 0 ? 0 : -4 * f * pow(sin(x / 2), 2) / x;
  if (kind == DSP_FIR_RAMP) return 4 * f * f * (x == 0 ? real(0.5) : sinc(x) - 2 * pow(sin(x / 2) / x, 2));
  const auto [beta2, curvature] = shape_of(kind, n, f);
  const real a = beta2 - curvature * t * t, value = bell(a, sqrt(beta2));
  return kind == DSP_FIR_SINH ? value : value / sqrt(abs(a));
}

bool has_unit_sum(int32_t kind) {
  return kind == DSP_FIR_SINH || kind == DSP_FIR_DELAYED_LOWPASS || kind == DSP_FIR_GAUSSIAN ||
         kind == DSP_FIR_KAISER_SPECTRUM;
}

bool needs_centre(int32_t kind) { return kind == DSP_FIR_BANDSTOP || kind == DSP_FIR_HIGHPASS; }

record design(int32_t kind, int32_t n, double f, double p) {
  record h;
  h.length = n;
  EXPECT_EQ(dspc_fir(&h, kind, f, p), 0) << kind << " " << n;
  return h;
}

void expect_closed_form(int32_t kind, int32_t n, double f, double p) {
  SCOPED_TRACE(::testing::Message() << "kind " << kind << ", " << n << " taps, f " << f << ", p " << p);
  std::vector<real> wanted;
  for (int32_t k = 0; k < n; ++k) wanted.push_back(kernel(kind, k - real(n - 1) / 2, n, f, p));
  const real sum = has_unit_sum(kind) ? std::accumulate(wanted.begin(), wanted.end(), real(0)) : real(1);
  reals h;
  double peak = f * f;
  for (const real tap : wanted) {
    h.push_back(static_cast<double>(tap / sum));
    peak = std::max(peak, std::fabs(h.back()));
  }
  EXPECT_TRUE(near(design(kind, n, f, p), h, 2e-15 * peak));
}

TEST(FirDesign, FollowsTheClosedForms) {
  for (int32_t kind = 0; kind <= 10; ++kind) {
    const bool shaped = kind == DSP_FIR_SINH || kind == DSP_FIR_KAISER_SPECTRUM;
    for (const double f : shaped ? reals{0.7, 5.0, 20.0} : reals{1e-9, 1e-4, 0.01, 0.1, 0.25, 0.5})
      for (const int32_t n : {1, 2, 3, 4, 5, 8, 21, 64, 201})
        if (n % 2 != 0 || !needs_centre(kind))
          expect_closed_form(kind, n, f, kind == DSP_FIR_DELAYED_LOWPASS ? 0.3 : 0.12);
  }
  for (const int32_t n : {2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 300, 301, 446, 447, 1000, 5001}) {
    expect_closed_form(DSP_FIR_KAISER_SPECTRUM, n, 0.0, 0.0);
    if (n != 5 && n != 7 && n != 9) expect_closed_form(DSP_FIR_SINH, n, 0.0, 0.0);
  }
}

TEST(FirDesign, HalvesMirrorEachOtherExactly) {
  for (int32_t kind = 0; kind <= 10; ++kind)
    for (const int32_t n : {6, 7, 9, 33, 128}) {
      if (kind == DSP_FIR_DELAYED_LOWPASS || (n % 2 == 0 && needs_centre(kind))) continue;
      const record h = design(kind, n, kind == 4 || kind == 9 ? 0.0 : 0.2, 0.1);
      const bool odd = kind == DSP_FIR_DIFFERENTIATOR || kind == DSP_FIR_HILBERT;
      for (int32_t k = 0; k < n; ++k) EXPECT_EQ(h.data[k], odd ? -h.data[n - 1 - k] : h.data[n - 1 - k]) << kind;
      if (!odd) continue;
      EXPECT_EQ(1 / design(kind, n | 1, 1e200, 0).data[n / 2], HUGE_VAL) << "the centre is 0 and positive";
    }
}

TEST(FirDesign, KnownShapes) {
  const double beta = 0x1.d05527b6e43d1p+0;  // the root vanishes at the outer taps
  const double centre = std::sinh(beta) / beta, sum = centre + 2;
  const reals sinh5 = {0.03913965, 0.2486703, 0.4243801, 0.2486703, 0.03913965};
  const struct {
    int32_t kind;
    double f;
    reals taps;
    double tolerance;
  } cases[] = {{DSP_FIR_SINH, 0, sinh5, 0},
               {DSP_FIR_GAUSSIAN, 0, reals(6, 1.0 / 6), 3e-17},
               {DSP_FIR_KAISER_SPECTRUM, -3, doubles_of(design(DSP_FIR_KAISER_SPECTRUM, 6, 3, 0)), 0},
               {DSP_FIR_KAISER_SPECTRUM, beta, {1 / sum, centre / sum, 1 / sum}, 2e-16},
               {DSP_FIR_DELAYED_LOWPASS, 0, reals(4), 0},  // no sum to divide by
               {DSP_FIR_SINH, 1e-200, reals(4), 0}};
  for (const auto &c : cases)
    EXPECT_TRUE(near(design(c.kind, static_cast<int32_t>(c.taps.size()), c.f, 0.3), c.taps, c.tolerance)) << c.kind;
  for (const int32_t n : {7, 9}) {
    const reals h = doubles_of(design(DSP_FIR_SINH, n, 0, 0));
    EXPECT_NEAR(std::accumulate(h.begin(), h.end(), 0.0), 1.0, 2e-16);
  }
  const record turned = design(DSP_FIR_SINH, 5, -1.0, 0);
  EXPECT_LT(turned.data[2] * turned.data[1], 0.0);
}

// |sum of h e^(-2 pi i nu t)|, with its sign or that of its imaginary part.
double response(const record &h, double nu, bool odd) {
  double sum = 0;
  for (int32_t k = 0; k < h.length; ++k) {
    const double angle = 2 * 3.141592653589793 * nu * (k - 0.5 * (h.length - 1));
    sum += h.data[k] * (odd ? -sin(angle) : cos(angle));
  }
  return sum;
}

TEST(FirDesign, Responses) {
  EXPECT_NEAR(response(design(DSP_FIR_GAUSSIAN, 201, 0.03, 0), 0.03, false), sqrt(0.5), 1e-12);
  EXPECT_NEAR(response(design(DSP_FIR_DELAYED_LOWPASS, 64, 0.2, 0.25), 0.0, false), 1.0, 1e-14);
  for (const double nu : {0.05, 0.1, 0.2, 0.3}) {
    const auto at = [nu](int32_t kind, bool odd) { return response(design(kind, 4001, 0.4, 0), nu, odd); };
    EXPECT_NEAR(at(DSP_FIR_DIFFERENTIATOR, true), 2 * 3.141592653589793 * nu, 4e-3);
    EXPECT_NEAR(at(DSP_FIR_HILBERT, true), 1.0, 1e-2);
    EXPECT_NEAR(at(DSP_FIR_RAMP, false), 2 * nu, 1e-3);
    EXPECT_NEAR(response(design(DSP_FIR_BANDPASS, 4001, 0.2, 0.16), nu, false), nu == 0.2 ? 1.0 : 0.0, 3e-3);
  }
}

TEST(FirDesign, RepresentationAndRefusals) {
  for (int32_t kind = -1; kind <= 12; ++kind)
    for (const int32_t n : {7, 6, 0, -3, -4}) {
      record h;
      h.length = n;
      h.is_complex = 1;
      const bool refused = kind < 0 || kind > 10 || (needs_centre(kind) && n % 2 == 0);
      EXPECT_EQ(dspc_fir(&h, kind, 0.2, 0.1), refused ? -1 : 0) << kind << ' ' << n;
      EXPECT_EQ(h.is_complex, refused ? 0u : 1u);
      if (refused || n < 0) continue;
      record real_taps = design(kind, n, 0.2, 0.1);
      dspi_rtoc(&real_taps);
      EXPECT_TRUE(same(h, real_taps));
    }
}

TEST(FirSets, AreHalvesOfUnitGainFilters) {
  record h;
  for (const int32_t kind : {DSP_FIR2_TAPS12, DSP_FIR2_TAPS20, DSP_FIR2_TAPS5}) {
    ASSERT_EQ(dspc_fir2(&h, kind), 0);
    EXPECT_NEAR(2 * std::accumulate(h.data, h.data + h.length, 0.0) - h.data[h.length - 1], 1.0, 2e-4);
  }
  EXPECT_EQ(dspc_fir2(&h, 103), -1);
}

}  // namespace
