// Reductions beside plain loops, Eigen and GSL. Names are work/size/library.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "bench/noise.h"
#include "dsp/dsp.h"
#ifdef HAVE_EIGEN
#include <Eigen/Dense>
#endif
#ifdef HAVE_GSL
#include <gsl/gsl_fit.h>
#include <gsl/gsl_histogram.h>
#include <gsl/gsl_statistics_double.h>
#endif

namespace {

using doubles = std::vector<double>;
using reduction = std::function<double(const doubles &x)>;

void measure(benchmark::State &state, std::size_t n, std::size_t count, const reduction &reduce) {
  std::vector<doubles> records;
  while (records.size() < count) records.push_back(noise(n, static_cast<unsigned>(records.size() + 1)));
  std::size_t turn = 0;
  for (auto _ : state) {
    doubles &x = records[turn++ % count];
    benchmark::DoNotOptimize(x.data());
    benchmark::DoNotOptimize(reduce(x));
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(n * sizeof(double)));
}

void add(const char *work, const char *library, const reduction &reduce) {
  for (const std::size_t n : {1000, 100000, 10000000}) {
    const std::string name = std::string(work) + "/" + std::to_string(n) + "/" + library;
    // A selection takes several records in turn, so that the processor cannot learn to predict branches on their
    // values.
    const std::size_t count = work == std::string("median") && n < 100000 ? 32 : 1;
    benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State &state) { measure(state, n, count, reduce); });
  }
}

constexpr int32_t bins = 100;

dsp_vec view(const doubles &x, bool is_complex = false) {
  const std::size_t n = is_complex ? x.size() / 2 : x.size();
  return {1.0, const_cast<double *>(x.data()), 0, static_cast<int32_t>(n), is_complex, 0};
}

template <class Reduce>
reduction ours(Reduce reduce, bool is_complex = false) {
  return [=](const doubles &x) {
    static doubles result(bins);
    const dsp_vec in = view(x, is_complex);
    dsp_vec out = {1.0, result.data(), bins, bins, 0, 0};
    reduce(&in, &out);
    return result[0];
  };
}

double plain_variance(const doubles &x) {
  double sum = 0.0, squares = 0.0;
  const double k = x[0];
  for (const double v : x) {
    sum += v - k;
    squares += (v - k) * (v - k);
  }
  const auto n = static_cast<double>(x.size());
  return squares / n - sum / n * (sum / n);
}

double plain_histogram(const doubles &x) {
  doubles counts(bins, 0.0);
  for (const double v : x) {
    const double u = (v + 1.0) / (2.0 / bins);
    if (u >= 0.0 && u < bins) counts[static_cast<std::size_t>(u)] += 1.0;
  }
  return counts[0];
}

double selected_median(doubles x) {
  const auto middle = x.begin() + static_cast<std::ptrdiff_t>(x.size() / 2);
  std::nth_element(x.begin(), middle, x.end());
  return (*middle + *std::max_element(x.begin(), middle)) * 0.5;
}

void add_ours() {
  add("sum", "dsp", ours(dsps_sum));
  add("mean", "dsp", ours(dsps_mean));
  add("rms", "dsp", ours(dsps_rms));
  add("variance", "dsp", ours(dsps_pop_var));
  add("skewness", "dsp", ours(dsps_skew));
  add("kurtosis", "dsp", ours(dsps_excess));
  add("maximum", "dsp", ours(dsps_max));
  add("complex_rms", "dsp", ours(dsps_rms, true));
  add("complex_maximum", "dsp", ours(dsps_max, true));
  add("median", "dsp", ours(dsps_median));
  add("regression", "dsp", ours(dsps_lin_regres2));
  add("peak", "dsp", ours([](const dsp_vec *in, dsp_vec *out) { return dsps_peak(in, out, DSP_PEAK_GAUSS, 0); }));
  add("histogram", "dsp",
      ours([](const dsp_vec *in, dsp_vec *out) { return dsps_hist(in, out, -1.0, 2.0 / bins, bins); }));
}

