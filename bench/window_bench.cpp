// Records times windows: cached ones beside a plain product, and generated ones. Names are work/size/library.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "dsp/dsp.h"

namespace {

using doubles = std::vector<double>;

void measure(benchmark::State &state, std::size_t n, const std::function<void(doubles &x)> &apply) {
  doubles x(n, 1.0);
  for (auto _ : state) {
    apply(x);
    benchmark::DoNotOptimize(x.data());
    benchmark::ClobberMemory();
    if (x[n / 4] < 1e-200) x.assign(n, 1.0);  // before products become subnormal, which would be slow
  }
}

void add(const char *work, const char *library, const std::function<void(doubles &x)> &apply) {
  for (const std::size_t n : {1024, 16384, 262144}) {
    const std::string name = std::string(work) + "/" + std::to_string(n) + "/" + library;
    benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State &state) { measure(state, n, apply); });
  }
}

dsp_vec view(doubles &x) { return {1.0, x.data(), 0, static_cast<int32_t>(x.size()), 0, 0}; }

const doubles &hann(std::size_t n) {
  static doubles w;
  if (w.size() != n) {
    w.resize(n);
    for (std::size_t i = 0; i < n; ++i)
      w[i] = 1.0 - std::cos(2.0 * std::acos(-1.0) * static_cast<double>(i) / static_cast<double>(n));
  }
  return w;
}

// The plain loop: each cosine from the C library.
void cosine_loop(doubles &x, const double *c, int terms) {
  const double step = 2.0 * std::acos(-1.0) / static_cast<double>(x.size());
  for (std::size_t i = 0; i < x.size(); ++i) {
    double w = c[0];
    for (int k = 1; k < terms; ++k) w += c[k] * std::cos(k * step * static_cast<double>(i));
    x[i] *= w;
  }
}

const int registered = [] {
  add("window_cached", "dsp", [](doubles &x) {
    dsp_vec v = view(x);
    dspi_window(&v, DSP_WINDOW_HANN, DSP_WND_NO_SWAP);
  });
  add("window_cached_swapped", "dsp", [](doubles &x) {
    dsp_vec v = view(x);
    dspi_window(&v, DSP_WINDOW_HANN, 0);
  });
  for (const char *work : {"window_cached", "window_cached_swapped"})
    add(work, "loop", [](doubles &x) {
      const doubles &w = hann(x.size());
      for (std::size_t i = 0; i < x.size(); ++i) x[i] *= w[i];
    });
  add("window_made_cos4", "dsp", [](doubles &x) {
    static double c[] = {0.355768, -0.487396, 0.144232, -0.012604};
    const dsp_vec coefficients = {1.0, c, 0, 4, 0, 0};
    dsp_vec v = view(x);
    dspi_window_cos(&v, &coefficients);
  });
  add("window_made_cos4", "loop", [](doubles &x) {
    static const double c[] = {0.355768, -0.487396, 0.144232, -0.012604};
    cosine_loop(x, c, 4);
  });
  add("window_made_kaiser", "dsp", [](doubles &x) {
    dsp_vec v = view(x);
    dspi_window_kaiser(&v, 12.0, DSP_WND_RAW | DSP_WND_NO_SWAP);
  });
  add("window_made_kaiser", "loop", [](doubles &x) {
    const auto n = static_cast<double>(x.size());
    const double centre = std::cyl_bessel_i(0.0, 12.0);
    for (std::size_t i = 0; i < x.size(); ++i) {
      const double t = 2.0 * static_cast<double>(i) / n - 1.0;
      x[i] *= std::cyl_bessel_i(0.0, 12.0 * std::sqrt(1.0 - t * t)) / centre;
    }
  });
  add("window_made_gauss", "dsp", [](doubles &x) {
    dsp_vec v = view(x);
    dspi_window_gauss(&v, 0.15, DSP_WND_RAW | DSP_WND_NO_SWAP);
  });
  add("window_made_gauss", "loop", [](doubles &x) {
    const double centre = 0.5 * static_cast<double>(x.size());
    for (std::size_t i = 0; i < x.size(); ++i) {
      const double t = (static_cast<double>(i) - centre) / (0.3 * centre);
      x[i] *= std::exp(-0.5 * t * t);
    }
  });
  return 0;
}();

}  // namespace
