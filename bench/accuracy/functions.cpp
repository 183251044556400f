// Elementary functions in units in the last place, beside the C library's.
#include <functional>

#include "bench/accuracy/report.h"
#include "bench/noise.h"

namespace accuracy {
namespace {

constexpr double ln10 = 2.302585092994046;

struct function {
  const char *name;
  int32_t (*ours)(dsp_vec *v);
  double (*plain)(double x);
  wide (*exact)(wide x);
};

const function exponential = {"e^x", dspi_exp, [](double x) { return std::exp(x); },
                              [](wide x) { return std::exp(x); }};
const function power_of_ten = {"10^x", dspi_exp10, [](double x) { return std::exp(x * ln10); },
                               [](wide x) { return std::exp(static_cast<wide>(static_cast<double>(x) * ln10)); }};
const function true_power_of_ten = {"10^x, exact", dspi_exp10, [](double x) { return std::pow(10.0, x); },
                                    [](wide x) { return std::pow(10.0L, x); }};
const function logarithm = {"ln x", dspi_log, [](double x) { return std::log(x); }, [](wide x) { return std::log(x); }};
const function common = {"lg x", dspi_log10, [](double x) { return std::log10(x); },
                         [](wide x) { return std::log10(x); }};
const function decibel = {"20 lg x", [](dsp_vec *v) { return dspi_db(v, 20.0); },
                          [](double x) { return 20.0 * std::log10(x); }, [](wide x) { return 20.0L * std::log10(x); }};
const function root = {"sqrt x", dspi_sqrt, [](double x) { return std::sqrt(x); }, [](wide x) { return std::sqrt(x); }};
const function reciprocal = {"1/x", dspi_recip, [](double x) { return 1.0 / x; }, [](wide x) { return 1.0L / x; }};
const function sinh = {"sinh x", dspi_sinh, [](double x) { return std::sinh(x); }, [](wide x) { return std::sinh(x); }};
const function arcsine = {"asin x", dspi_asin, [](double x) { return std::asin(x); },
                          [](wide x) { return std::asin(x); }};

// Evenly over [from, to], or over that range of powers of two.
void measure(const function &f, const std::string &range, double from, double to, bool powers = false) {
  doubles x = noise(500000, 12);
  for (double &value : x) {
    value = from + (to - from) * (0.5 + 0.5 * value);
    if (powers) value = std::exp2(value);
  }
  doubles y = x;
  dsp_vec v = borrow(y);
  f.ours(&v);
  double ours = 0, plain = 0;
  for (std::size_t i = 0; i < x.size(); ++i) {
    const wide exact = f.exact(x[i]);
    ours = std::max(ours, units(y[i], exact));
    plain = std::max(plain, units(f.plain(x[i]), exact));
  }
  row({f.name, range, figure(ours), figure(plain)});
}

// The worst over points of the square from -1 - i to 1 + i, for functions whose result is real.
void measure_complex(const char *name, int32_t (*ours)(dsp_vec *v), double (*plain)(double re, double im),
                     wide (*exact)(wide re, wide im)) {
  const doubles z = noise(1000000, 13);
  doubles y = z;
  dsp_vec v = borrow(y);
  v.is_complex = 1;
  v.length /= 2;
  ours(&v);
  double worst = 0, theirs = 0;
  for (std::size_t i = 0; 2 * i < z.size(); ++i) {
    const wide expected = exact(z[2 * i], z[2 * i + 1]);
    worst = std::max(worst, units(y[i], expected));
    theirs = std::max(theirs, units(plain(z[2 * i], z[2 * i + 1]), expected));
  }
  row({name, "square of side 2", figure(worst), figure(theirs)});
}

}  // namespace

void functions() {
  heading(
      "Elementary functions",
      "The worst error over 500 000 random arguments, in ulp, beside that of the C library's function. 10^x is e to "
      "the rounded product of x and ln 10; the rounding of that product is the error of the row "
      "called exact.");
  table({"function", "arguments", "ours", "C library"});
  measure(exponential, "-1 to 1", -1, 1);
  measure(exponential, "-708 to 230", -708, 230);
  measure(power_of_ten, "-307 to 100", -307, 100);
  measure(true_power_of_ten, "-1 to 1", -1, 1);
  measure(true_power_of_ten, "-307 to 100", -307, 100);
  measure(logarithm, "0.5 to 2", 0.5, 2);
  measure(logarithm, "2^-1022 to 2^1023", -1022, 1023, true);
  measure(common, "0.99 to 1.01", 0.99, 1.01);
  measure(common, "0.5 to 2", 0.5, 2);
  measure(common, "2^-1022 to 2^1023", -1022, 1023, true);
  measure(decibel, "0.5 to 2", 0.5, 2);
  measure(decibel, "2^-1022 to 2^1023", -1022, 1023, true);
  measure(root, "2^-1022 to 2^1023", -1022, 1023, true);
  measure(reciprocal, "2^-300 to 2^300", -300, 300, true);
  measure(sinh, "-230 to 230", -230, 230);
  measure(arcsine, "-1 to 1", -1, 1);
  measure_complex(
      "\\|z\\|", dspi_mag, [](double re, double im) { return std::hypot(re, im); },
      [](wide re, wide im) { return std::sqrt(re * re + im * im); });
  measure_complex(
      "phase of z", dspi_phase, [](double re, double im) { return std::atan2(im, re); },
      [](wide re, wide im) { return std::atan2(im, re); });
  held_by("`InPlace.ExponentialsAndLogarithmsAreRightToTheLastPlace`, `InPlace.AgreesWithLongDouble`");
}

void generators() {
  heading(
      "Generators",
      "The worst error of `dspc_cos` over a million samples, in units of 1e-16 of the amplitude. The angle per sample "
      "has 27 bits, so that its products with indices are exact; with other angles the rounding of the angle adds "
      "up to 2e-16 of it. Beside it: cosines by rotation from sample to sample, never computed afresh.");
  table({"radians per sample", "ours", "rotation alone"});
  const double turn = 2 * 3.141592653589793;
  for (const double w : {0x1p-20, 0x1.2345678p-10, 0x1.2345678p-3, 0x1.2345678p0, 0x1.9p1}) {
    doubles x(1000000);
    dsp_vec v = borrow(x);
    v.capacity = v.length;  // else it would take memory of its own
    v.dx = w / turn;
    dspc_cos(&v, 1.0, 0.0);
    const double step = turn * v.dx, wc = std::cos(step), ws = std::sin(step);
    double worst = 0, theirs = 0, c = 1, s = 0;
    for (std::size_t i = 0; i < x.size(); ++i) {
      const wide exact = std::cos(static_cast<wide>(step) * static_cast<wide>(i));
      worst = std::max(worst, static_cast<double>(std::abs(x[i] - exact)));
      theirs = std::max(theirs, static_cast<double>(std::abs(c - exact)));
      const double next = c * wc - s * ws;
      s = s * wc + c * ws;
      c = next;
    }
    row({figure(step), figure(worst * 1e16), figure(theirs * 1e16)});
  }
  held_by("`Generators.RotateAsExactlyAsTheirSeeds`, `Generators.StayExactOverTenMillionSamples`");
}

}  // namespace accuracy
