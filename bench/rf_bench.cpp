// Calibration points, complex inverses and products beside Eigen and a solution written out by hand.
#include <benchmark/benchmark.h>

#include <complex>
#include <random>
#include <string>
#include <vector>

#include "dsp/dsp.h"

#ifdef HAVE_EIGEN
#include <Eigen/Dense>
#endif

namespace {

using complex = std::complex<double>;
using points = std::vector<dsp_complex>;

complex value(const dsp_complex &z) { return {z.re, z.im}; }

points random_points(std::size_t n, unsigned seed) {
  std::mt19937_64 engine(seed);
  std::uniform_real_distribution<double> part(-1.0, 1.0);
  points z(n);
  for (dsp_complex &p : z) p = {part(engine), part(engine)};
  return z;
}

constexpr int32_t sweep = 1601;

// A sweep of an offset short, an open with its fringe and an almost matched load behind a lossy line with mismatches,
// with noise: `a` holds the actual coefficients, `g` the measured ones.
struct standards {
  points a[3] = {points(sweep), points(sweep), points(sweep)};
  points g[3] = {points(sweep), points(sweep), points(sweep)};
  standards() {
    const points noise = random_points(3 * sweep, 4);
    for (std::size_t i = 0; i < sweep; ++i) {
      const double angle = 0.002 * static_cast<double>(i);
      const complex actual[] = {-std::polar(0.999, -angle), std::polar(0.998, -1.1 * angle), {0.01, 0.003 * angle}};
      const complex line = std::polar(0.9 - 0.05 * angle, -40.0 * angle);
      for (std::size_t s = 0; s < 3; ++s) {
        const complex inner = line * (actual[s] - 0.05) / (1.0 - 0.05 * actual[s]);
        const complex measured = (0.04 + inner) / (1.0 + 0.04 * inner) + 1e-4 * value(noise[3 * i + s]);
        a[s][i] = {actual[s].real(), actual[s].imag()};
        g[s][i] = {measured.real(), measured.imag()};
      }
    }
  }
};

void calibrate(benchmark::State &state) {
  const standards s;
  points e[3];
  for (auto _ : state) {
    for (int k = 0; k < 3; ++k) e[k] = s.g[k];
    Compute1PortTerms(e[0].data(), e[1].data(), e[2].data(), s.a[0].data(), s.a[1].data(), s.a[2].data(), 0, sweep);
    benchmark::ClobberMemory();
  }
}

void invert_array(benchmark::State &state, int32_t n) {
  const points m = random_points(static_cast<std::size_t>(n * n), 5);
  points work;
  for (auto _ : state) {
    work = m;
    benchmark::DoNotOptimize(invert(work.data(), n));
    benchmark::ClobberMemory();
  }
}

void multiply_arrays(benchmark::State &state, int32_t n) {
  const points a = random_points(static_cast<std::size_t>(n * n), 6);
  const points b = random_points(static_cast<std::size_t>(n * n), 7);
  points out(a.size());
  for (auto _ : state) {
    benchmark::DoNotOptimize(MatrixMult(a.data(), b.data(), out.data(), n, n, n));
    benchmark::ClobberMemory();
  }
}

// By Cramer's rule without pivoting, written out for real and imaginary parts: the least work that gives the terms.
struct pair {
  double re, im;
  explicit pair(const dsp_complex &z) : re(z.re), im(z.im) {}
  pair(double x, double y) : re(x), im(y) {}
  friend pair operator+(pair x, pair y) { return {x.re + y.re, x.im + y.im}; }
  friend pair operator-(pair x, pair y) { return {x.re - y.re, x.im - y.im}; }
  friend pair operator*(pair x, pair y) { return {x.re * y.re - x.im * y.im, x.re * y.im + x.im * y.re}; }
  friend pair operator/(pair x, pair y) {
    const double scale = 1.0 / (y.re * y.re + y.im * y.im);
    return x * pair(y.re * scale, -y.im * scale);
  }
  operator dsp_complex() const { return {re, im}; }
};

void calibrate_cofactors(benchmark::State &state) {
  const standards s;
  points e[3];
  for (auto _ : state) {
    for (int k = 0; k < 3; ++k) e[k] = s.g[k];
    for (std::size_t i = 0; i < sweep; ++i) {
      const pair a1(s.a[0][i]), a2(s.a[1][i]), a3(s.a[2][i]), g1(e[0][i]), g2(e[1][i]), g3(e[2][i]);
      const pair p1 = a1 * g1, p2 = a2 * g2, p3 = a3 * g3;
      const pair m1 = a2 * p3 - a3 * p2, m2 = a3 * p1 - a1 * p3, m3 = a1 * p2 - a2 * p1;
      const pair determinant = m1 + m2 + m3;
      const pair directivity = (g1 * m1 + g2 * m2 + g3 * m3) / determinant;
      const pair match = (a1 * (g2 - g3) + a2 * (g3 - g1) + a3 * (g1 - g2)) / determinant;
      const pair delta = (g1 * (p2 - p3) + g2 * (p3 - p1) + g3 * (p1 - p2)) / determinant;
      e[0][i] = directivity;
      e[1][i] = match;
      e[2][i] = directivity * match + delta;
    }
    benchmark::ClobberMemory();
  }
}

#ifdef HAVE_EIGEN
void calibrate_eigen(benchmark::State &state) {
  const standards s;
  points e[3];
  for (auto _ : state) {
    for (int k = 0; k < 3; ++k) e[k] = s.g[k];
    for (std::size_t i = 0; i < sweep; ++i) {
      Eigen::Matrix3cd m;
      Eigen::Vector3cd b;
      for (int r = 0; r < 3; ++r) {
        const complex a = value(s.a[r][i]);
        b(r) = value(e[r][i]);
        m.row(r) << a, 1.0, -a * b(r);
      }
      const Eigen::Vector3cd x = m.partialPivLu().solve(b);
      const complex tracking = x(0) - x(1) * x(2);
      e[0][i] = {x(1).real(), x(1).imag()};
      e[1][i] = {-x(2).real(), -x(2).imag()};
      e[2][i] = {tracking.real(), tracking.imag()};
    }
    benchmark::ClobberMemory();
  }
}

using mapped = Eigen::Map<Eigen::Matrix<complex, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>>;

mapped map(points &p, int32_t n) { return mapped(reinterpret_cast<complex *>(p.data()), n, n); }

void invert_eigen(benchmark::State &state, int32_t n) {
  const points m = random_points(static_cast<std::size_t>(n * n), 5);
  points work;
  for (auto _ : state) {
    work = m;
    map(work, n) = Eigen::MatrixXcd(map(work, n)).partialPivLu().inverse();
    benchmark::ClobberMemory();
  }
}

void multiply_eigen(benchmark::State &state, int32_t n) {
  points a = random_points(static_cast<std::size_t>(n * n), 6);
  points b = random_points(static_cast<std::size_t>(n * n), 7);
  points out(a.size());
  for (auto _ : state) {
    map(out, n).noalias() = map(a, n) * map(b, n);
    benchmark::ClobberMemory();
  }
}
#endif

const int registered = [] {
  using benchmark::RegisterBenchmark;
  RegisterBenchmark("one_port/1601/dsp", calibrate);
  RegisterBenchmark("one_port/1601/cofactors", calibrate_cofactors);
#ifdef HAVE_EIGEN
  RegisterBenchmark("one_port/1601/eigen", calibrate_eigen);
#endif
  for (const int32_t n : {3, 32}) {
    const std::string size = "/" + std::to_string(n) + "/";
    RegisterBenchmark(("inverse" + size + "dsp").c_str(), invert_array, n);
    RegisterBenchmark(("product" + size + "dsp").c_str(), multiply_arrays, n);
#ifdef HAVE_EIGEN
    RegisterBenchmark(("inverse" + size + "eigen").c_str(), invert_eigen, n);
    RegisterBenchmark(("product" + size + "eigen").c_str(), multiply_eigen, n);
#endif
  }
  return 0;
}();

}  // namespace
