// Grid interpolation beside GSL, interleaving beside plain loops.
#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "dsp/dsp.h"

#ifdef HAVE_GSL
#include <gsl/gsl_errno.h>
#include <gsl/gsl_spline.h>
#endif

namespace {

using reals = std::vector<double>;

dsp_vec borrow(reals &x) { return {1.0, x.data(), 0, static_cast<int32_t>(x.size()), 0, 0}; }

// Uneven nodes of a smooth function, and queries that rise all over them.
struct table {
  reals x, y, t;
  table(std::size_t nodes, std::size_t queries) : x(nodes), y(nodes), t(queries) {
    std::mt19937_64 engine(1);
    std::uniform_real_distribution<double> jitter(-0.3, 0.3);
    for (std::size_t i = 0; i < nodes; ++i) {
      x[i] = static_cast<double>(i) + jitter(engine);
      y[i] = std::sin(0.05 * x[i]);
    }
    for (std::size_t i = 0; i < queries; ++i)
      t[i] = x.front() + (x.back() - x.front()) * (static_cast<double>(i) + 0.5) / static_cast<double>(queries);
  }
};

void interpolate(benchmark::State &state, int32_t scheme, std::size_t nodes, std::size_t queries) {
  table f(nodes, queries);
  dsp_vec x = borrow(f.x), y = borrow(f.y), t = borrow(f.t), d2, out;
  dsp_init(&d2);
  dsp_init(&out);
  dspb_cspline_2d(&x, &y, &d2, 0.0, 0.0, DSP_SPLINE_NATURAL, DSP_SPLINE_NATURAL);
  for (auto _ : state) {
    benchmark::DoNotOptimize(dsp_interp(&x, &y, &d2, &t, &out, scheme));
    benchmark::ClobberMemory();
  }
  dsp_destroy(&d2);
  dsp_destroy(&out);
}

void solve(benchmark::State &state, std::size_t nodes) {
  table f(nodes, 1);
  dsp_vec x = borrow(f.x), y = borrow(f.y), d2;
  dsp_init(&d2);
  for (auto _ : state)
    benchmark::DoNotOptimize(dspb_cspline_2d(&x, &y, &d2, 0.0, 0.0, DSP_SPLINE_NATURAL, DSP_SPLINE_NATURAL));
  dsp_destroy(&d2);
}

struct pair_of_signals {
  reals a, b, merged;
  explicit pair_of_signals(std::size_t n) : a(n, 1.0), b(n, 2.0), merged(2 * n) {}
};

void interleave(benchmark::State &state, std::size_t n) {
  pair_of_signals p(n);
  dsp_vec a = borrow(p.a), b = borrow(p.b), out;
  dsp_init(&out);
  for (auto _ : state) {
    benchmark::DoNotOptimize(dspb_inter(&a, &b, &out));
    benchmark::ClobberMemory();
  }
  dsp_destroy(&out);
}

void interleave_loop(benchmark::State &state, std::size_t n) {
  pair_of_signals p(n);
  for (auto _ : state) {
    for (std::size_t i = 0; i < n; ++i) {
      p.merged[2 * i] = p.a[i];
      p.merged[2 * i + 1] = p.b[i];
    }
    benchmark::ClobberMemory();
  }
}

void insert_zeros(benchmark::State &state, std::size_t n) {
  pair_of_signals p(n);
  dsp_vec v = {1.0, p.merged.data(), static_cast<int32_t>(2 * n), 0, 0, 0};
  for (auto _ : state) {
    v.length = static_cast<int32_t>(n);
    v.dx = 1.0;
    benchmark::DoNotOptimize(dspi_zinter(&v));
    benchmark::ClobberMemory();
  }
}

void insert_zeros_loop(benchmark::State &state, std::size_t n) {
  pair_of_signals p(n);
  double *x = p.merged.data();
  for (auto _ : state) {
    for (std::size_t i = n; i-- > 0;) {
      x[2 * i] = x[i];
      x[2 * i + 1] = 0.0;
    }
    benchmark::ClobberMemory();
  }
}

#ifdef HAVE_GSL
void interpolate_gsl(benchmark::State &state, const gsl_interp_type *type, std::size_t nodes, std::size_t queries) {
  const table f(nodes, queries);
  reals out(queries);
  gsl_spline *spline = gsl_spline_alloc(type, nodes);
  gsl_interp_accel *place = gsl_interp_accel_alloc();
  gsl_spline_init(spline, f.x.data(), f.y.data(), nodes);
  for (auto _ : state) {
    for (std::size_t i = 0; i < queries; ++i) out[i] = gsl_spline_eval(spline, f.t[i], place);
    benchmark::ClobberMemory();
  }
  gsl_interp_accel_free(place);
  gsl_spline_free(spline);
}

void solve_gsl(benchmark::State &state, std::size_t nodes) {
  const table f(nodes, 1);
  gsl_spline *spline = gsl_spline_alloc(gsl_interp_cspline, nodes);
  for (auto _ : state) {
    gsl_spline_init(spline, f.x.data(), f.y.data(), nodes);
    benchmark::ClobberMemory();
  }
  gsl_spline_free(spline);
}
#endif

const int registered = [] {
  using benchmark::RegisterBenchmark;
  const struct {
    const char *name;
    int32_t scheme;
  } schemes[] = {{"hold", DSP_INTERP_HOLD},
                 {"linear", DSP_INTERP_LINEAR},
                 {"quadratic", DSP_INTERP_QUADRATIC},
                 {"spline", DSP_INTERP_SPLINE}};
  for (const auto &[nodes, queries] : {std::pair<std::size_t, std::size_t>{1000, 100000}, {1000, 1000}, {1000, 3000}}) {
    const std::string size = "/" + std::to_string(nodes) + "x" + std::to_string(queries) + "/";
    for (const auto &s : schemes)
      RegisterBenchmark((s.name + size + "dsp").c_str(), interpolate, s.scheme, nodes, queries);
#ifdef HAVE_GSL
    RegisterBenchmark(("linear" + size + "gsl").c_str(), interpolate_gsl, gsl_interp_linear, nodes, queries);
    RegisterBenchmark(("spline" + size + "gsl").c_str(), interpolate_gsl, gsl_interp_cspline, nodes, queries);
#endif
  }
  RegisterBenchmark("natural_spline/1000/dsp", solve, 1000);
#ifdef HAVE_GSL
  RegisterBenchmark("natural_spline/1000/gsl", solve_gsl, 1000);
#endif
  for (const std::size_t n : {1000, 100000}) {
    const std::string size = "/" + std::to_string(n) + "/";
    RegisterBenchmark(("interleave" + size + "dsp").c_str(), interleave, n);
    RegisterBenchmark(("interleave" + size + "loop").c_str(), interleave_loop, n);
    RegisterBenchmark(("insert_zeros" + size + "dsp").c_str(), insert_zeros, n);
    RegisterBenchmark(("insert_zeros" + size + "loop").c_str(), insert_zeros_loop, n);
  }
  return 0;
}();

}  // namespace
