// Transforms beside FFTW's measured plans and KissFFT. Names are work/size/library.
//
// Zeros are transformed, again and again in place: the time does not depend on the numbers, and zeros neither overflow
// nor fade where FFTW and KissFFT do not scale. The work fft_avx2 keeps ours to the instructions that most processors
// have. Real transforms of FFTW run in place or out of place, whichever is faster.
//
// DSP_BENCH_FFTW names FFTW's column, for another build of it that the loader is made to find.
#include <benchmark/benchmark.h>

#include <chrono>
#include <complex>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "dsp/dsp.h"
#include "dsp/simd/isa.h"
#ifdef HAVE_FFTW
#include <fftw3.h>
#endif
#ifdef HAVE_KISSFFT
#include <kissfft/kissfft.hh>
#endif

namespace {

// Found when first asked for: the library linked in may not have chosen before main.
dsp::isa best() {
  static const dsp::isa found = dsp::active_isa();
  return found;
}

// One transform: room for its samples and its result, in doubles, and a run.
struct job {
  std::size_t room;
  std::function<void(double *)> run;
};

void measure(benchmark::State &state, const std::function<job()> &make) {
  const job j = make();
  dsp_vec buffer;
  dsp_init(&buffer);
  buffer.length = static_cast<int32_t>(j.room);
  if (dsp_alloc(&buffer) != 0 || dspi_zero(&buffer) != 0) return state.SkipWithError("no memory");
  j.run(buffer.data);  // makes the tables
  for (auto _ : state) {
    j.run(buffer.data);
    benchmark::DoNotOptimize(buffer.data[0]);
  }
  dsp_destroy(&buffer);
  dsp_free_internal();
  dsp::force_isa(best());
}

void add(const char *work, std::size_t n, const char *library, const std::function<job()> &make) {
  const std::string name = std::string(work) + "/" + std::to_string(n) + "/" + library;
  benchmark::RegisterBenchmark(name.c_str(), [make](benchmark::State &state) { measure(state, make); });
}

// A record on the buffer that counts as large enough for anything the routine makes of it.
job ours(std::size_t length, bool is_complex, std::size_t room, int32_t (*routine)(dsp_vec *)) {
  return {room, [=](double *x) {
            dsp_vec v = {1.0, x, static_cast<int32_t>(room), static_cast<int32_t>(length), is_complex, 0};
            if (routine(&v) != 0) std::abort();
          }};
}

#ifdef HAVE_FFTW
// FFTW plans on a buffer of the measured one's alignment and runs on that.
job planned(std::size_t room, const std::function<fftw_plan(double *)> &make,
            const std::function<void(fftw_plan, double *)> &execute) {
  auto *scratch = static_cast<double *>(fftw_malloc(room * sizeof(double)));
  const std::shared_ptr<fftw_plan_s> plan(make(scratch), fftw_destroy_plan);
  fftw_free(scratch);
  return {room, [plan, execute](double *x) { execute(plan.get(), x); }};
}

const char *fftw_name() {
  const char *name = std::getenv("DSP_BENCH_FFTW");
  return name != nullptr ? name : "fftw";
}

double best_time(const job &j) {
  std::vector<double> x(2 * j.room + 8);  // room for an alignment of 64 bytes
  double *const start = x.data() + (8 - reinterpret_cast<std::uintptr_t>(x.data()) / sizeof(double) % 8) % 8;
  double best = 1e9;
  for (int round = 0; round < 15; ++round) {
    const auto before = std::chrono::steady_clock::now();
    for (std::size_t i = 0; i < 1 + 20000 / j.room; ++i) j.run(start);
    best = std::min(best, std::chrono::duration<double>(std::chrono::steady_clock::now() - before).count());
  }
  return best;
}

job faster(const job &a, const job &b) { return best_time(a) <= best_time(b) ? a : b; }

fftw_complex *complexes(double *x) { return reinterpret_cast<fftw_complex *>(x); }
#endif

int32_t fft(dsp_vec *v) { return dspi_fft(v, 0); }
int32_t unfft(dsp_vec *v) { return dspi_fft(v, 1); }
int32_t dft(dsp_vec *v) { return dspi_dft(v, 0); }
int32_t undft(dsp_vec *v) { return dspi_dft(v, 1); }

void add_complex(const char *work, std::size_t n, bool inverse = false, dsp::isa set = best()) {
  const bool power = (n & (n - 1)) == 0;
  add(work, n, "dsp", [=] {
    dsp::force_isa(set);
    if (power) return ours(n, true, 2 * n, inverse ? unfft : fft);
    return ours(n, true, 2 * n, inverse ? undft : dft);
  });
#ifdef HAVE_FFTW
  add(work, n, fftw_name(), [=] {
    return planned(
        2 * n,
        [=](double *x) {
          return fftw_plan_dft_1d(static_cast<int>(n), complexes(x), complexes(x),
                                  inverse ? FFTW_BACKWARD : FFTW_FORWARD, FFTW_MEASURE);
        },
        [](fftw_plan p, double *x) { fftw_execute_dft(p, complexes(x), complexes(x)); });
  });
#endif
#ifdef HAVE_KISSFFT
  if (inverse || (n % 2 != 0 && n > 5000)) return;  // minutes: its cost grows with the greatest prime factor
  add(work, n, "kissfft", [=] {
    const auto plan = std::make_shared<kissfft<double>>(n, false);
    const auto result = std::make_shared<std::vector<std::complex<double>>>(n);
    return job{2 * n, [plan, result](double *x) {
                 plan->transform(reinterpret_cast<std::complex<double> *>(x), result->data());
                 benchmark::DoNotOptimize(result->data());
               }};
  });
#endif
}

void add_real(const char *forward, const char *inverse, std::size_t n) {
  const std::size_t room = 2 * n + 2;
  const bool odd = n % 2 != 0;
  add(forward, n, "dsp", [=] { return ours(n, false, room, dspi_rdft); });
  add(inverse, n, "dsp", [=] {
    return ours(
        n / 2 + 1, true, room,
        odd ? [](dsp_vec *v) { return dspi_irdft(v, 1); } : [](dsp_vec *v) { return dspi_irdft(v, 0); });
  });
#ifdef HAVE_FFTW
  const int size = static_cast<int>(n);
  // The other record starts on a cache line behind the first.
  const std::size_t apart = (room + 7) / 8 * 8;
  const auto to_bins = [=](std::size_t to) {
    return planned(
        apart + room, [=](double *x) { return fftw_plan_dft_r2c_1d(size, x, complexes(x + to), FFTW_MEASURE); },
        [=](fftw_plan p, double *x) { fftw_execute_dft_r2c(p, x, complexes(x + to)); });
  };
  const auto to_samples = [=](std::size_t to) {
    return planned(
        apart + room, [=](double *x) { return fftw_plan_dft_c2r_1d(size, complexes(x), x + to, FFTW_MEASURE); },
        [=](fftw_plan p, double *x) { fftw_execute_dft_c2r(p, complexes(x), x + to); });
  };
  add(forward, n, fftw_name(), [=] { return faster(to_bins(0), to_bins(apart)); });
  add(inverse, n, fftw_name(), [=] { return faster(to_samples(0), to_samples(apart)); });
#endif
}

void add_cosine(std::size_t n) {
  add("dct", n, "dsp", [=] { return ours(n, false, 2 * n + 2, [](dsp_vec *v) { return dspi_dct(v, 0); }); });
#ifdef HAVE_FFTW
  add("dct", n, fftw_name(), [=] {
    return planned(
        n, [n](double *x) { return fftw_plan_r2r_1d(static_cast<int>(n), x, x, FFTW_REDFT10, FFTW_MEASURE); },
        [](fftw_plan p, double *x) { fftw_execute_r2r(p, x, x); });
  });
#endif
}

}  // namespace

