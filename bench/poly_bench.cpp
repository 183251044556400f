// Zeros of random polynomials beside GSL and Eigen, coefficients from zeros, circles and arcs.
#include <benchmark/benchmark.h>

#include <cmath>
#include <complex>
#include <random>
#include <string>
#include <vector>

#include "dsp/dsp.h"

#ifdef HAVE_GSL
#include <gsl/gsl_poly.h>
#endif
#ifdef HAVE_EIGEN
#include <unsupported/Eigen/Polynomials>
#endif

namespace {

using doubles = std::vector<double>;

constexpr std::size_t variety = 20;  // polynomials of a degree, taken in turn

std::vector<doubles> random_polynomials(std::size_t degree) {
  std::mt19937_64 engine(1);
  std::normal_distribution<double> normal;
  std::vector<doubles> c(variety, doubles(degree + 1));
  for (doubles &each : c)
    for (double &x : each) x = normal(engine);
  return c;
}

void roots(benchmark::State &state, std::size_t n) {
  const std::vector<doubles> c = random_polynomials(n);
  doubles room(2 * n + 2);
  std::size_t k = 0;
  for (auto _ : state) {
    std::copy(c[k].begin(), c[k].end(), room.begin());
    dsp_vec v = {1.0, room.data(), static_cast<int32_t>(room.size()), static_cast<int32_t>(n + 1), 0, 0};
    benchmark::DoNotOptimize(dspi_proots(&v));
    k = (k + 1) % variety;
  }
}

void solutions(benchmark::State &state, std::size_t n) {
  std::vector<doubles> c = random_polynomials(n);
  dsp_vec out;
  dsp_init(&out);
  std::size_t k = 0;
  for (auto _ : state) {
    const dsp_vec v = {1.0, c[k].data(), 0, static_cast<int32_t>(n + 1), 0, 0};
    benchmark::DoNotOptimize(dsps_psolve(&v, &out, 0.5));
    k = (k + 1) % variety;
  }
  dsp_destroy(&out);
}

// Of unity, in the order of phase.
void coefficients(benchmark::State &state, std::size_t n) {
  doubles room(2 * n + 2);
  for (auto _ : state) {
    for (std::size_t i = 0; i < n; ++i) {
      room[2 * i] = std::cos(static_cast<double>(i));
      room[2 * i + 1] = std::sin(static_cast<double>(i));
    }
    dsp_vec v = {1.0, room.data(), static_cast<int32_t>(room.size()), static_cast<int32_t>(n), 1, 0};
    benchmark::DoNotOptimize(dspi_pztoc(&v));
  }
}

#ifdef HAVE_GSL
void roots_gsl(benchmark::State &state, std::size_t n) {
  const std::vector<doubles> c = random_polynomials(n);
  gsl_poly_complex_workspace *work = gsl_poly_complex_workspace_alloc(n + 1);
  doubles z(2 * n);
  std::size_t k = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(gsl_poly_complex_solve(c[k].data(), n + 1, work, z.data()));
    k = (k + 1) % variety;
  }
  gsl_poly_complex_workspace_free(work);
}
#endif

#ifdef HAVE_EIGEN
void roots_eigen(benchmark::State &state, std::size_t n) {
  const std::vector<doubles> c = random_polynomials(n);
  std::size_t k = 0;
  for (auto _ : state) {
    const Eigen::Map<const Eigen::VectorXd> p(c[k].data(), static_cast<Eigen::Index>(n + 1));
    Eigen::PolynomialSolver<double, Eigen::Dynamic> solver(p);
    benchmark::DoNotOptimize(solver.roots().data());
    k = (k + 1) % variety;
  }
}
#endif

const int registered = [] {
  using benchmark::RegisterBenchmark;
  for (const std::size_t n : {10u, 50u, 200u}) {
    const std::string size = "/" + std::to_string(n) + "/";
    RegisterBenchmark(("roots" + size + "dsp").c_str(), roots, n);
#ifdef HAVE_GSL
    RegisterBenchmark(("roots" + size + "gsl").c_str(), roots_gsl, n);
#endif
#ifdef HAVE_EIGEN
    if (n < 200) RegisterBenchmark(("roots" + size + "eigen").c_str(), roots_eigen, n);
#endif
    RegisterBenchmark(("solve" + size + "dsp").c_str(), solutions, n);
    RegisterBenchmark(("coefficients" + size + "dsp").c_str(), coefficients, n);
  }
  return 0;
}();

}  // namespace
