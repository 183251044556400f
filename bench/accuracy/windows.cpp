// Windows in units of eps of their peak.
#include <functional>

#include "bench/accuracy/report.h"
#include "dsp/window/catalogue.h"

namespace accuracy {
namespace {

const std::size_t lengths[] = {2, 3, 4, 5, 7, 8, 16, 63, 64, 127, 128, 129, 500, 1023, 1024, 4096, 16384, 100003};

using apply = std::function<int32_t(dsp_vec *v, int32_t flags)>;
// At d samples from the centre; the samples that are nearest to it are `nearest` away.
using shape = std::function<wide(wide d, wide span, wide nearest)>;

double worst_of(const apply &ours, int32_t flags, const shape &exact) {
  const bool symmetric = (flags & DSP_WND_SYMMETRIC) != 0;
  double worst = 0;
  for (const std::size_t n : lengths) {
    doubles w(n, 1.0);
    dsp_vec v = borrow(w);
    if (ours(&v, flags | DSP_WND_NO_SWAP) != 0) return std::nan("");
    const auto length = static_cast<wide>(n);
    const wide centre = symmetric ? (length - 1) / 2 : static_cast<wide>(n / 2);
    const wide span = symmetric ? length - 1 : length;
    wides expected(n);
    wide mean = 0, square = 0;
    for (std::size_t i = 0; i < n; ++i) {
      const wide x = expected[i] = exact(std::abs(static_cast<wide>(i) - centre), span, std::ceil(centre) - centre);
      mean += x / length;
      square += x * x / length;
    }
    const int32_t scale = flags & DSP_WND_SCALE_MASK;
    const wide size = scale == DSP_WND_RAW ? 1 : scale == DSP_WND_POWER ? std::sqrt(square) : mean;
    for (std::size_t i = 0; i < n; ++i)
      worst = std::max(worst, static_cast<double>(std::abs(w[i] * size - expected[i])) / eps);
  }
  return worst;
}

// One row; "-" for forms that a window does not have.
void measure(const std::string &name, const apply &ours, const shape &exact) {
  cells line = {name};
  for (const int32_t scale : {static_cast<int32_t>(DSP_WND_RAW), static_cast<int32_t>(DSP_WND_AMPLITUDE),
                              static_cast<int32_t>(DSP_WND_POWER)})
    line.push_back(figure(worst_of(ours, scale, exact)));
  line.push_back(figure(worst_of(ours, DSP_WND_RAW | DSP_WND_SYMMETRIC, exact)));
  row(line);
}

// The raw sums, whose coefficients are exact as they stand.
void measure_sums() {
  const char *const names[] = {"uniform",
                               "",
                               "Hann",
                               "Hamming",
                               "Blackman",
                               "Blackman-Harris, 3",
                               "Blackman-Harris, 4",
                               "Gausstop",
                               "flat-top, 4 terms",
                               "flat-top, 5 terms",
                               "flat-top, 6 terms",
                               "flat-top, 7 terms",
                               "flat-top P501",
                               "flat-top P601"};
  for (dsp_window_type type = 2; type <= 13; ++type) {
    const dsp::window::cosine_sum sum = dsp::window::catalogued_sum(type, dsp::window::window_scale::raw);
    const apply ours = [=](dsp_vec *v, int32_t flags) { return dspi_window(v, type, flags); };
    const shape exact = [=](wide d, wide span, wide) {
      wide w = 0;
      for (int k = 0; k < sum.terms; ++k) w += sum.c[k] * std::cos(2 * pi * std::fmod(k * d, span) / span);
      return w;
    };
    row({names[type], figure(worst_of(ours, DSP_WND_RAW, exact)), "-", "-", "-"});
  }
}

wide bessel_i0(wide x) {
  wide sum = 0, term = 1;
  for (int k = 1; term > sum * 1e-21L; ++k) {
    sum += term;
    term *= x / (2 * k) * (x / (2 * k));
  }
  return sum;
}

}  // namespace

void windows() {
  heading(
      "Windows",
      "The worst error over lengths from 2 to 100 003, in eps of the window's peak: as generated, scaled to mean 1, "
      "scaled to mean square 1, and symmetric. The scaled cosine sums have published coefficients of their own, so "
      "that "
      "there is no reference for them.");
  table({"window", "raw", "amplitude", "power", "symmetric"});
  measure(
      "triangular", [](dsp_vec *v, int32_t f) { return dspi_window(v, DSP_WINDOW_TRIANGULAR, f); },
      [](wide d, wide span, wide) { return 1 - 2 * d / span; });
  measure_sums();
  for (const double beta : {9.473960131326246, 12.014077292090791, 15.73795091271457, 100.0})
    measure(
        "Kaiser, beta " + figure(beta), [=](dsp_vec *v, int32_t f) { return dspi_window_kaiser(v, beta, f); },
        [=](wide d, wide span, wide nearest) {
          const wide t = std::min(2 * d / span, 1.0L);
          return bessel_i0(beta * std::sqrt(1 - t * t)) /
                 bessel_i0(beta * std::sqrt(1 - 4 * nearest * nearest / (span * span)));
        });
  for (const double sigma : {0.1583722, 0.1328102})
    measure(
        "Gauss, sigma " + figure(sigma), [=](dsp_vec *v, int32_t f) { return dspi_window_gauss(v, sigma, f); },
        [=](wide d, wide span, wide) { return std::exp(-0.5L * (d / (sigma * span)) * (d / (sigma * span))); });
  measure(
      "sinc lobe", [](dsp_vec *v, int32_t f) { return dspi_window_sinc(v, 3.141592653589793, 1.0, f); },
      [](wide d, wide span, wide) {
        const wide x = 2 * d / span * 3.141592653589793L;
        return x == 0 ? 1 : std::sin(x) / x;
      });
  measure(
      "Tukey, alpha 0.25", [](dsp_vec *v, int32_t f) { return dspi_window_tukey(v, 0.25, f); },
      [](wide d, wide span, wide) {
        const wide flat = 0.375L * span;
        return d <= flat ? 1 : (1 + std::cos(8 * pi * (d - flat) / span)) / 2;
      });
  held_by(
      "`Generators.SumsOfCosinesToTheLastDigits`, `Generators.ParametricShapesToTheLastDigits`, "
      "`Catalogue.ScalesOfOneTypeAreOneWindow`");
}

}  // namespace accuracy
