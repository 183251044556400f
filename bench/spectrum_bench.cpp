// The windowed, averaged spectrum of a real record, beside the same with FFTW's transforms, and correlation. Names are
// work/size/library.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "bench/noise.h"
#include "dsp/dsp.h"
#ifdef HAVE_FFTW
#include <fftw3.h>
#endif

namespace {

using doubles = std::vector<double>;

dsp_vec view(doubles &x) { return {1.0, x.data(), 0, static_cast<int32_t>(x.size()), 0, 0}; }

void check(int32_t status) {
  if (status != 0) std::abort();
}

void our_spectrum(benchmark::State &state, std::size_t n) {
  doubles x = noise(n);
  const dsp_vec in = view(x);
  dsp_vec spectrum, average;
  dsp_init(&spectrum);
  dsp_init(&average);
  int32_t count = 0;
  for (auto _ : state) {
    check(dsph_fft(&in, &spectrum, 0, 1.0, DSP_WINDOW_HANN, 0));
    check(dsph_avg(&spectrum, &average, nullptr, DSP_AVG_MEAN | DSP_AVG_LIMIT, ++count % 1000000, 0, -1.0, 100.0));
    benchmark::DoNotOptimize(average.data);
  }
  dsp_destroy(&spectrum);
  dsp_destroy(&average);
  dsp_free_internal();
}

#ifdef HAVE_FFTW
void fftw_spectrum(benchmark::State &state, std::size_t n) {
  const doubles x = noise(n);
  doubles window(n), average(n + 2);
  for (std::size_t i = 0; i < n; ++i)
    window[i] = 2.0 / static_cast<double>(n) *
                (1.0 - std::cos(2.0 * std::acos(-1.0) * static_cast<double>(i) / static_cast<double>(n)));
  const std::unique_ptr<double, void (*)(void *)> windowed(fftw_alloc_real(n), fftw_free);
  const std::unique_ptr<double, void (*)(void *)> bins(fftw_alloc_real(n + 2), fftw_free);
  const fftw_plan plan = fftw_plan_dft_r2c_1d(static_cast<int>(n), windowed.get(),
                                              reinterpret_cast<fftw_complex *>(bins.get()), FFTW_MEASURE);
  for (auto _ : state) {
    for (std::size_t i = 0; i < n; ++i) windowed.get()[i] = x[i] * window[i];
    fftw_execute(plan);
    for (std::size_t i = 0; i < n + 2; ++i) average[i] += 0.01 * (bins.get()[i] - average[i]);
    benchmark::DoNotOptimize(average.data());
    benchmark::ClobberMemory();
  }
  fftw_destroy_plan(plan);
}
#endif

void our_correlation(benchmark::State &state, std::size_t n) {
  doubles x = noise(n), r = noise(n / 4);
  const dsp_vec in = view(x), ref = view(r);
  dsp_vec out, work;
  dsp_init(&out);
  dsp_init(&work);
  for (auto _ : state) check(dsph_corr(&ref, &in, &out, &work, static_cast<int32_t>(n / 4), 0));
  dsp_destroy(&out);
  dsp_destroy(&work);
  dsp_free_internal();
}

void add(const char *work, const char *library, void (*run)(benchmark::State &, std::size_t)) {
  for (const std::size_t n : {1u << 10, 1u << 14, 1u << 18}) {
    const std::string name = std::string(work) + "/" + std::to_string(n) + "/" + library;
    benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State &state) { run(state, n); });
  }
}

const int registered = [] {
  add("spectrum", "dsp", our_spectrum);
#ifdef HAVE_FFTW
  add("spectrum", "fftw", fftw_spectrum);
#endif
  add("correlation", "dsp", our_correlation);
  return 0;
}();

}  // namespace
