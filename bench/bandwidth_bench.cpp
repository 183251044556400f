// The memory bandwidth of plain loops, by access pattern. A row of another program that is labelled with one of these
// patterns and counts its bytes shows its share of that bandwidth at the same size.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

namespace {

struct arrays {
  explicit arrays(std::size_t n) : a(n, 0.0), b(n, 1.0), c(n, 2.0) {}
  std::vector<double> a, b, c;
};

/** In many sums, else the latency of the addition is what counts. */
double read(arrays &x) {
  constexpr std::size_t lanes = 64;
  double sums[lanes] = {};
  const double *b = x.b.data();
  for (std::size_t i = 0, n = x.b.size(); i + lanes <= n; i += lanes)
    for (std::size_t k = 0; k < lanes; ++k) sums[k] += b[i + k];
  double all = 0.0;
  for (double s : sums) all += s;
  return all;
}

double update(arrays &x) {
  double *a = x.a.data();
  for (std::size_t i = 0, n = x.a.size(); i < n; ++i) a[i] = 1.0 - a[i];
  return a[0];
}

double copy(arrays &x) {
  double *__restrict a = x.a.data();
  const double *b = x.b.data();
  for (std::size_t i = 0, n = x.a.size(); i < n; ++i) a[i] = -b[i];
  return a[0];
}

double triad(arrays &x) {
  double *__restrict a = x.a.data();
  const double *b = x.b.data(), *c = x.c.data();
  for (std::size_t i = 0, n = x.a.size(); i < n; ++i) a[i] = b[i] + 3.0 * c[i];
  return a[0];
}

struct pattern {
  const char *name;
  int64_t doubles;  // that move for each sample
  double (*pass)(arrays &);
};

const pattern patterns[] = {{"read", 1, read}, {"update", 2, update}, {"copy", 2, copy}, {"triad", 3, triad}};

const bool registered = [] {
  for (const pattern &p : patterns)
    for (const char *size : {"1e3", "1e5", "1e7"}) {
      const auto n = static_cast<std::size_t>(std::stod(size));
      benchmark::RegisterBenchmark(("bandwidth/" + std::string(size) + "/" + p.name).c_str(),
                                   [p, n](benchmark::State &state) {
                                     arrays x(n);
                                     for (auto _ : state) {
                                       benchmark::DoNotOptimize(p.pass(x));
                                       benchmark::ClobberMemory();
                                     }
                                     state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(n) * p.doubles *
                                                             static_cast<int64_t>(sizeof(double)));
                                   });
    }
  return true;
}();

}  // namespace
