// Closed-form FIR kernels. Tap k of N lies at the offset t = k - (N - 1)/2 from the centre.
#include <cmath>
#include <cstdint>

#include "dsp/core/sizing.h"
#include "dsp/core/temporary.h"
#include "dsp/dsp.h"
#include "dsp/math/constants.h"

namespace dsp::filter {
namespace {

constexpr double root_of_ln2 = 0.8325546111576977;
constexpr double negligible_square = 2.6645352591003757e-15;  // 12 2^-52: 1 - x^2/24 is 1 below it

enum class symmetry { even, odd };

// Fills from the centre outward, so that the halves are exact mirrors.
template <class Kernel>
void fill_pairs(const dsp_vec &h, symmetry s, Kernel value) {
  const int32_t n = samples(h);
  for (int32_t k = n / 2; k < n; ++k) {
    const double v = value(k - 0.5 * (n - 1));
    h.data[n - 1 - k] = s == symmetry::odd ? -v : v;
    h.data[k] = v;
  }
}

double sinc(double x) { return x == 0.0 ? 1.0 : std::sin(x) / x; }

// (cos x - 1)/x^2, without its cancellation.
double versine_quotient(double x) {
  const double s = sinc(0.5 * x);
  return x * x < negligible_square ? -0.5 : -0.5 * s * s;
}

// (cos x - sinc x)/x. The difference cancels near 0, where its series takes over; the first term left out is below
// 1e-17.
double sinc_derivative(double x) {
  const double y = x * x;
  if (!(y < 1.0)) return (std::cos(x) - sinc(x)) / x;
  double term = -x / 3;
  double sum = 0.0;
  for (int k = 1; k < 10; ++k) {
    sum += term;
    term *= -y / (2 * k * (2 * k + 3));
  }
  return sum;
}

void lowpass(const dsp_vec &h, double f) {
  fill_pairs(h, symmetry::even, [f](double t) { return 2 * f * sinc(two_pi * f * t); });
}

void bandpass(const dsp_vec &h, double f, double width) {
  fill_pairs(h, symmetry::even,
             [=](double t) { return width * sinc(pi * width * t) * (2 * std::cos(two_pi * f * t)); });
}

// Turns a filter with a centre tap into its complement, which passes what it stopped.
int32_t complement(dsp_vec *h) {
  const int32_t status = dspi_neg(h);
  h->data[h->length / 2] += 1.0;
  return status;
}

void delayed_lowpass(const dsp_vec &h, double f, double delay) {
  for (int32_t k = 0; k < h.length; ++k) {
    const double twice = 2.0 * k + (1.0 - h.length);  // the offset from the centre, doubled: exact
    h.data[k] = 2 * f * sinc(pi * f * (twice - 2 * delay));
  }
}

void differentiator(const dsp_vec &h, double f) {
  fill_pairs(h, symmetry::odd, [f](double t) {
    const double x = two_pi * f * t;
    return x == 0.0 ? 0.0 : 4 * pi * f * f * sinc_derivative(x);
  });
}

void hilbert(const dsp_vec &h, double f) {
  fill_pairs(h, symmetry::odd, [f](double t) {
    const double x = two_pi * f * t;
    return x == 0.0 ? 0.0 : 2 * f * x * versine_quotient(x);
  });
}

void ramp(const dsp_vec &h, double f) {
  fill_pairs(h, symmetry::even, [f](double t) {
    const double x = two_pi * f * t;
    return 4 * f * f * (sinc(x) + versine_quotient(x));
  });
}

void gaussian(const dsp_vec &h, double f) {
  const double inverse_width = two_pi * f / root_of_ln2;
  fill_pairs(h, symmetry::even, [=](double t) {
    const double u = t * inverse_width;
    return std::exp(-0.5 * u * u);
  });
}

// sinh(sqrt(beta^2 - d^2)) or, beyond the edge, sin(sqrt(d^2 - beta^2)); also divided by that root. All taps are
// computed e^-|beta| times smaller, so that none overflows: the caller divides by their sum.
struct bell {
  double beta2;
  double step;  // of 2 d from tap to tap
  double beta;

