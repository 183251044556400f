// Relative L2 errors of the transforms against ones in long double, ours beside FFTW's.
#pragma once

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

#include "bench/noise.h"
#include "dsp/dsp.h"
#ifdef HAVE_FFTW
#include <fftw3.h>
#endif

namespace fft_accuracy {

using wide = std::complex<long double>;
using wides = std::vector<wide>;
using doubles = std::vector<double>;

inline wide unit_root(std::size_t k, std::size_t n) {
  return std::polar(1.0L, -2 * std::acos(-1.0L) * static_cast<long double>(k) / static_cast<long double>(n));
}

// Radix 2 with every root from its own angle, unscaled, in place.
inline void transform_power_of_two(wides *data) {
  wides &x = *data;
  const std::size_t n = x.size();
  wides root(n / 2);
  for (std::size_t k = 0; k < n / 2; ++k) root[k] = unit_root(k, n);
  for (std::size_t i = 0, j = 0; i < n; ++i) {
    if (i < j) std::swap(x[i], x[j]);
    std::size_t bit = n / 2;
    for (; (j & bit) != 0; bit /= 2) j ^= bit;
    j |= bit;
  }
  for (std::size_t half = 1; half < n; half *= 2)
    for (std::size_t i = 0; i < n; i += 2 * half)
      for (std::size_t k = 0; k < half; ++k) {
        const wide turned = x[i + k + half] * root[k * (n / 2 / half)];
        x[i + k + half] = x[i + k] - turned;
        x[i + k] += turned;
      }
}

// Unscaled, of any length: through a convolution with a chirp where the length is no power of two.
inline wides transform_of(wides x, bool inverse = false) {
  const std::size_t n = x.size();
  if (inverse)
    for (wide &z : x) z = std::conj(z);
  if ((n & (n - 1)) == 0) {
    transform_power_of_two(&x);
  } else {
    std::size_t m = 1;
    while (m < 2 * n) m *= 2;
    wides chirp(n);
    wides filter(m);
    for (std::size_t k = 0; k < n; ++k) {
      chirp[k] = unit_root(k * k % (2 * n), 2 * n);
      filter[k] = filter[(m - k) % m] = std::conj(chirp[k]);
      x[k] *= chirp[k];
    }
    x.resize(m);
    transform_power_of_two(&filter);
    transform_power_of_two(&x);
    for (std::size_t k = 0; k < m; ++k) x[k] = std::conj(x[k] * filter[k]) / static_cast<long double>(m);
    transform_power_of_two(&x);
    x.resize(n);
    for (std::size_t k = 0; k < n; ++k) x[k] = std::conj(x[k]) * chirp[k];
  }
  if (inverse)
    for (wide &z : x) z = std::conj(z);
  return x;
}

inline wides half_of(wides x) { return x.resize(x.size() / 2 + 1), x; }

// The real signal of even length whose spectrum begins with x.
inline wides from_half(const wides &x) {
  wides whole = x;
  for (std::size_t k = x.size() - 2; k > 0; --k) whole.push_back(std::conj(x[k]));
  return transform_of(whole, true);
}

inline wides cosine_of(const wides &x) {
  const std::size_t n = x.size();
  wides y = x;
  y.resize(2 * n);
  y = transform_of(y);
  y.resize(n);
  for (std::size_t k = 0; k < n; ++k) y[k] = (y[k] * unit_root(k, 4 * n)).real();
  return y;
}

// x with its bins weighted: bin 0 and a middle one, those below the middle, those above.
inline wides weighted(const wides &x, wide outer, wide low, wide high) {
  const std::size_t n = x.size();
  wides bins = transform_of(x);
  for (std::size_t k = 0; k < n; ++k)
    bins[k] *= (k == 0 || 2 * k == n ? outer : 2 * k < n ? low : high) / static_cast<long double>(n);
  return transform_of(bins, true);
}

enum class layout { reals, pairs, half_spectrum };

inline std::size_t length_of(layout l, std::size_t n) { return l == layout::half_spectrum ? n / 2 + 1 : n; }

struct kind {
  const char *name;
  layout from;
  layout to;
  wides (*expected)(const wides &x);
  int32_t (*ours)(dsp_vec *v);
  double (*scale)(double n);  // what ours is to be multiplied by
#ifdef HAVE_FFTW
  fftw_plan (*plan)(int n, double *x, fftw_complex *z);  // null: no such transform
#endif
};

#ifdef HAVE_FFTW
#define DSP_FFTW_PLAN(...) , [](int n, double *x, fftw_complex *z) { return (void)x, (void)z, __VA_ARGS__; }
#define DSP_NO_FFTW_PLAN , nullptr
#else
#define DSP_FFTW_PLAN(...)
#define DSP_NO_FFTW_PLAN
#endif

inline double one(double) { return 1; }
inline double length(double n) { return n; }

const kind complex = {"complex",
                      layout::pairs,
                      layout::pairs,
                      [](const wides &x) { return transform_of(x); },
                      [](dsp_vec *v) { return dspi_dft(v, 0); },
                      length DSP_FFTW_PLAN(fftw_plan_dft_1d(n, z, z, FFTW_FORWARD, FFTW_MEASURE))};
const kind complex_inverse = {"complex inverse",
                              layout::pairs,
                              layout::pairs,
                              [](const wides &x) { return transform_of(x, true); },
                              [](dsp_vec *v) { return dspi_dft(v, 1); },
                              one DSP_FFTW_PLAN(fftw_plan_dft_1d(n, z, z, FFTW_BACKWARD, FFTW_MEASURE))};
const kind real = {"real",
                   layout::reals,
                   layout::half_spectrum,
                   [](const wides &x) { return half_of(transform_of(x)); },
                   dspi_rdft,
                   length DSP_FFTW_PLAN(fftw_plan_dft_r2c_1d(n, x, z, FFTW_MEASURE))};
const kind real_inverse = {  // of even length
    "real inverse",
    layout::half_spectrum,
    layout::reals,
    from_half,
    [](dsp_vec *v) { return dspi_irdft(v, 0); },
    one DSP_FFTW_PLAN(fftw_plan_dft_c2r_1d(n, z, x, FFTW_MEASURE))};
const kind cosine = {"cosine",
                     layout::reals,
                     layout::reals,
                     cosine_of,
                     [](dsp_vec *v) { return dspi_dct(v, 0); },
                     length DSP_FFTW_PLAN(fftw_plan_r2r_1d(n, x, x, FFTW_REDFT10, FFTW_MEASURE))};
const kind hilbert = {"Hilbert",     layout::reals,
                      layout::reals, [](const wides &x) { return weighted(x, 0, wide(0, -1), wide(0, 1)); },
                      dspi_hilbert,  one DSP_NO_FFTW_PLAN};
const kind analytic = {"analytic",    layout::reals,
                       layout::pairs, [](const wides &x) { return weighted(x, 1, 2, 0); },
                       dspi_analytic, one DSP_NO_FFTW_PLAN};

// The relative error over `draws` signals of what run(x) leaves of the samples in x, then multiplied by the scale.
template <class Run>
double error_of(const kind &what, std::size_t n, std::size_t draws, double scale, const Run &run) {
  long double wrong = 0;
  long double all = 0;
  const std::size_t samples = length_of(what.from, n);
  const std::size_t step = what.from == layout::reals ? 1 : 2;
  for (std::size_t draw = 1; draw <= draws; ++draw) {
    doubles x = noise(samples * step, static_cast<unsigned>(draw));
    if (what.from == layout::half_spectrum) x[1] = x[n + 1] = 0;
    wides z;
    for (std::size_t i = 0; i < samples * step; i += step) z.emplace_back(x[i], step == 2 ? x[i + 1] : 0.0);
    const wides expected = what.expected(z);
    x.resize(8 * n + 16);
    run(&x);
    for (std::size_t k = 0; k < expected.size(); ++k) {
      const wide found = what.to == layout::reals ? wide(x[k]) : wide(x[2 * k], x[2 * k + 1]);
      wrong += std::norm(static_cast<long double>(scale) * found - expected[k]);
      all += std::norm(expected[k]);
    }
  }
  return static_cast<double>(std::sqrt(wrong / all));
}

inline double ours(const kind &what, std::size_t n, std::size_t draws) {
  return error_of(what, n, draws, what.scale(static_cast<double>(n)), [&](doubles *x) {
    dsp_vec v = {};
    v.data = x->data();
    v.capacity = static_cast<int32_t>(x->size());
    v.length = static_cast<int32_t>(length_of(what.from, n));
    v.is_complex = what.from != layout::reals;
    what.ours(&v);
  });
}

// NaN where there is none.
inline double fftw(const kind &what, std::size_t n, std::size_t draws) {
#ifdef HAVE_FFTW
  if (what.plan != nullptr) {
    doubles buffer(8 * n + 16);
    fftw_plan plan = what.plan(static_cast<int>(n), buffer.data(), reinterpret_cast<fftw_complex *>(buffer.data()));
    const double scale = what.plan == cosine.plan ? 0.5 : 1.0;
    const double error = error_of(what, n, draws, scale, [&](doubles *x) {
      std::copy(x->begin(), x->end(), buffer.begin());
      fftw_execute(plan);
      std::copy(buffer.begin(), buffer.end(), x->begin());
    });
    fftw_destroy_plan(plan);
    return error;
  }
#endif
  return std::nan("");
}

// Twice the spacing of doubles at 1 times the root of the levels of the inner power of two.
inline double bound(std::size_t n) {
  std::size_t m = 2;
  while (m < (((n & (n - 1)) == 0) ? n : 2 * n - 2)) m *= 2;
  return 2 * std::numeric_limits<double>::epsilon() * std::sqrt(std::log2(static_cast<double>(m)));
}

}  // namespace fft_accuracy
