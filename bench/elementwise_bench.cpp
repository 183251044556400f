// Element-wise routines beside plain loops. Names are work/size/library, sizes in samples.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "dsp/dsp.h"

namespace {

using doubles = std::vector<double>;
using complex = std::complex<double>;
constexpr double pi = 3.141592653589793;

// v is the signal that the work changes, a and b are its inputs; n samples.
using ours = void (*)(dsp_vec *v, const dsp_vec *a, const dsp_vec *b);
using plain = void (*)(double *v, const double *a, const double *b, int64_t n);

enum : unsigned { real = 0, pairs = 1, fresh = 2 };  // fresh: v starts as a copy of a each time, on either side

struct work {
  const char *name;
  unsigned flags;
  int moved;  // doubles per sample
  ours run;
  plain loop;
};

// The textbook's complex product: std::complex would also repair infinities.
complex times(complex a, complex b) {
  return {a.real() * b.real() - a.imag() * b.imag(), a.real() * b.imag() + a.imag() * b.real()};
}
complex *z(double *x) { return reinterpret_cast<complex *>(x); }
const complex *z(const double *x) { return reinterpret_cast<const complex *>(x); }

// clang-format off
#define EACH for (int64_t i = 0; i < n; ++i)
#define LOOP [](double *__restrict v, [[maybe_unused]] const double *a, [[maybe_unused]] const double *b, int64_t n)
#define OURS [](dsp_vec *v, [[maybe_unused]] const dsp_vec *a, [[maybe_unused]] const dsp_vec *b)

const work works[] = {
    {"scale", real, 2, OURS { dspi_scale(v, -1.0); }, LOOP { EACH v[i] *= -1.0; }},
    {"offset", real, 2, OURS { dspi_offset(v, 1e-9); }, LOOP { EACH v[i] += 1e-9; }},
    {"square", real, 2, OURS { dspi_square(v); }, LOOP { EACH v[i] *= v[i]; }},
    {"sqrt", real, 2, OURS { dspi_sqrt(v); }, LOOP { EACH v[i] = std::sqrt(std::max(v[i], 0.0)); }},
    {"recip", real, 2, OURS { dspi_recip(v); }, LOOP { EACH v[i] = v[i] == 0.0 ? 1e100 : 1.0 / v[i]; }},
    {"limit", real, 2, OURS { dspi_limit(v, -2.0, 2.0, nullptr); }, LOOP { int any = 0; EACH { any |= v[i] < -2.0 || v[i] > 2.0; v[i] = std::clamp(v[i], -2.0, 2.0); } benchmark::DoNotOptimize(any); }},
    {"add", real, 3, OURS { dspb_add(a, b, v); }, LOOP { EACH v[i] = a[i] + b[i]; }},
    {"avg_add", real, 3, OURS { dspb_avg_add(a, v, v, 0.1); }, LOOP { EACH v[i] += 0.1 * (a[i] - v[i]); }},
    {"mul", real, 3, OURS { dspb_mul(a, b, v); }, LOOP { EACH v[i] = a[i] * b[i]; }},
    {"div", real, 3, OURS { dspb_div(a, b, v); }, LOOP { EACH v[i] = b[i] != 0.0 ? a[i] / b[i] : 0.0; }},
    {"max", real, 3, OURS { dspb_max(a, b, v); }, LOOP { EACH v[i] = a[i] > b[i] ? a[i] : b[i]; }},
    {"complex_mul", pairs, 6, OURS { dspb_mul(a, b, v); }, LOOP { EACH z(v)[i] = times(z(a)[i], z(b)[i]); }},
    {"conj_mul", pairs, 6, OURS { dspb_conj_mul(a, b, v); }, LOOP { EACH z(v)[i] = times(z(a)[i], std::conj(z(b)[i])); }},
    {"complex_div", pairs, 6, OURS { dspb_div(a, b, v); },
     LOOP { EACH { const double q = std::norm(z(b)[i]); const complex p = times(z(a)[i], std::conj(z(b)[i]));
                   z(v)[i] = {p.real() / q, p.imag() / q}; } }},
    {"cscale", pairs, 4, OURS { dspi_cscale(v, 0.6, 0.8); }, LOOP { EACH z(v)[i] = times({0.6, 0.8}, z(v)[i]); }},
    {"conj", pairs, 4, OURS { dspi_conj(v); }, LOOP { EACH v[2 * i + 1] = -v[2 * i + 1]; }},
    {"magnitude", pairs, 3, OURS { dspu_mag(a, v); }, LOOP { EACH v[i] = std::sqrt(std::norm(z(a)[i])); }},
    {"magnitude_hypot", pairs, 3, OURS { dspu_mag(a, v); }, LOOP { EACH v[i] = std::abs(z(a)[i]); }},
    {"magsq", pairs, 3, OURS { dspu_magsq(a, v); }, LOOP { EACH v[i] = std::norm(z(a)[i]); }},
    {"ritoc", real, 4, OURS { dspb_ritoc(a, b, v); }, LOOP { EACH { v[2 * i] = a[i]; v[2 * i + 1] = b[i]; } }},
    {"differ", fresh, 2, OURS { dspi_differ(v); }, LOOP { double dx = 0.5; benchmark::DoNotOptimize(dx); for (int64_t i = n - 1; i > 0; --i) v[i] = (v[i] - v[i - 1]) / dx; }},
    {"integ", fresh, 2, OURS { dspi_integ(v); }, LOOP { double s = 0; EACH v[i] = 0.5 * (s += v[i]); }},
    {"rev", real, 2, OURS { dspi_rev(v); }, LOOP { std::reverse(v, v + n); }},
    {"swap_halves", real, 2, OURS { dspi_swap_halves(v); }, LOOP { std::swap_ranges(v, v + n / 2, v + n / 2); }},
    {"unwrap", fresh, 2, OURS { dspi_unwrap(v); },
     LOOP { double p = 0; EACH { const double d = v[i] - p; if (d > pi || d < -pi) { const double r = std::fmod(d, 2 * pi);
            v[i] = p + (r > pi ? r - 2 * pi : r < -pi ? r + 2 * pi : r); } p = v[i]; } }},
    {"sort", fresh, 2, OURS { dspi_sort(v); }, LOOP { std::sort(v, v + n); }},
    {"db", fresh, 2, OURS { dspi_db(v, 20.0); }, LOOP { EACH v[i] = v[i] < 1e-300 ? -6000.0 : 20.0 * std::log10(v[i]); }},
    {"log", fresh, 2, OURS { dspi_log(v); }, LOOP { EACH v[i] = v[i] < 1e-300 ? -700.0 : std::log(v[i]); }},
    {"exp", fresh, 2, OURS { dspi_exp(v); }, LOOP { EACH v[i] = v[i] > 230.0 ? 1e100 : std::exp(v[i]); }},
    {"cos", real, 1, OURS { dspc_cos(v, 0.01, 0.0); },
     LOOP { double c = 1, s = 0; const double wc = std::cos(0.02 * pi), ws = std::sin(0.02 * pi);
            EACH { v[i] = c; const double t = c * wc - s * ws; s = s * wc + c * ws; c = t; } }},
};
// clang-format on

// Positive samples around 1, so that repeated products neither overflow nor vanish; or a wrapped phase, for unwrap.
doubles input(int64_t n, unsigned seed, bool phases) {
  std::mt19937_64 engine(seed);
  std::uniform_real_distribution<double> value(0.5, 2.0);
  doubles x(static_cast<std::size_t>(n));
  double phase = 0.0;
  for (double &sample : x) sample = phases ? std::remainder(phase += value(engine), 2 * pi) : value(engine);
  return x;
}

dsp_vec borrow(doubles &x, int64_t n, bool is_complex) {
  return {0.5, x.data(), static_cast<int32_t>(x.size()), static_cast<int32_t>(n), is_complex, 0};
}

void measure(benchmark::State &state, const work &w, int64_t n, bool plain_loop) {
  const bool is_complex = (w.flags & pairs) != 0;
  const bool phases = w.name == std::string("unwrap");
  const int64_t count = is_complex ? 2 * n : n;
  // So many fresh samples that the processor cannot learn to predict branches on them.
  const int64_t copies = (w.flags & fresh) != 0 && n < 100000 ? 100000 / n : 1;
  doubles a = input(count * copies, 1, phases), b = input(count, 2, phases), v(static_cast<std::size_t>(2 * n), 1.0);
  int64_t turn = 0;
  const dsp_vec va = borrow(a, n, is_complex), vb = borrow(b, n, is_complex);
  for (auto _ : state) {
    if ((w.flags & fresh) != 0)
      std::memcpy(v.data(), a.data() + turn++ % copies * count, static_cast<std::size_t>(count) * sizeof(double));
    if (plain_loop) {
      w.loop(v.data(), a.data(), b.data(), n);
    } else {
      dsp_vec vv = borrow(v, n, is_complex);
      w.run(&vv, &va, &vb);
    }
    benchmark::DoNotOptimize(v.data());
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(state.iterations() * n * w.moved * static_cast<int64_t>(sizeof(double)));
}

const bool registered = [] {
  for (const work &w : works)
    for (const int64_t n : {1000, 100000, 10000000})
      for (const bool plain_loop : {false, true}) {
        const std::string name = std::string(w.name) + "/" + std::to_string(n) + (plain_loop ? "/loop" : "/dsp");
        benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State &state) { measure(state, w, n, plain_loop); });
      }
  return true;
}();

}  // namespace