  double sine(double t, bool over_root) const {
    const double d = 0.5 * t * step;
    const double a = beta2 - d * d;
    const double peak = std::fabs(beta);
    const double root = t == 0.0 ? peak : std::sqrt(std::fabs(a));
    if (root == 0.0) return over_root ? std::exp(-peak) : 0.0;
    const double value =
        a <= 0.0 ? std::exp(-peak) * std::sin(root) : std::exp(-d * d / (root + peak)) * (-0.5 * std::expm1(-2 * root));
    return over_root ? value / root : value;
  }
};

struct fixed_half {
  int32_t length;
  double taps[5];
};

constexpr fixed_half sinh_fixed[] = {
    {5, {0.0782793 * 0.5, 0.4973406 * 0.5, 0.4243801}},
    {7, {0.0106411 * 0.5, 0.1365995 * 0.5, 0.4891775 * 0.5, 0.3635819}},
    {9,
     {0.0012613570855745683 * 0.5, 0.028496990099716707 * 0.5, 0.1755341299514293 * 0.5, 0.47149214396487166 * 0.5,
      0.3232153788984078}},
};

bool fill_fixed(const dsp_vec &h) {
  for (const fixed_half &f : sinh_fixed) {
    if (f.length != h.length) continue;
    const int32_t last = h.length - 1;
    for (int32_t k = 0; k <= last; ++k) h.data[k] = f.taps[k <= last / 2 ? k : last - k];
    return true;
  }
  return false;
}

struct shape_row {
  int32_t length;
  double beta2;
  double second;  // the step (sinh), or beta^2 + pi^2 (Kaiser spectrum)
};

constexpr shape_row sinh_shapes[] = {{3, 39.95532260104617, 6.321022275},
                                     {4, 56.54137636, 30.0776 / 5},
                                     {6, 114.190596, 42.744 / 7},
                                     {8, 194.937444, 55.848 / 9},
                                     {11, 355.57287208959997, 6.285546666666666}};

constexpr shape_row kaiser_shapes[] = {{3, 35.074549330129, 44.944153731218364},
                                       {5, 89.98736245465562, 99.85696685574499},
                                       {7, 157.9377833289, 167.80738772998936},
                                       {9, 254.057108410561, 263.92671281165036},
                                       {11, 364.85163918809997, 374.7212435891893}};

template <class Rows>
const shape_row *find_shape(const Rows &rows, int32_t length) {
  for (const shape_row &row : rows)
    if (row.length == length) return &row;
  return nullptr;
}

bell sinh_bell(int32_t n, double beta) {
  if (beta == 0.0) {
    if (const shape_row *row = find_shape(sinh_shapes, n)) return {row->beta2, row->second, std::sqrt(row->beta2)};
    beta = n % 2 != 0 ? (n + 1.0) * (pi / 2) : 1.4 + n * (pi / 2);
  }
  return {beta * beta, 4 * beta / (n + 1.0), beta};
}

void fill_sinh(const dsp_vec &h, const bell &b) {
  fill_pairs(h, symmetry::even, [&](double t) {
    const double v = b.sine(t, false);
    return t == 0.0 ? std::copysign(v, b.beta) : v;  // the centre alone follows the sign of beta
  });
}

bell kaiser_bell(int32_t n, double beta) {
  if (beta == 0.0) {
    if (const shape_row *row = find_shape(kaiser_shapes, n))
      return {row->beta2, 4 * std::sqrt(row->second) / (n + 1.0), std::sqrt(row->beta2)};
    beta = 1.386795655 + 1.610830415 * n;
  }
  return {beta * beta, 4 * std::sqrt(beta * beta + pi * pi) / (n + 1.0), beta};
}

int32_t normalise_sum(dsp_vec *h) {
  if (h->length <= 0) return 0;
  temporary mean;
  if (dsps_mean(h, mean.get()) != 0) return -1;
  return mean->data[0] != 0.0 ? dspi_scale(h, 1.0 / (mean->data[0] * h->length)) : 0;
}

int32_t build(dsp_vec *h, dsp_fir_type kind, double f, double p) {
  const bool has_centre = h->length % 2 != 0;
  switch (kind) {
    case DSP_FIR_BANDPASS:
      bandpass(*h, f, p);
      return 0;
    case DSP_FIR_BANDSTOP:
      if (!has_centre) return -1;
      bandpass(*h, f, p);
      return h->length > 0 ? complement(h) : 0;
    case DSP_FIR_HIGHPASS:
      if (!has_centre) return -1;
      lowpass(*h, f);
      return h->length > 0 ? complement(h) : 0;
    case DSP_FIR_LOWPASS:
      lowpass(*h, f);
      return 0;
    case DSP_FIR_SINH:
      if (f == 0.0 && fill_fixed(*h)) return 0;
      fill_sinh(*h, sinh_bell(h->length, f));
      return normalise_sum(h);
    case DSP_FIR_DELAYED_LOWPASS:
      delayed_lowpass(*h, f, p);
      return normalise_sum(h);
    case DSP_FIR_DIFFERENTIATOR:
      differentiator(*h, f);
      return 0;
    case DSP_FIR_GAUSSIAN:
      gaussian(*h, f);
      return normalise_sum(h);
    case DSP_FIR_HILBERT:
      hilbert(*h, f);
      return 0;
    case DSP_FIR_KAISER_SPECTRUM: {
      const bell b = kaiser_bell(h->length, f);
      fill_pairs(*h, symmetry::even, [&](double t) { return b.sine(t, true); });
      return normalise_sum(h);
    }
    case DSP_FIR_RAMP:
      ramp(*h, f);
      return 0;
    default:
      return -1;
  }
}

}  // namespace
}  // namespace dsp::filter

using namespace dsp;
using namespace dsp::filter;

int32_t dspc_fir(dsp_vec *h, dsp_fir_type kind, double f, double p) {
  if (dsp_alloc(h) != 0) return -1;
  const bool was_complex = h->is_complex != 0;
  h->is_complex = 0;  // and stays so when the kind is refused
  if (build(h, kind, f, p) != 0) return -1;
  return was_complex ? dspi_rtoc(h) : 0;
}
