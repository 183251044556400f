// FIR filters block by block, beside plain loops and overlap-save on FFTW.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "bench/noise.h"
#include "dsp/dsp.h"

#ifdef HAVE_FFTW
#include <fftw3.h>
#endif

namespace {

using reals = std::vector<double>;

dsp_vec borrow(reals &x) { return {1.0, x.data(), 0, static_cast<int32_t>(x.size()), 0, 0}; }

void count(benchmark::State &state, std::size_t block) {
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(block));
}

struct stream {
  reals in, taps;
  dsp_vec x, h, y, past;

  stream(std::size_t block, std::size_t m) : in(noise(block, 1)), taps(noise(m, 2)), x(borrow(in)), h(borrow(taps)) {
    dsp_init(&y);
    dsp_init(&past);
  }
  stream(const stream &) = delete;
  stream &operator=(const stream &) = delete;
  ~stream() {
    dsp_destroy(&y);
    dsp_destroy(&past);
  }
};

void ours(benchmark::State &state, std::size_t block, std::size_t m) {
  stream s(block, m);
  for (auto _ : state) {
    dspd_fir(&s.x, &s.y, &s.h, &s.past);
    benchmark::DoNotOptimize(s.y.data);
  }
  count(state, block);
}

// The sum as one writes it down, the past in front of the block.
void loop(benchmark::State &state, std::size_t block, std::size_t m) {
  const reals taps = noise(m, 2), in = noise(block, 1);
  reals x(m - 1 + block), y(block);
  for (auto _ : state) {
    std::memmove(x.data(), x.data() + block, (m - 1) * sizeof(double));
    std::memcpy(x.data() + m - 1, in.data(), block * sizeof(double));
    for (std::size_t n = 0; n < block; ++n) {
      double sum = 0;
      for (std::size_t k = 0; k < m; ++k) sum += taps[k] * x[n + m - 1 - k];
      y[n] = sum;
    }
    benchmark::DoNotOptimize(y.data());
  }
  count(state, block);
}

// Taps outside, a tile of outputs inside, which the compiler turns into vectors.
void tiled(benchmark::State &state, std::size_t block, std::size_t m) {
  constexpr std::size_t tile = 64;
  const reals taps = noise(m, 2), in = noise(block, 1);
  reals x(m - 1 + block), y(block);
  for (auto _ : state) {
    std::memmove(x.data(), x.data() + block, (m - 1) * sizeof(double));
    std::memcpy(x.data() + m - 1, in.data(), block * sizeof(double));
    for (std::size_t n = 0; n < block; n += tile) {
      double sum[tile] = {};
      for (std::size_t k = 0; k < m; ++k)
        for (std::size_t j = 0; j < tile; ++j) sum[j] += taps[k] * x[n + j + m - 1 - k];
      std::copy(sum, sum + tile, y.begin() + static_cast<std::ptrdiff_t>(n));
    }
    benchmark::DoNotOptimize(y.data());
  }
  count(state, block);
}

// As many products, each added to a sum, without a load or a store: the least time that the processor's multiplier
// allows. The sums are enough to hide its latency and few enough to stay in registers.
void multiplier(benchmark::State &state, std::size_t block, std::size_t m) {
#if defined(__AVX512F__)
  typedef double vector __attribute__((vector_size(64)));
#elif defined(__AVX__)
  typedef double vector __attribute__((vector_size(32)));
#else
  typedef double vector __attribute__((vector_size(16)));
#endif
  constexpr std::size_t sums = 10, products = sums * sizeof(vector) / sizeof(double);
  double given = 0.5;
  benchmark::DoNotOptimize(given);
  const vector factor = given - vector{}, term = 0.5 * factor;
  vector sum[sums];
#pragma GCC unroll 10
  for (std::size_t i = 0; i < sums; ++i) sum[i] = static_cast<double>(i) * term;
  for (auto _ : state)
    for (std::size_t done = 0; done < block * m; done += products)
#pragma GCC unroll 10
      for (std::size_t i = 0; i < sums; ++i) sum[i] = sum[i] * factor + term;
#pragma GCC unroll 10
  for (std::size_t i = 1; i < sums; ++i) sum[0] += sum[i];
  benchmark::DoNotOptimize(sum[0]);
  count(state, block);
}