int main(int argc, char **argv) {
  for (std::size_t n = 16; n <= std::size_t{1} << 20; n *= 2) {
    add_complex("fft", n);
    add_complex("ifft", n, true);
  }
  for (std::size_t n = 16; n <= std::size_t{1} << 20; n *= 2) add_real("rfft", "irfft", n);
  using lengths = std::initializer_list<std::size_t>;
  for (const std::size_t n :
       lengths{12, 24, 60, 100, 360, 1000, 1200, 1920, 4095, 4800, 44100, 48000, 100000, 1000000}) {
    add_complex("dft", n);
    add_complex("idft", n, true);
  }
  for (const std::size_t n : lengths{1009, 10007, 20014, 44101, 100003}) add_complex("dft", n);
  for (const std::size_t n : lengths{100, 360, 1000, 1200, 1920, 4095, 4800, 44100, 48000, 100000})
    add_real("rdft", "irdft", n);
  for (std::size_t n = 16; n <= std::size_t{1} << 18; n *= 4) add_cosine(n);
  for (const std::size_t n : lengths{1000, 4095}) add_cosine(n);
  if (best() == dsp::isa::avx512)
    for (std::size_t n = 16; n <= std::size_t{1} << 20; n *= 4) add_complex("fft_avx2", n, false, dsp::isa::avx2);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
