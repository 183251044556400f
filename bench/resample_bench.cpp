// Sample-rate conversion in blocks, beside soxr and libsamplerate. Items are input samples.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "bench/noise.h"
#include "dsp/dsp.h"

#ifdef HAVE_SOXR
#include <soxr.h>
#endif
#ifdef HAVE_SAMPLERATE
#include <samplerate.h>
#endif

namespace {

using reals = std::vector<double>;

constexpr std::size_t block = 4096;

void count(benchmark::State &state) { state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(block)); }

void with_ours(benchmark::State &state, double ratio, uint32_t is_complex) {
  reals in = noise(block * (is_complex + 1), 1);
  const dsp_vec x = {1.0, in.data(), 0, static_cast<int32_t>(block), is_complex, 0};
  dsp_vec y, scratch;
  dsp_init(&y);
  dsp_init(&scratch);
  dsph_rsmp_coef coef;
  dsph_rsmp_coef_init(&coef);
  dsph_rsmp_coef_alloc(&coef, 0);
  dsph_rsmp_coef_setup(&coef, 0, ratio, 0, 0);
  dsph_rsmp_state past;
  dsph_rsmp_state_init(&past);
  dsph_rsmp_state_alloc(&coef, &past, is_complex);
  dsph_rsmp_state_reset(&coef, &past);
  for (auto _ : state) {
    dsph_rsmp(&x, &y, &scratch, &coef, &past);
    benchmark::DoNotOptimize(y.data);
  }
  count(state);
  dsph_rsmp_state_destroy(&past);
  dsph_rsmp_coef_destroy(&coef);
  dsp_destroy(&scratch);
  dsp_destroy(&y);
}

void ours(benchmark::State &state, double ratio) { with_ours(state, ratio, 0); }
void ours_complex(benchmark::State &state, double ratio) { with_ours(state, ratio, 1); }

#ifdef HAVE_SOXR
void with_soxr(benchmark::State &state, double ratio, unsigned long recipe, unsigned channels = 1) {
  const reals in = noise(block * channels, 1);
  reals out((block + 16) * channels);
  soxr_error_t error = nullptr;
  const soxr_io_spec_t io = soxr_io_spec(SOXR_FLOAT64_I, SOXR_FLOAT64_I);
  const soxr_quality_spec_t quality = soxr_quality_spec(recipe, 0);
  const soxr_runtime_spec_t runtime = soxr_runtime_spec(1);
  const soxr_t s = soxr_create(ratio, 1.0, channels, &error, &io, &quality, &runtime);
  if (error != nullptr) {
    state.SkipWithError(soxr_strerror(error));
    return;
  }
  for (auto _ : state) {
    std::size_t used = 0, made = 0;
    soxr_process(s, in.data(), block, &used, out.data(), block + 16, &made);
    benchmark::DoNotOptimize(out.data());
  }
  count(state);
  soxr_delete(s);
}
void soxr_medium(benchmark::State &state, double ratio) { with_soxr(state, ratio, SOXR_MQ); }
void soxr_high(benchmark::State &state, double ratio) { with_soxr(state, ratio, SOXR_HQ); }
void soxr_high_stereo(benchmark::State &state, double ratio) { with_soxr(state, ratio, SOXR_HQ, 2); }
void soxr_very_high(benchmark::State &state, double ratio) { with_soxr(state, ratio, SOXR_VHQ); }
#endif

#ifdef HAVE_SAMPLERATE
// Single precision throughout: the library has nothing else.
void with_samplerate(benchmark::State &state, double ratio, int quality) {
  const reals in = noise(block, 1);
  const std::vector<float> x(in.begin(), in.end());
  std::vector<float> y(block + 16);
  int error = 0;
  SRC_STATE *s = src_new(quality, 1, &error);
  SRC_DATA data = {};
  data.data_in = x.data();
  data.data_out = y.data();
  data.input_frames = static_cast<long>(block);
  data.output_frames = static_cast<long>(y.size());
  data.src_ratio = 1.0 / ratio;
  for (auto _ : state) {
    src_process(s, &data);
    benchmark::DoNotOptimize(y.data());
  }
  count(state);
  src_delete(s);
}
void samplerate_medium(benchmark::State &state, double ratio) {
  with_samplerate(state, ratio, SRC_SINC_MEDIUM_QUALITY);
}
#endif

using work = void (*)(benchmark::State &, double ratio);

void add(const std::string &name, double ratio, const std::string &size, const std::string &library, work f) {
  benchmark::RegisterBenchmark((name + "/" + size + "/" + library).c_str(),
                               [=](benchmark::State &state) { f(state, ratio); });
}

}  // namespace

int main(int argc, char **argv) {
  const struct {
    double ratio;
    const char *name;
  } ratios[] = {{1.05, "1.05"}, {1.25, "1.25"}, {1.3377, "1.3377"}, {1.5, "1.5"},
                {2.0, "2"},     {2.7, "2.7"},   {5.3, "5.3"},       {8.0, "8"}};
  for (const auto &[ratio, name] : ratios) {
    add("resample", ratio, name, "dsp", ours);
    add("complex", ratio, name, "dsp", ours_complex);
#ifdef HAVE_SOXR
    add("complex", ratio, name, "soxr-hq", soxr_high_stereo);
    add("resample", ratio, name, "soxr-mq", soxr_medium);
    add("resample", ratio, name, "soxr-hq", soxr_high);
    add("resample", ratio, name, "soxr-vhq", soxr_very_high);
#endif
#ifdef HAVE_SAMPLERATE
    add("resample", ratio, name, "samplerate-medium", samplerate_medium);
#endif
  }
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