void add_loops() {
  add("sum", "loop", [](const doubles &x) {
    double sum = 0.0;
    for (const double v : x) sum += v;
    return sum;
  });
  add("rms", "loop", [](const doubles &x) {
    double sum = 0.0;
    for (const double v : x) sum += v * v;
    return std::sqrt(sum / static_cast<double>(x.size()));
  });
  add("variance", "loop", plain_variance);
  add("maximum", "loop", [](const doubles &x) {
    double best = -1e100;
    for (const double v : x) best = v > best ? v : best;
    return best;
  });
  add("complex_maximum", "loop", [](const doubles &x) {
    double best = -1.0;
    std::size_t at = 0;
    for (std::size_t i = 0; i + 1 < x.size(); i += 2) {
      const double key = x[i] * x[i] + x[i + 1] * x[i + 1];
      if (key > best) best = key, at = i;
    }
    return x[at];
  });
  add("peak", "loop",
      [](const doubles &x) { return static_cast<double>(std::max_element(x.begin(), x.end()) - x.begin()); });
  add("histogram", "loop", plain_histogram);
  add("median", "loop", selected_median);
}

#ifdef HAVE_EIGEN
using map = Eigen::Map<const Eigen::ArrayXd>;
map mapped(const doubles &x) { return map(x.data(), static_cast<Eigen::Index>(x.size())); }

void add_eigen() {
  add("sum", "eigen", [](const doubles &x) { return mapped(x).sum(); });
  add("mean", "eigen", [](const doubles &x) { return mapped(x).mean(); });
  add("rms", "eigen", [](const doubles &x) { return std::sqrt(mapped(x).square().mean()); });
  add("complex_rms", "eigen",
      [](const doubles &x) { return std::sqrt(mapped(x).square().sum() / static_cast<double>(x.size() / 2)); });
  add("variance", "eigen", [](const doubles &x) { return (mapped(x) - mapped(x).mean()).square().mean(); });
  add("maximum", "eigen", [](const doubles &x) { return mapped(x).maxCoeff(); });
}
#endif

#ifdef HAVE_GSL
void add_gsl() {
  add("mean", "gsl", [](const doubles &x) { return gsl_stats_mean(x.data(), 1, x.size()); });
  add("variance", "gsl", [](const doubles &x) { return gsl_stats_variance(x.data(), 1, x.size()); });
  add("skewness", "gsl", [](const doubles &x) { return gsl_stats_skew(x.data(), 1, x.size()); });
  add("kurtosis", "gsl", [](const doubles &x) { return gsl_stats_kurtosis(x.data(), 1, x.size()); });
  add("maximum", "gsl", [](const doubles &x) { return gsl_stats_max(x.data(), 1, x.size()); });
  add("median", "gsl", [](doubles x) { return gsl_stats_median(x.data(), 1, x.size()); });
  add("histogram", "gsl", [](const doubles &x) {
    gsl_histogram *h = gsl_histogram_alloc(bins);
    gsl_histogram_set_ranges_uniform(h, -1.0, 1.0);
    for (const double v : x) gsl_histogram_increment(h, v);
    const double first = gsl_histogram_get(h, 0);
    gsl_histogram_free(h);
    return first;
  });
  add("regression", "gsl", [](const doubles &x) {
    static doubles places;
    while (places.size() < x.size()) places.push_back(static_cast<double>(places.size()));
    double c0, c1, v00, v01, v11, sum;
    gsl_fit_linear(places.data(), 1, x.data(), 1, x.size(), &c0, &c1, &v00, &v01, &v11, &sum);
    return c0;
  });
}
#endif

const int registered = [] {
  add_ours();
  add_loops();
#ifdef HAVE_EIGEN
  add_eigen();
#endif
#ifdef HAVE_GSL
  add_gsl();
#endif
  return 0;
}();

}  // namespace