#ifdef HAVE_FFTW
// Past and block in one transform.
void overlap_save(benchmark::State &state, std::size_t block, std::size_t m, std::size_t size) {
  double *x = fftw_alloc_real(size), *y = fftw_alloc_real(size);
  fftw_complex *spectrum = fftw_alloc_complex(size / 2 + 1), *filter = fftw_alloc_complex(size / 2 + 1);
  const fftw_plan forward = fftw_plan_dft_r2c_1d(static_cast<int>(size), x, spectrum, FFTW_MEASURE);
  const fftw_plan inverse = fftw_plan_dft_c2r_1d(static_cast<int>(size), spectrum, y, FFTW_MEASURE);
  const reals taps = noise(m, 2), in = noise(block, 1);
  std::fill(x, x + size, 0.0);
  for (std::size_t k = 0; k < m; ++k) x[k] = taps[k] / static_cast<double>(size);
  fftw_execute_dft_r2c(forward, x, filter);
  std::fill(x, x + size, 0.0);
  for (auto _ : state) {
    std::memmove(x, x + block, (m - 1) * sizeof(double));
    std::memcpy(x + m - 1, in.data(), block * sizeof(double));
    fftw_execute(forward);
    for (std::size_t k = 0; k <= size / 2; ++k) {
      const double re = spectrum[k][0] * filter[k][0] - spectrum[k][1] * filter[k][1];
      spectrum[k][1] = spectrum[k][0] * filter[k][1] + spectrum[k][1] * filter[k][0];
      spectrum[k][0] = re;
    }
    fftw_execute(inverse);
    benchmark::DoNotOptimize(y[m - 1]);
  }
  count(state, block);
  fftw_destroy_plan(forward);
  fftw_destroy_plan(inverse);
  for (void *p :
       {static_cast<void *>(x), static_cast<void *>(y), static_cast<void *>(spectrum), static_cast<void *>(filter)})
    fftw_free(p);
}

// The next power of two that holds both.
void overlap_save_power(benchmark::State &state, std::size_t block, std::size_t m) {
  std::size_t size = 1;
  while (size < block + m - 1) size *= 2;
  overlap_save(state, block, m, size);
}

// The next product of a power of two with 1, 3, 5, 9 or 15, which suits FFTW best on most lengths.
void overlap_save_product(benchmark::State &state, std::size_t block, std::size_t m) {
  std::size_t size = SIZE_MAX;
  for (const std::size_t factor : {1u, 3u, 5u, 9u, 15u}) {
    std::size_t product = factor;
    while (product < block + m - 1) product *= 2;
    size = std::min(size, product);
  }
  overlap_save(state, block, m, size);
}
#endif

// A filter given by its first half of `half` taps, the last of them the centre.
void ours_folded(benchmark::State &state, std::size_t block, std::size_t half) {
  stream s(block, half);
  for (auto _ : state) {
    dspd_sfir(&s.x, &s.y, &s.h, 1, 0, &s.past);
    benchmark::DoNotOptimize(s.y.data);
  }
  count(state, block);
}

void folded_loop(benchmark::State &state, std::size_t block, std::size_t half) {
  const std::size_t m = 2 * half - 1;
  const reals taps = noise(half, 2), in = noise(block, 1);
  reals x(m - 1 + block), y(block);
  for (auto _ : state) {
    std::memmove(x.data(), x.data() + block, (m - 1) * sizeof(double));
    std::memcpy(x.data() + m - 1, in.data(), block * sizeof(double));
    for (std::size_t n = 0; n < block; ++n) {
      double sum = taps[half - 1] * x[n + half - 1];
      for (std::size_t k = 0; k < half - 1; ++k) sum += taps[k] * (x[n + k] + x[n + m - 1 - k]);
      y[n] = sum;
    }
    benchmark::DoNotOptimize(y.data());
  }
  count(state, block);
}

