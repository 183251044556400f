#include "dsp/window/shapes.h"

#include <cmath>

#include "dsp/dsp.h"
#include "dsp/math/angle.h"
#include "dsp/math/bessel_i0.h"
#include "dsp/math/double_double.h"
#include "dsp/window/normalise.h"

namespace dsp::window {
namespace {

// Evaluates value(d) at each distance, and normalises. A single sample is 1, or `peak` when raw.
template <class Value>
void fill(double *w, const window_layout &at, window_scale scale, double peak, const Value &value) {
  if (at.n == 1) {
    w[0] = scale == window_scale::raw ? peak : 1.0;
    return;
  }
  fill_symmetric(w, at, [&](double first, int32_t count, double *to) {
    for (int32_t i = 0; i < count; ++i) to[i] = value(first + i);
  });
  normalise(w, at.n, scale);
}

// I0(beta sqrt(1 - (2d/span)^2)). Its argument is carried in more than double precision, since I0 multiplies the
// argument's relative error by the argument.
class kaiser_shape {
 public:
  kaiser_shape(double beta, double span)
      : span_(span),
        square_span_(double_double::product(span, span)),
        top_(double_double::product(beta / 2, beta / 2)) {}

  void operator()(double first, int32_t count, double *to) const {
    for (int32_t done = 0; done < count; done += bessel_batch) {
      double y[bessel_batch], rest[bessel_batch], value[bessel_batch];
      for (int i = 0; i < bessel_batch; ++i) argument(first + done + i, y + i, rest + i);
      bessel_i0(y, rest, value);
      for (int32_t i = 0; i < bessel_batch && done + i < count; ++i) to[done + i] = value[i];
    }
  }

 private:
  // (beta/2)^2 (span - 2d)(span + 2d) / span^2; 0 beyond the end.
  void argument(double d, double *y, double *rest) const {
    const double inner = span_ > 2 * d ? span_ - 2 * d : 0.0;
    const double_double parabola = double_double::product(inner, span_ + 2 * d);
    const double ratio = parabola.hi / square_span_.hi;
    const double_double back = double_double::product(ratio, square_span_.hi);
    const double ratio_rest =
        ((parabola.hi - back.hi) - back.lo + parabola.lo - ratio * square_span_.lo) / square_span_.hi;
    const double_double product = double_double::product(top_.hi, ratio);
    *y = product.hi;
    *rest = product.lo + top_.hi * ratio_rest + top_.lo * ratio;
  }

  double span_;
  double_double square_span_;
  double_double top_;
};

}  // namespace

void kaiser(double *w, const window_layout &at, window_scale scale, double beta) {
  // The values, or their squares, overflow beyond these.
  const double limit = scale == window_scale::power ? 230.25850929940458 : 460.51701859880916;
  if (std::fabs(beta) > limit) beta = limit;
  if (at.n == 1) {
    w[0] = 1.0;
    return;
  }
  fill_symmetric(w, at, kaiser_shape(beta, at.span));
  if (scale != window_scale::raw) return normalise(w, at.n, scale);
  const double centre = w[at.n / 2];
  for (int32_t i = 0; i < at.n; ++i) w[i] /= centre;
}

void gauss(double *w, const window_layout &at, window_scale scale, double sigma) {
  if (sigma == 0.0) return fill(w, at, scale, 1.0, [](double d) { return d < 1.0 ? 1.0 : 0.0; });
  if (at.n == 1) {
    w[0] = 1.0;
    return;
  }
  const double unit = sigma * at.span;
  fill_symmetric(w, at, [=](double first, int32_t count, double *to) {
    for (int32_t i = 0; i < count; ++i) {
      const double t = (first + i) / unit;
      to[i] = -0.5 * (t * t);
    }
    dsp_vec exponents = {1.0, to, 0, count, 0, 0};
    dspi_exp(&exponents);
  });
  normalise(w, at.n, scale);
}

void sinc_lobe(double *w, const window_layout &at, window_scale scale, double lobe, double peak) {
  const double span = at.span;
  fill(w, at, scale, peak, [=](double d) {
    const double x = 2 * d / span * lobe;
    return d == 0.0 ? peak : x == 0.0 ? 1.0 : std::sin(x) / x;
  });
}

void tukey(double *w, const window_layout &at, window_scale scale, double alpha) {
  const double half = at.span / 2;
  const double tapered = alpha * at.span;
  fill(w, at, scale, 1.0, [=](double d) {
    const double from_edge = half - d;
    if (from_edge >= tapered / 2) return 1.0;
    const double s = std::sin(pi * (from_edge / tapered));
    return s * s;  // the same as 1/2 + 1/2 cos, without cancellation at the edge
  });
}

}  // namespace dsp::window