void folded_tiled(benchmark::State &state, std::size_t block, std::size_t half) {
  constexpr std::size_t tile = 64;
  const std::size_t m = 2 * half - 1;
  const reals taps = noise(half, 2), in = noise(block, 1);
  reals x(m - 1 + block), y(block);
  for (auto _ : state) {
    std::memmove(x.data(), x.data() + block, (m - 1) * sizeof(double));
    std::memcpy(x.data() + m - 1, in.data(), block * sizeof(double));
    for (std::size_t n = 0; n < block; n += tile) {
      double sum[tile];
      for (std::size_t j = 0; j < tile; ++j) sum[j] = taps[half - 1] * x[n + j + half - 1];
      for (std::size_t k = 0; k < half - 1; ++k)
        for (std::size_t j = 0; j < tile; ++j) sum[j] += taps[k] * (x[n + j + k] + x[n + j + m - 1 - k]);
      std::copy(sum, sum + tile, y.begin() + static_cast<std::ptrdiff_t>(n));
    }
    benchmark::DoNotOptimize(y.data());
  }
  count(state, block);
}

void ours_recursive(benchmark::State &state, std::size_t block, std::size_t) {
  stream s(block, 1);
  for (auto _ : state) {
    dspd_hwfilt(&s.x, &s.y, nullptr, &s.past);
    benchmark::DoNotOptimize(s.y.data);
  }
  count(state, block);
}

void recursive_loop(benchmark::State &state, std::size_t block, std::size_t) {
  const reals in = noise(block, 1);
  reals y(block);
  double s[4][3] = {};
  for (auto _ : state) {
    for (std::size_t n = 0; n < block; ++n) {
      double v = in[n];
      for (auto &c : s) {
        const double u = v - 0.5 * c[1];
        v = 0.25 * u + 0.5 * c[0] + 0.5 * c[1] + 0.25 * c[2];
        c[2] = c[1];
        c[1] = c[0];
        c[0] = u;
      }
      y[n] = v;
    }
    benchmark::DoNotOptimize(y.data());
  }
  count(state, block);
}

using work = void (*)(benchmark::State &, std::size_t block, std::size_t m);

void add(const std::string &name, const std::string &library, work f, std::size_t block, std::size_t m) {
  benchmark::RegisterBenchmark((name + "/" + std::to_string(block) + "/" + library).c_str(),
                               [=](benchmark::State &state) { f(state, block, m); });
}

}  // namespace

int main(int argc, char **argv) {
  for (const std::size_t block : {256u, 1024u, 4096u}) {
    for (const std::size_t m : {16u, 45u, 64u, 256u, 1024u}) {
      const std::string name = "fir" + std::to_string(m);
      add(name, "dsp", ours, block, m);
      add(name, "loop", loop, block, m);
      add(name, "tiled", tiled, block, m);
      if (m <= 45) add(name, "multiplier", multiplier, block, m);
#ifdef HAVE_FFTW
      add(name, "fftw", overlap_save_power, block, m);
#endif
    }
    for (const std::size_t m : {15u, 39u, 59u}) {
      add("sfir" + std::to_string(m), "dsp", ours_folded, block, (m + 1) / 2);
      add("sfir" + std::to_string(m), "loop", folded_loop, block, (m + 1) / 2);
      add("sfir" + std::to_string(m), "tiled", folded_tiled, block, (m + 1) / 2);
    }
    add("hwfilt", "dsp", ours_recursive, block, 0);
    add("hwfilt", "loop", recursive_loop, block, 0);
  }
  // Streams of short blocks with long filters.
  for (const auto &[m, block] : {std::pair<std::size_t, std::size_t>{64, 256},
                                 {256, 1024},
                                 {1024, 64},
                                 {1024, 256},
                                 {1024, 512},
                                 {4096, 256},
                                 {8192, 512}}) {
    const std::string name = "live" + std::to_string(m);
    add(name, "dsp", ours, block, m);
#ifdef HAVE_FFTW
    add(name, "fftw", overlap_save_power, block, m);
    add(name, "fftw-product", overlap_save_product, block, m);
#endif
  }
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
